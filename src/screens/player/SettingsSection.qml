pragma ComponentBehavior: Bound
import QtQuick
import QtQuick.Templates as T
import Ondavia.Player
import Ondavia.Style

/// A row that says what is chosen, and opens into its choices.
Item {
    id: section
    required property SettingsSectionModel model
    required property string notAvailable
    signal tapped()
    signal chosen(int index)

    implicitHeight: row.height + choices.height
    clip: true

    T.AbstractButton {
        id: row
        objectName: "section-" + section.model.key
        width: parent.width
        height: 56
        text: section.model.title
        focusPolicy: Qt.TabFocus
        Accessible.role: Accessible.Button
        Accessible.name: section.model.title + ", " + section.model.value
        Accessible.onPressAction: clicked()
        Keys.onReturnPressed: clicked()
        Keys.onEnterPressed: clicked()
        onClicked: section.tapped()

        contentItem: Item {
            Label {
                id: title
                anchors.left: parent.left
                anchors.leftMargin: Theme.unit * 3
                anchors.verticalCenter: parent.verticalCenter
                text: section.model.title
                font.weight: Font.Medium
                Accessible.ignored: true
            }
            Label {
                anchors.left: title.right
                anchors.leftMargin: Theme.unit * 4
                anchors.right: chevron.left
                anchors.rightMargin: Theme.unit
                anchors.verticalCenter: parent.verticalCenter
                text: section.model.value
                color: Theme.textMuted
                horizontalAlignment: Text.AlignRight
                elide: Text.ElideRight
                Accessible.ignored: true
            }
            Icon {
                id: chevron
                anchors.right: parent.right
                anchors.rightMargin: Theme.unit * 3
                anchors.verticalCenter: parent.verticalCenter
                symbol: section.model.isExpanded ? "chevron.down" : "chevron.right"
                size: 20
                color: Theme.textFaint
            }
        }
        background: Rectangle {
            radius: Theme.cardRadius
            color: row.down ? Theme.buttonPressed : row.hovered ? Theme.buttonHover : "transparent"
            FocusRing { control: row; distance: -2; radius: parent.radius }
        }
    }
    FocusScope {
        id: choices
        anchors.top: row.bottom
        width: parent.width
        height: section.model.isExpanded ? list.implicitHeight + Theme.unit * 2 : 0
        visible: height > 0
        enabled: section.model.isExpanded
        opacity: section.model.isExpanded ? 1 : 0
        clip: true
        Behavior on height { NumberAnimation { duration: Theme.motion; easing.type: Easing.InOutQuad } }
        Behavior on opacity { NumberAnimation { duration: Theme.motion; easing.type: Easing.InOutQuad } }

        Column {
            id: list
            width: parent.width
            Label {
                visible: section.model.options.length === 0
                x: Theme.unit * 6
                height: 48
                verticalAlignment: Text.AlignVCenter
                text: section.notAvailable
                color: Theme.textFaint
            }
            Repeater {
                model: section.model.options
                SettingsOption {
                    id: option
                    required property var modelData
                    required property int index
                    width: list.width
                    text: option.modelData.title
                    isSelected: option.modelData.isSelected
                    onClicked: {
                        // Who chose with the keyboard stays with the section.
                        if (option.activeFocus)
                            row.forceActiveFocus(Qt.TabFocusReason)
                        section.chosen(option.index)
                    }
                }
            }
        }
    }
}
