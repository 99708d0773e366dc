pragma Singleton
import QtQuick
import Ondavia.Style

/// The look in one place: every colour, size and movement of every screen.
QtObject {
    id: theme

    // Colours. Pictures carry the page, so the ground stays nearly black and the surfaces close to it.
    readonly property color background: "#090b10"
    /// None of it: what fades into the page ends here.
    readonly property color backgroundClear: Qt.rgba(theme.background.r, theme.background.g, theme.background.b, 0)
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
    readonly property color rail: "#0c0f15"
    readonly property color bar: "#0e1219"
    readonly property color currentTab: Qt.rgba(theme.accent.r, theme.accent.g, theme.accent.b, 0.16)
    readonly property color handle: Qt.rgba(1, 1, 1, 0.22)
    readonly property color handleHover: Qt.rgba(1, 1, 1, 0.4)
    readonly property color handlePressed: Qt.rgba(1, 1, 1, 0.55)
    readonly property color buttonHover: Qt.rgba(1, 1, 1, 0.12)
    readonly property color buttonPressed: Qt.rgba(1, 1, 1, 0.22)
    readonly property color toastText: "white"
    readonly property color toastFrame: Qt.rgba(1, 1, 1, 0.16)
    /// Over a page that has to wait.
    readonly property color waitVeil: Qt.rgba(0, 0, 0, 0.7)
    readonly property color waitText: Qt.rgba(1, 1, 1, 0.8)
    readonly property color dialogVeil: Qt.rgba(0, 0, 0, 0.6)
    /// Of a tile that lets the sea behind it through.
    readonly property color tile: Qt.rgba(0.08, 0.1, 0.14, 0.82)
    readonly property color tileHover: Qt.rgba(0.13, 0.17, 0.22, 0.92)
    readonly property color tilePressed: Qt.rgba(0.16, 0.2, 0.27, 0.95)
    /// Behind words that must be read over any picture.
    readonly property color panel: Qt.rgba(0.05, 0.06, 0.08, 0.9)
    /// Behind the rating over a poster.
    readonly property color badge: Qt.rgba(0.03, 0.04, 0.06, 0.78)
    /// A fact of a title: quiet on any ground.
    readonly property color factText: Qt.rgba(1, 1, 1, 0.6)
    readonly property color factGround: Qt.rgba(1, 1, 1, 0.08)
    /// In the place of a picture.
    readonly property color placeholderTop: "#1d2430"
    readonly property color placeholderBottom: "#141922"
    readonly property color placeholderSymbol: "#465164"
    /// Around a film, and behind what stands over it: at its edges, dark enough for a text on white; on a disc
    /// of its own; over all of it where it failed.
    readonly property color stage: "black"
    readonly property color scrimEdge: Qt.rgba(0, 0, 0, 0.86)
    readonly property color scrimMiddle: Qt.rgba(0, 0, 0, 0.62)
    readonly property color scrimSoft: Qt.rgba(0, 0, 0, 0.22)
    readonly property color disc: Qt.rgba(0, 0, 0, 0.6)
    readonly property color discHover: Qt.rgba(0.16, 0.16, 0.18, 0.75)
    readonly property color discPressed: Qt.rgba(0.3, 0.3, 0.33, 0.8)
    readonly property color errorVeil: Qt.rgba(0, 0, 0, 0.8)
    readonly property color miniVeil: Qt.rgba(0, 0, 0, 0.4)
    readonly property color subtitleText: "white"
    readonly property color subtitleGround: Qt.rgba(0, 0, 0, 0.55)
    readonly property color live: Qt.rgba(0.85, 0.16, 0.16, 0.9)
    /// In the guide: what is on stands out, what is over steps back.
    readonly property color onAir: "#ff4d48"
    readonly property color guideText: "white"
    readonly property color guideTime: Qt.rgba(1, 1, 1, 0.5)
    readonly property color guidePastTitle: Qt.rgba(1, 1, 1, 0.4)
    readonly property color guideFutureTitle: Qt.rgba(1, 1, 1, 0.7)
    readonly property color guideDetail: Qt.rgba(1, 1, 1, 0.3)
    readonly property color guidePastDot: Qt.rgba(1, 1, 1, 0.2)
    readonly property color guideFutureDot: Qt.rgba(1, 1, 1, 0.3)
    readonly property color seekTrack: Qt.rgba(1, 1, 1, 0.25)
    /// The sky behind the swells, and from far to near the crest and the depth of each.
    readonly property color skyTop: "#06080c"
    readonly property color skyMiddle: "#0a131b"
    readonly property color skyBottom: "#0b1a20"
    readonly property color farCrest: "#59127a78"
    readonly property color farDepth: "#00082025"
    readonly property color middleCrest: "#7318938c"
    readonly property color middleDepth: "#00061a1f"
    readonly property color nearCrest: "#8c2ab5aa"
    readonly property color nearDepth: "#20072126"

    /// Of a remark within a page.
    function noticeColor(kind: int): color {
        switch (kind) {
        case NoticeKind.Success: return theme.good
        case NoticeKind.Warning: return theme.caution
        case NoticeKind.Error: return theme.danger
        default: return theme.accent
        }
    }
    /// Behind a toast.
    function toastColor(kind: int): color {
        switch (kind) {
        case NoticeKind.Success: return Qt.rgba(0.08, 0.55, 0.27, 0.9)
        case NoticeKind.Warning: return Qt.rgba(0.80, 0.42, 0.0, 0.9)
        case NoticeKind.Error: return Qt.rgba(0.80, 0.14, 0.14, 0.9)
        default: return Qt.rgba(0.04, 0.40, 0.92, 0.9)
        }
    }
    function noticeSymbol(kind: int): string {
        switch (kind) {
        case NoticeKind.Success: return "checkmark.circle.fill"
        case NoticeKind.Warning: return "exclamationmark.triangle.fill"
        case NoticeKind.Error: return "xmark.circle.fill"
        default: return "info.circle.fill"
        }
    }

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
    /// Of the texts under a poster.
    readonly property int posterCaption: 56

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
