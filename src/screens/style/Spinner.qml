import QtQuick
import QtQuick.Shapes
import Ondavia

/// Says that something is under way. With less motion asked for it stands still as an open ring.
Item {
    id: spinner
    property color color: "#ffffff"
    property bool running: true

    implicitWidth: 40
    implicitHeight: 40
    visible: running
    Accessible.role: Accessible.Animation
    Accessible.name: Texts.get("common.inProgress", "Em curso")

    Shape {
        id: ring
        anchors.fill: parent
        layer.enabled: true
        layer.smooth: true
        layer.textureSize.width: width * 3
        layer.textureSize.height: height * 3
        ShapePath {
            strokeColor: spinner.color
            strokeWidth: Math.max(3, spinner.width / 12)
            fillColor: "transparent"
            capStyle: ShapePath.RoundCap
            PathAngleArc {
                centerX: spinner.width / 2
                centerY: spinner.height / 2
                radiusX: spinner.width / 2 - 3
                radiusY: spinner.height / 2 - 3
                startAngle: -90
                sweepAngle: 270
            }
        }
        RotationAnimator on rotation {
            running: spinner.running && spinner.visible && Theme.motion > 0
            from: 0
            to: 360
            duration: 900
            loops: Animation.Infinite
        }
    }
}
