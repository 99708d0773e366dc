import QtQuick
import Ondavia.Player

/// What covers a player for a while: its settings, and the list of its keys.
Item {
    id: layers
    required property PlayerScreen model
    readonly property bool isCovering: sheet.isOpen || keyList.isOpen

    Layer {
        id: sheet
        anchors.fill: parent
        isOpen: layers.model.showSettings
        page: Qt.resolvedUrl("SettingsSheet.qml")
        pageProperties: ({ focus: true, player: layers.model, model: layers.model.sheet })
    }
    Layer {
        id: keyList
        anchors.fill: parent
        isOpen: layers.model.showKeys
        page: Qt.resolvedUrl("KeyList.qml")
        pageProperties: ({ focus: true, player: layers.model })
    }
}
