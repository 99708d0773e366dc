import QtQuick
import Ondavia.Details
import Ondavia.Style

/// What a title is about. A long one shows its first lines until more is wanted.
Column {
    id: plot
    required property DetailViewModel detail
    /// A toggle moves the text below; a window that changes its size does not.
    property bool isMoving: false

    spacing: Theme.unit

    Item {
        width: plot.width
        height: label.implicitHeight
        clip: plot.isMoving
        Behavior on height {
            enabled: plot.isMoving
            SequentialAnimation {
                NumberAnimation { duration: Theme.motion; easing.type: Theme.motionCurve }
                PropertyAction { target: plot; property: "isMoving"; value: false }
            }
        }
        Label {
            id: label
            width: parent.width
            text: plot.detail.plot
            lineHeight: 1.45
            wrapMode: Text.Wrap
            maximumLineCount: plot.detail.hasPlotToggle && !plot.detail.showFullPlot ? 3 : 1000
            elide: Text.ElideRight
        }
    }
    Button {
        id: toggle
        objectName: "plotToggle"
        // Its text stands below the plot's.
        x: -leftPadding
        visible: plot.detail.hasPlotToggle
        kind: Button.Plain
        implicitHeight: 40
        text: plot.detail.plotToggleText
        onClicked: {
            plot.isMoving = true
            plot.detail.togglePlot()
        }
    }
}
