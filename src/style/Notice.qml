import QtQuick
import Ondavia.Style

/// A remark within a page, in the colour of its kind.
Rectangle {
    id: notice
    property string text
    property int kind: NoticeKind.Info
    readonly property color tint: Theme.noticeColor(notice.kind)

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
        symbol: Theme.noticeSymbol(notice.kind)
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
