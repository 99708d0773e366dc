pragma ComponentBehavior: Bound
import QtQuick
import QtQuick.Templates as T
import Ondavia.Guide
import Ondavia.Style

/// The guide of one channel: the programmes of a day, or the days of its archive in their place. Reads while it
/// is visible.
FocusScope {
    id: panel
    required property EPGPanelViewModel model

    /// To the programmes, also those on their way, or to what there is in their place; false where there is nothing.
    function takeFocus(): bool {
        const isEmpty = panel.model.content === EPGPanelViewModel.Empty
        if (isEmpty && !header.visible)
            return false
        if (days.visible)
            days.forceActiveFocus(Qt.TabFocusReason)
        else if (isEmpty)
            header.forceActiveFocus(Qt.TabFocusReason)
        else
            programs.forceActiveFocus(Qt.TabFocusReason)
        return true
    }

    Accessible.role: Accessible.Pane
    Accessible.name: Texts.get("player.guide", "Guia de programação")
    Component.onCompleted: if (panel.visible) panel.model.appear()
    Component.onDestruction: if (panel.model !== null) panel.model.disappear()
    onVisibleChanged: panel.visible ? panel.model.appear() : panel.model.disappear()
    Keys.onPressed: event => {
        if (FocusGuide.isBack(event.key) && panel.model.showDatePicker) {
            event.accepted = true
            panel.model.showDatePicker = false
        } else {
            event.accepted = FocusGuide.move(panel, event.key)
        }
    }

    T.AbstractButton {
        id: header
        objectName: "guideHeader"
        width: parent.width
        height: panel.model.hasDayHeader ? 56 : 0
        visible: panel.model.hasDayHeader
        focusPolicy: Qt.TabFocus
        text: panel.model.dayText
        Accessible.role: Accessible.Button
        Accessible.name: text
        Accessible.onPressAction: clicked()
        Keys.onReturnPressed: clicked()
        Keys.onEnterPressed: clicked()
        onClicked: {
            const isLed = header.activeFocus
            panel.model.toggleDatePicker()
            if (isLed && panel.model.showDatePicker)
                days.forceActiveFocus(Qt.TabFocusReason)
        }

        contentItem: Item {
            Icon {
                id: calendar
                x: Theme.unit * 4
                anchors.verticalCenter: parent.verticalCenter
                symbol: "calendar"
                size: 20
                color: Theme.textMuted
            }
            Label {
                anchors.left: calendar.right
                anchors.leftMargin: Theme.unit * 3
                anchors.right: chevron.left
                anchors.verticalCenter: parent.verticalCenter
                text: header.text
                font.weight: Font.DemiBold
                elide: Text.ElideRight
                Accessible.ignored: true
            }
            Icon {
                id: chevron
                anchors.right: parent.right
                anchors.rightMargin: Theme.unit * 4
                anchors.verticalCenter: parent.verticalCenter
                symbol: "chevron.down"
                size: 20
                color: Theme.textFaint
                rotation: panel.model.showDatePicker ? 180 : 0
                Behavior on rotation { NumberAnimation { duration: Theme.motionShort } }
            }
        }
        background: Rectangle {
            radius: Theme.cardRadius
            color: header.down ? Theme.buttonPressed : header.hovered ? Theme.buttonHover : "transparent"
            FocusRing { control: header; distance: -2; radius: parent.radius }
        }
    }
    Rectangle {
        anchors.top: header.bottom
        width: parent.width
        height: 1
        visible: header.visible
        color: Theme.hairline
    }

    RowList {
        id: days
        objectName: "guideDays"
        anchors.fill: parent
        anchors.topMargin: header.height + Theme.unit
        visible: panel.model.content === EPGPanelViewModel.Days
        // Who chose with the keyboard stays with the header.
        onVisibleChanged: if (!visible && days.focus && FocusGuide.isKeyboardInUse) header.forceActiveFocus(Qt.TabFocusReason)
        model: panel.model.days
        delegate: EPGDayRow {
            id: day
            required property int index
            width: days.width
            onClicked: panel.model.pickDay(day.index)
        }
        Connections {
            target: panel.model.days
            function onSelectedRowChanged() {
                days.startAt(panel.model.days.selectedRow)
            }
        }
    }
    Column {
        anchors.centerIn: parent
        width: parent.width - Theme.pageMargin * 2
        visible: panel.model.content === EPGPanelViewModel.Loading
        spacing: Theme.unit * 4
        Spinner {
            anchors.horizontalCenter: parent.horizontalCenter
            running: parent.visible
        }
        Label {
            width: parent.width
            text: Texts.get("epg.loading", "A carregar programacao...")
            color: Theme.textMuted
            horizontalAlignment: Text.AlignHCenter
            wrapMode: Text.Wrap
        }
    }
    Column {
        anchors.centerIn: parent
        width: parent.width - Theme.pageMargin * 2
        visible: panel.model.content === EPGPanelViewModel.Empty
        spacing: Theme.unit * 4
        Icon {
            width: parent.width
            symbol: "tv.slash"
            size: 40
            color: Theme.textFaint
        }
        Label {
            width: parent.width
            text: Texts.get("epg.noData", "Sem informacao de programacao")
            color: Theme.textMuted
            horizontalAlignment: Text.AlignHCenter
            wrapMode: Text.Wrap
        }
    }
    RowList {
        id: programs
        objectName: "guidePrograms"
        anchors.fill: parent
        anchors.topMargin: header.height + Theme.unit
        visible: panel.model.content === EPGPanelViewModel.Programs
        focus: true
        model: panel.model.programs
        delegate: EPGProgramRow {
            id: program
            required property int index
            width: programs.width
            onPlayCatchup: panel.model.playCatchup(program.index)
        }
        Connections {
            target: panel.model.programs
            function onCurrentRowChanged() {
                programs.startAt(panel.model.programs.currentRow)
            }
        }
    }
}
