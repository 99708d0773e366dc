pragma ComponentBehavior: Bound
import QtQuick
import QtQuick.Templates as T
import Ondavia.Browse
import Ondavia.Style

/// The categories to choose from, the selected one with a check mark.
RowList {
    id: list
    required property CategoryListModel categories
    required property int selectedRow
    signal chosen(int row)

    model: list.categories
    reuseItems: true
    Accessible.name: Texts.get("live.categories", "Categorias")

    delegate: T.ItemDelegate {
        id: choice
        required property int index
        required property string name
        required property string countText
        readonly property bool isSelected: choice.index === list.selectedRow

        width: list.width
        implicitHeight: 52
        leftPadding: Theme.unit * 4
        rightPadding: Theme.unit * 4
        focusPolicy: Qt.NoFocus
        Accessible.role: Accessible.RadioButton
        Accessible.name: choice.name
        Accessible.checked: choice.isSelected
        Accessible.onPressAction: clicked()
        Keys.onReturnPressed: clicked()
        Keys.onEnterPressed: clicked()
        onClicked: list.chosen(choice.index)
        contentItem: Item {
            Icon {
                id: mark
                anchors.verticalCenter: parent.verticalCenter
                width: 20
                symbol: choice.isSelected ? "checkmark" : ""
                size: 20
                color: Theme.accent
            }
            Label {
                anchors.left: mark.right
                anchors.leftMargin: Theme.unit * 3
                anchors.right: count.left
                anchors.rightMargin: Theme.unit * 3
                anchors.verticalCenter: parent.verticalCenter
                text: choice.name
                color: choice.isSelected ? Theme.accent : Theme.text
                font.weight: choice.isSelected ? Font.DemiBold : Font.Medium
                elide: Text.ElideRight
                Accessible.ignored: true
            }
            Label {
                id: count
                anchors.right: parent.right
                anchors.verticalCenter: parent.verticalCenter
                text: choice.countText
                color: Theme.textFaint
                Accessible.ignored: true
            }
        }
        background: Rectangle {
            radius: Theme.unit * 2
            color: choice.down ? Theme.surfacePressed : choice.hovered ? Theme.surfaceRaised : "transparent"
            Behavior on color { ColorAnimation { duration: Theme.motionShort } }
            FocusRing { control: choice; distance: 0; radius: parent.radius }
        }
    }
}
