pragma Singleton
import QtQuick
import Ondavia

/// The look in one place: every colour, size and movement of every screen.
QtObject {
    id: theme

    // Colours. Pictures carry the page, so the ground stays nearly black and the surfaces close to it.
    readonly property color background: "#090b10"
    readonly property color surface: "#12161e"
    readonly property color surfaceRaised: "#1a202b"
    readonly property color surfacePressed: "#232b38"
    readonly property color hairline: Qt.rgba(1, 1, 1, 0.08)
    readonly property color text: "#f3f5f8"
    readonly property color textMuted: "#a9b2c0"
    readonly property color textFaint: "#7b8696"
    readonly property color accent: "#3fd0c4"
    readonly property color accentHover: "#63ddd3"
    readonly property color accentPressed: "#2fb3a8"
    readonly property color accentText: "#04201d"
    readonly property color danger: "#ff7a76"
    readonly property color caution: "#ffb65c"
    readonly property color good: "#5fd896"

    // One unit for every distance.
    readonly property int unit: 4
    readonly property int cardRadius: 12
    readonly property int pageMargin: 24
    readonly property int narrowPageMargin: 16
    /// The window's size at its first start.
    readonly property int windowWidth: 1280
    readonly property int windowHeight: 800
    /// From here on a window is wide: rail at the left instead of a bar at the bottom.
    readonly property int wideWindow: 900
    readonly property int controlHeight: 48

    // The four type sizes.
    readonly property int titleSize: 30
    readonly property int headingSize: 20
    readonly property int bodySize: 15
    readonly property int captionSize: 12
    readonly property string fontFamily: Environment.fontFamily
    readonly property string iconFamily: Environment.iconFamily

    // One curve; both lengths are 0 where the user asked for less motion.
    readonly property int motion: Environment.reducedMotion ? 0 : 200
    readonly property int motionShort: Environment.reducedMotion ? 0 : 150
    readonly property int motionCurve: Easing.OutCubic

    function marginFor(width: real): int {
        return width >= theme.wideWindow ? theme.pageMargin * 2 : theme.narrowPageMargin
    }
}
