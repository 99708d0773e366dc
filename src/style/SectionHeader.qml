import QtQuick
import Ondavia.Style

/// The title of a page, with the way back where there is one, and buttons at its other end.
Item {
    id: header
    property string title
    property string detail
    property bool canGoBack: false
    property alias actions: actionRow.data
    signal back()

    implicitHeight: 72

    IconButton {
        id: backButton
        visible: header.canGoBack
        anchors.left: parent.left
        anchors.leftMargin: -Theme.unit * 3
        anchors.verticalCenter: parent.verticalCenter
        symbol: "chevron.left"
        symbolSize: 32
        text: Texts.get("common.back", "Voltar")
        onClicked: header.back()
    }
    Label {
        id: titleLabel
        anchors.left: header.canGoBack ? backButton.right : parent.left
        anchors.verticalCenter: parent.verticalCenter
        width: Math.min(implicitWidth, parent.width - x - detailLabel.implicitWidth - actionRow.width - Theme.unit * 4)
        text: header.title
        font.pixelSize: Theme.titleSize
        font.weight: Font.Bold
        fontSizeMode: Text.HorizontalFit
        minimumPixelSize: Theme.headingSize
        elide: Text.ElideRight
        Accessible.role: Accessible.Heading
    }
    Label {
        id: detailLabel
        anchors.left: titleLabel.right
        anchors.leftMargin: Theme.unit * 3
        anchors.baseline: titleLabel.baseline
        text: header.detail
        color: Theme.textFaint
    }
    Row {
        id: actionRow
        anchors.right: parent.right
        anchors.rightMargin: -Theme.unit * 3
        anchors.verticalCenter: parent.verticalCenter
    }
}
