import QtQuick
import QtQuick.Templates as T
import Ondavia.Style

/// A title by its 2:3 poster, the name below, the rating over it.
T.ItemDelegate {
    id: card
    property url picture
    property string rating
    property string symbol: "film.fill"

    focusPolicy: Qt.ClickFocus
    Accessible.role: Accessible.Button
    Accessible.name: text
    Accessible.onPressAction: clicked()
    Keys.onReturnPressed: clicked()
    Keys.onEnterPressed: clicked()

    contentItem: Item {
        Item {
            id: poster
            width: parent.width
            height: parent.height - Theme.posterCaption
            scale: card.down ? 0.98 : card.hovered || (card.activeFocus && FocusGuide.isKeyboardInUse) ? 1.03 : 1
            Behavior on scale { NumberAnimation { duration: Theme.motionShort; easing.type: Theme.motionCurve } }

            PictureView {
                anchors.fill: parent
                source: card.picture
                symbol: card.symbol
                radius: Theme.cardRadius
            }
            RoundedCorners { anchors.fill: parent }
            Rectangle {
                visible: card.rating !== ""
                anchors.right: parent.right
                anchors.top: parent.top
                anchors.margins: Theme.unit * 2
                width: ratingRow.width + Theme.unit * 3
                height: Theme.unit * 6
                radius: height / 2
                color: Theme.badge
                Row {
                    id: ratingRow
                    anchors.centerIn: parent
                    spacing: Theme.unit
                    Icon {
                        symbol: "star.fill"
                        size: 14
                        color: Theme.caution
                        anchors.verticalCenter: parent.verticalCenter
                    }
                    Label {
                        text: card.rating
                        font.pixelSize: Theme.captionSize
                        font.weight: Font.DemiBold
                        anchors.verticalCenter: parent.verticalCenter
                        Accessible.ignored: true
                    }
                }
            }
            FocusRing { control: card; radius: Theme.cardRadius + distance }
        }
        Label {
            anchors.top: poster.bottom
            anchors.topMargin: Theme.unit * 2
            width: parent.width
            height: Theme.posterCaption - Theme.unit * 2
            text: card.text
            color: card.hovered || card.activeFocus ? Theme.text : Theme.textMuted
            font.weight: Font.Medium
            font.pixelSize: Theme.bodySize
            lineHeight: 1.1
            wrapMode: Text.Wrap
            maximumLineCount: 2
            elide: Text.ElideRight
            Accessible.ignored: true
        }
    }
    background: null
}
