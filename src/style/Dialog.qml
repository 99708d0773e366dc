import QtQuick
import Ondavia.Style

/// A question over the page, with two answers, or a notice with the second one alone. Takes the focus while
/// it is open; Escape and a tap beside it are the second answer. What lies below gets no input meanwhile.
FocusScope {
    id: dialog
    property bool isOpen: false
    property string title
    property string message
    property string acceptText
    property string rejectText
    signal accepted()
    signal rejected()

    visible: opacity > 0
    enabled: dialog.isOpen
    opacity: dialog.isOpen ? 1 : 0
    Behavior on opacity { NumberAnimation { duration: Theme.motion; easing.type: Theme.motionCurve } }
    Accessible.role: Accessible.Dialog
    Accessible.name: dialog.title
    Accessible.description: dialog.message
    Accessible.ignored: !dialog.isOpen
    Keys.onPressed: event => {
        if (FocusGuide.isBack(event.key) && event.isAutoRepeat) {
            event.accepted = true
        } else if (FocusGuide.isBack(event.key)) {
            event.accepted = true
            dialog.rejected()
        }
    }
    onIsOpenChanged: {
        if (dialog.isOpen) {
            reject.forceActiveFocus()
        }
    }

    Rectangle {
        anchors.fill: parent
        color: Theme.dialogVeil
    }
    MouseArea {
        anchors.fill: parent
        hoverEnabled: true
        onClicked: dialog.rejected()
        onWheel: wheel => wheel.accepted = true
        Accessible.ignored: true
    }
    Rectangle {
        anchors.centerIn: parent
        width: Math.min(dialog.width - Theme.narrowPageMargin * 2, 420)
        height: content.implicitHeight + Theme.unit * 12
        radius: Theme.cardRadius
        color: Theme.surfaceRaised
        border.width: 1
        border.color: Theme.hairline
        // A tap on the card is not one beside it.
        MouseArea { anchors.fill: parent; Accessible.ignored: true }

        Column {
            id: content
            x: Theme.unit * 6
            y: Theme.unit * 6
            width: parent.width - x * 2
            spacing: Theme.unit * 3
            Label {
                width: parent.width
                text: dialog.title
                font.pixelSize: Theme.headingSize
                font.weight: Font.DemiBold
                wrapMode: Text.Wrap
                Accessible.ignored: true
            }
            Label {
                visible: text !== ""
                width: parent.width
                text: dialog.message
                color: Theme.textMuted
                lineHeight: 1.3
                wrapMode: Text.Wrap
                Accessible.ignored: true
            }
            Flow {
                width: parent.width
                topPadding: Theme.unit * 3
                spacing: Theme.unit * 3
                layoutDirection: Qt.RightToLeft
                Button {
                    visible: text !== ""
                    text: dialog.acceptText
                    onClicked: dialog.accepted()
                }
                Button {
                    id: reject
                    text: dialog.rejectText
                    kind: Button.Secondary
                    focus: true
                    onClicked: dialog.rejected()
                }
            }
        }
    }
}
