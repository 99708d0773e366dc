import QtQuick
import QtQuick.Shapes
import Ondavia

/// The sign of the application: a play triangle of air over a breaking wave.
Item {
    id: glyph
    property int size: 28
    implicitWidth: glyph.size * 1.2
    implicitHeight: glyph.size * 1.2
    Accessible.ignored: true

    Rectangle {
        anchors.fill: parent
        radius: width * 0.28
        gradient: Gradient {
            GradientStop { position: 0; color: "#56e0d4" }
            GradientStop { position: 1; color: "#148f9c" }
        }
    }
    Shape {
        anchors.fill: parent
        layer.enabled: true
        layer.samples: 4
        ShapePath {
            strokeColor: Theme.accentText
            strokeWidth: glyph.size * 0.12
            capStyle: ShapePath.RoundCap
            fillColor: "transparent"
            startX: glyph.width * 0.2
            startY: glyph.height * 0.62
            PathCubic {
                x: glyph.width * 0.5; y: glyph.height * 0.56
                control1X: glyph.width * 0.3; control1Y: glyph.height * 0.34
                control2X: glyph.width * 0.4; control2Y: glyph.height * 0.34
            }
            PathCubic {
                x: glyph.width * 0.8; y: glyph.height * 0.42
                control1X: glyph.width * 0.6; control1Y: glyph.height * 0.78
                control2X: glyph.width * 0.7; control2Y: glyph.height * 0.7
            }
        }
    }
}
