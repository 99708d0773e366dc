import QtQuick
import Ondavia.Style

/// Darkens the upper and the lower edge of a picture, so that what stands there can be read.
Item {
    id: scrims

    Rectangle {
        width: parent.width
        height: Math.min(200, parent.height / 2)
        gradient: Gradient {
            GradientStop { position: 0; color: Theme.scrimEdge }
            GradientStop { position: 0.38; color: Theme.scrimMiddle }
            GradientStop { position: 0.72; color: Theme.scrimSoft }
            GradientStop { position: 1; color: "transparent" }
        }
    }
    Rectangle {
        anchors.bottom: parent.bottom
        width: parent.width
        height: Math.min(260, parent.height / 2)
        gradient: Gradient {
            GradientStop { position: 0; color: "transparent" }
            GradientStop { position: 0.26; color: Theme.scrimSoft }
            GradientStop { position: 0.55; color: Theme.scrimMiddle }
            GradientStop { position: 1; color: Theme.scrimEdge }
        }
    }
}
