pragma ComponentBehavior: Bound
import QtQuick
import QtQuick.Templates as T
import Ondavia.Browse
import Ondavia.LivePlayer
import Ondavia.Style

/// The channels of one category, and above them which category that is. A tap plays.
FocusScope {
    id: panel
    required property CategoryListModel categories
    required property string selectedCategory
    required property int categoryRow
    required property LiveChannelListModel channels
    /// Row of the channel on air; -1 for none.
    required property int currentRow
    property bool showCategories: false
    signal channelSelected(int row)
    signal categorySelected(int row)
    signal categoriesToggled()

    function takeFocus() {
        (panel.showCategories ? menu : list).forceActiveFocus(Qt.TabFocusReason)
    }
    function reveal() {
        list.currentIndex = Math.max(0, panel.currentRow)
        list.positionViewAtIndex(list.currentIndex, ListView.Center)
    }
    onShowCategoriesChanged: if (panel.activeFocus) panel.takeFocus()
    onCurrentRowChanged: {
        // By as little as need be: who has scrolled wants to stay there.
        if (panel.currentRow >= 0) {
            list.currentIndex = panel.currentRow
            list.positionViewAtIndex(panel.currentRow, ListView.Contain)
        }
    }
    Component.onCompleted: panel.reveal()
    Connections {
        target: panel.channels
        function onModelReset() {
            revealing.restart()
        }
    }
    // In the next turn: then also the row is that of the new list.
    Timer {
        id: revealing
        interval: 0
        onTriggered: panel.reveal()
    }

    T.Button {
        id: category
        objectName: "categoryMenu"
        anchors.left: parent.left
        anchors.right: parent.right
        anchors.margins: Theme.unit * 2
        y: Theme.unit * 2
        implicitHeight: Theme.controlHeight
        leftPadding: Theme.unit * 4
        rightPadding: Theme.unit * 3
        focusPolicy: Qt.TabFocus
        enabled: panel.categories.rowCount() > 0
        text: panel.selectedCategory
        Accessible.role: Accessible.ButtonMenu
        Accessible.name: Texts.get("live.category", "Categoria") + ": " + category.text
        Accessible.onPressAction: clicked()
        Keys.onReturnPressed: clicked()
        Keys.onEnterPressed: clicked()
        onClicked: panel.categoriesToggled()
        contentItem: Item {
            Label {
                anchors.left: parent.left
                anchors.right: chevron.left
                anchors.rightMargin: Theme.unit * 2
                anchors.verticalCenter: parent.verticalCenter
                text: category.text
                font.weight: Font.DemiBold
                elide: Text.ElideRight
                Accessible.ignored: true
            }
            Icon {
                id: chevron
                anchors.right: parent.right
                anchors.verticalCenter: parent.verticalCenter
                symbol: "chevron.down"
                size: 22
                color: Theme.textMuted
                rotation: panel.showCategories ? 180 : 0
                Behavior on rotation { NumberAnimation { duration: Theme.motionShort } }
            }
        }
        background: Rectangle {
            radius: Theme.unit * 2
            color: category.down ? Theme.surfacePressed : category.hovered ? Theme.surfacePressed : Theme.surfaceRaised
            Behavior on color { ColorAnimation { duration: Theme.motionShort } }
            FocusRing { control: category; radius: parent.radius + distance }
        }
    }
    RowList {
        id: list
        objectName: "zapList"
        anchors.top: category.bottom
        anchors.topMargin: Theme.unit * 2
        anchors.bottom: parent.bottom
        anchors.left: parent.left
        anchors.right: parent.right
        anchors.leftMargin: Theme.unit * 2
        anchors.rightMargin: Theme.unit * 2
        visible: !panel.showCategories
        focus: true
        model: panel.channels
        reuseItems: true
        bottomMargin: Theme.unit * 2
        Accessible.name: panel.selectedCategory
        delegate: LiveChannelRow {
            id: row
            required property int index
            required property string name
            width: list.width
            text: row.name
            isOnAir: row.index === panel.currentRow
            onClicked: panel.channelSelected(row.index)
        }
    }
    EmptyStateView {
        anchors.fill: list
        visible: list.visible && list.count === 0
        isLow: height < 280
        icon: "tv.fill"
        title: Texts.get("live.empty", "Sem canais")
        message: Texts.get("live.emptyCategory", "O provedor não tem canais nesta categoria.")
    }
    CategoryList {
        id: menu
        anchors.fill: list
        visible: panel.showCategories
        categories: panel.categories
        selectedRow: panel.categoryRow
        onVisibleChanged: if (visible) menu.startAt(menu.selectedRow)
        onChosen: row => panel.categorySelected(row)
    }
}
