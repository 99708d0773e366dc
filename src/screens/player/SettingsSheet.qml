pragma ComponentBehavior: Bound
import QtQuick
import Ondavia.Player
import Ondavia.Style

/// Sound, subtitles, proportions, and for a film speed and skips: a panel over the picture, which a tap beside
/// it closes.
FocusScope {
    id: sheet
    required property PlayerScreen player
    required property SettingsSheetModel model

    Accessible.role: Accessible.Dialog
    Accessible.name: Texts.get("player.settings", "Definições")
    Component.onCompleted: close.forceActiveFocus()
    Keys.onPressed: event => {
        if (FocusGuide.isBack(event.key) && event.isAutoRepeat) {
            event.accepted = true
        } else if (FocusGuide.isBack(event.key)) {
            event.accepted = true
            sheet.player.closeSettings()
        } else if (FocusGuide.isArrow(event.key)) {
            event.accepted = true
            FocusGuide.move(sheet, event.key)
        }
    }

    Rectangle {
        anchors.fill: parent
        color: Theme.dialogVeil
    }
    MouseArea {
        objectName: "sheetBackdrop"
        anchors.fill: parent
        hoverEnabled: true
        onClicked: sheet.player.closeSettings()
        onWheel: wheel => wheel.accepted = true
        Accessible.ignored: true
    }
    Rectangle {
        id: panel
        objectName: "sheetPanel"
        anchors.right: parent.right
        width: 350
        height: parent.height
        color: Theme.surface
        // A tap on the panel is not one beside it.
        MouseArea { anchors.fill: parent; Accessible.ignored: true }
        Rectangle {
            width: 1
            height: parent.height
            color: Theme.hairline
        }

        Label {
            id: heading
            x: Theme.unit * 6
            anchors.verticalCenter: close.verticalCenter
            text: Texts.get("player.settings", "Definições")
            font.pixelSize: Theme.headingSize
            font.weight: Font.DemiBold
            Accessible.role: Accessible.Heading
        }
        IconButton {
            id: close
            anchors.right: parent.right
            anchors.rightMargin: Theme.unit * 3
            y: Theme.unit * 4
            symbol: "xmark"
            text: Texts.get("common.close", "Fechar")
            onClicked: sheet.player.closeSettings()
        }
        ScrollPage {
            anchors.top: close.bottom
            anchors.topMargin: Theme.unit * 3
            anchors.bottom: parent.bottom
            width: parent.width
            contentHeight: sections.height + Theme.unit * 6
            Column {
                id: sections
                x: Theme.unit * 3
                width: panel.width - x * 2
                Repeater {
                    model: sheet.model.sections
                    SettingsSection {
                        id: section
                        required property SettingsSectionModel modelData
                        width: sections.width
                        model: section.modelData
                        notAvailable: sheet.model.notAvailable
                        onTapped: sheet.model.toggleSection(section.modelData.key)
                        onChosen: index => sheet.model.choose(section.modelData.key, index)
                    }
                }
            }
        }
    }
}
