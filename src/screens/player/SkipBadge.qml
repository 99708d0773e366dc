import QtQuick
import Ondavia.Player
import Ondavia.Style

/// How far a burst of double taps or key presses has gone, at the side that it goes to.
Item {
    id: badge
    required property PlayerSkips model
    readonly property bool isShown: badge.model.seekDirection !== ""

    // What it last said stays until it has faded.
    property string symbol
    property string seconds
    property bool isForward: false
    function take() {
        if (badge.isShown) {
            badge.symbol = badge.model.badgeSymbol
            badge.seconds = badge.model.badgeSeconds
            badge.isForward = badge.model.seekDirection === "forward"
        }
    }
    Component.onCompleted: badge.take()
    Connections {
        target: badge.model
        function onBadgeChanged() {
            badge.take()
        }
    }

    Rectangle {
        objectName: "skipBadge"
        x: badge.width * (badge.isForward ? 0.78 : 0.22) - width / 2
        anchors.verticalCenter: parent.verticalCenter
        // Where the buttons of the middle reach as far as this, below them.
        anchors.verticalCenterOffset: badge.width < 600 && badge.height > 600 ? 120 : 0
        width: 112
        height: width
        radius: width / 2
        color: Theme.disc
        visible: opacity > 0
        opacity: badge.isShown ? 1 : 0
        scale: badge.isShown ? 1 : 0.9
        Behavior on opacity { NumberAnimation { duration: Theme.motion; easing.type: Theme.motionCurve } }
        Behavior on scale { NumberAnimation { duration: Theme.motion; easing.type: Theme.motionCurve } }
        Accessible.role: Accessible.StaticText
        Accessible.name: seconds.text

        Column {
            anchors.centerIn: parent
            SkipIcon {
                anchors.horizontalCenter: parent.horizontalCenter
                symbol: badge.symbol
                size: 44
                showsSeconds: false
            }
            Label {
                id: seconds
                anchors.horizontalCenter: parent.horizontalCenter
                text: badge.seconds
                font.pixelSize: Theme.headingSize
                font.weight: Font.DemiBold
                Accessible.ignored: true
            }
        }
    }
}
