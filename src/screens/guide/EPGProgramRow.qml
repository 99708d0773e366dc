import QtQuick
import QtQuick.Templates as T
import Ondavia.Guide
import Ondavia.Style

/// A programme: when it begins, whether it is on, over or still to come, its title and what it is about. One
/// that can be played is a button as a whole.
T.ItemDelegate {
    id: row
    required property string time
    required property string title
    required property string detail
    /// An `EPGProgramListModel.Moment`.
    required property int moment
    required property bool canCatchup
    signal playCatchup()

    readonly property bool isCurrent: row.moment === EPGProgramListModel.Current
    readonly property bool isPast: row.moment === EPGProgramListModel.Past

    // The same for all, so that a list of thousands knows where each of them is.
    implicitHeight: 72
    focusPolicy: Qt.ClickFocus
    hoverEnabled: row.canCatchup
    text: row.title
    Accessible.role: row.canCatchup ? Accessible.Button : Accessible.ListItem
    Accessible.name: row.time + ", " + row.title
    Accessible.description: row.detail
    Accessible.onPressAction: clicked()
    Keys.onReturnPressed: event => row.choose(event)
    Keys.onEnterPressed: event => row.choose(event)
    onClicked: if (row.canCatchup) row.playCatchup()

    /// A key on a programme that cannot be played is somebody else's.
    function choose(event: KeyEvent) {
        event.accepted = row.canCatchup
        if (row.canCatchup)
            row.playCatchup()
    }

    contentItem: Item {
        Label {
            id: clock
            x: Theme.unit * 4
            // As wide as most, so that the dots stand in a line.
            width: Math.max(implicitWidth, Theme.unit * 11)
            anchors.verticalCenter: parent.verticalCenter
            text: row.time
            color: row.isCurrent ? Theme.onAir : Theme.guideTime
            font.weight: Font.DemiBold
            Accessible.ignored: true
        }
        Rectangle {
            id: dot
            anchors.left: clock.right
            anchors.leftMargin: Theme.unit * 3
            anchors.verticalCenter: parent.verticalCenter
            width: 8
            height: 8
            radius: 4
            color: row.isCurrent ? Theme.onAir : row.isPast ? Theme.guidePastDot : Theme.guideFutureDot
        }
        Column {
            anchors.left: dot.right
            anchors.leftMargin: Theme.unit * 3
            anchors.right: play.visible ? play.left : parent.right
            anchors.rightMargin: Theme.unit * 4
            anchors.verticalCenter: parent.verticalCenter
            spacing: Theme.unit / 2
            Label {
                id: titleLabel
                width: parent.width
                text: row.title
                color: row.isCurrent ? Theme.guideText : row.isPast ? Theme.guidePastTitle : Theme.guideFutureTitle
                font.weight: row.isCurrent ? Font.Bold : Font.Normal
                wrapMode: Text.Wrap
                maximumLineCount: 2
                elide: Text.ElideRight
                Accessible.ignored: true
            }
            Label {
                width: parent.width
                visible: text !== ""
                text: row.detail
                color: Theme.guideDetail
                font.pixelSize: Theme.captionSize
                wrapMode: Text.Wrap
                maximumLineCount: titleLabel.lineCount > 1 ? 1 : 2
                elide: Text.ElideRight
                Accessible.ignored: true
            }
        }
        Icon {
            id: play
            anchors.right: parent.right
            anchors.rightMargin: Theme.unit * 4
            anchors.verticalCenter: parent.verticalCenter
            visible: row.canCatchup
            symbol: "play.fill"
            size: 20
            color: row.hovered || (row.activeFocus && FocusGuide.isKeyboardInUse) ? Theme.accent
                : Theme.guideFutureDot
        }
    }
    background: Rectangle {
        radius: Theme.cardRadius
        color: !row.canCatchup ? "transparent" : row.down ? Theme.buttonPressed
            : row.hovered ? Theme.buttonHover : "transparent"
        FocusRing { control: row; distance: -2; radius: parent.radius }
    }
}
