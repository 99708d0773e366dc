pragma ComponentBehavior: Bound
import QtQuick
import QtQuick.Shapes
import Ondavia.Style

/// The night sea behind pages without pictures of their own: three slow swells of light, drawn once.
Item {
    id: sea
    /// Where the highest swell stands, as a part of the height.
    property real horizon: 0.52

    clip: true

    Rectangle {
        anchors.fill: parent
        gradient: Gradient {
            GradientStop { position: 0; color: Theme.skyTop }
            GradientStop { position: 0.55; color: Theme.skyMiddle }
            GradientStop { position: 1; color: Theme.skyBottom }
        }
    }

    component Swell: Shape {
        id: swell
        property real level
        property real height1
        property real phase
        property color crest
        property color depth

        anchors.fill: parent
        layer.enabled: true
        layer.samples: 4
        ShapePath {
            strokeColor: "transparent"
            strokeWidth: -1
            fillGradient: LinearGradient {
                x1: 0; y1: sea.height * (swell.level - swell.height1)
                x2: 0; y2: sea.height
                GradientStop { position: 0; color: swell.crest }
                GradientStop { position: 0.7; color: swell.depth }
                GradientStop { position: 1; color: swell.depth }
            }
            startX: 0
            startY: sea.height * (swell.level + swell.height1 * swell.phase)
            PathCubic {
                x: sea.width * 0.5; y: sea.height * swell.level
                control1X: sea.width * 0.18; control1Y: sea.height * (swell.level - swell.height1)
                control2X: sea.width * 0.32; control2Y: sea.height * (swell.level - swell.height1 * swell.phase)
            }
            PathCubic {
                x: sea.width; y: sea.height * (swell.level - swell.height1 * 0.6)
                control1X: sea.width * 0.68; control1Y: sea.height * (swell.level + swell.height1 * swell.phase)
                control2X: sea.width * 0.84; control2Y: sea.height * (swell.level + swell.height1 * 0.3)
            }
            PathLine { x: sea.width; y: sea.height }
            PathLine { x: 0; y: sea.height }
        }
    }

    Swell { level: sea.horizon; height1: 0.16; phase: 0.6; crest: Theme.farCrest; depth: Theme.farDepth }
    Swell { level: sea.horizon + 0.14; height1: 0.12; phase: -0.4; crest: Theme.middleCrest; depth: Theme.middleDepth }
    Swell { level: sea.horizon + 0.3; height1: 0.1; phase: 0.9; crest: Theme.nearCrest; depth: Theme.nearDepth }
}
