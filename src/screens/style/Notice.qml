import QtQuick
import Ondavia

/// A remark within a page, in the colour of its kind (info, success, warning, error).
Rectangle {
    id: notice
    property string text
    property int type: 0
    readonly property var symbols: ["info.circle.fill", "checkmark.circle.fill", "exclamationmark.triangle.fill",
                                    "xmark.circle.fill"]
    readonly property var colors: [Theme.accent, Theme.good, Theme.caution, Theme.danger]
    readonly property color tint: notice.colors[notice.type] ?? Theme.accent

    implicitHeight: label.implicitHeight + Theme.unit * 6
    radius: Theme.cardRadius
    color: Qt.rgba(notice.tint.r, notice.tint.g, notice.tint.b, 0.1)
    border.width: 1
    border.color: Qt.rgba(notice.tint.r, notice.tint.g, notice.tint.b, 0.3)
    Accessible.role: Accessible.AlertMessage
    Accessible.name: notice.text

    Icon {
        id: icon
        x: Theme.unit * 4
        y: Theme.unit * 3
        symbol: notice.symbols[notice.type] ?? notice.symbols[0]
        size: 20
        color: notice.tint
    }
    Label {
        id: label
        anchors.left: icon.right
        anchors.leftMargin: Theme.unit * 3
        anchors.right: parent.right
        anchors.rightMargin: Theme.unit * 4
        y: Theme.unit * 3
        text: notice.text
        lineHeight: 1.25
        wrapMode: Text.Wrap
        Accessible.ignored: true
    }
}
