import QtQuick
import Ondavia.Browse
import Ondavia.Style

/// The first page of a tab that shows the catalogue: says that it loads, then what it has loaded.
FocusScope {
    id: page
    required property CatalogueBrowser browser
    required property string loadingText
    default property alias content: loaded.data

    function showSight() {
        if (page.visible)
            page.browser.appear()
    }
    Component.onCompleted: page.showSight()
    onVisibleChanged: page.showSight()

    Column {
        anchors.centerIn: parent
        width: page.width - Theme.marginFor(page.width) * 2
        spacing: Theme.unit * 4
        visible: page.browser.isLoading
        Spinner { anchors.horizontalCenter: parent.horizontalCenter }
        Label {
            width: parent.width
            text: page.loadingText
            color: Theme.textMuted
            horizontalAlignment: Text.AlignHCenter
            wrapMode: Text.Wrap
        }
    }
    FocusScope {
        id: loaded
        anchors.fill: parent
        focus: true
        visible: !page.browser.isLoading
    }
}
