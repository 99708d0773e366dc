import QtQuick
import Ondavia.Browse
import Ondavia.Live
import Ondavia.Style

/// The channels.
BrowserPage {
    id: view
    required property LiveViewModel model
    browser: view.model
    loadingText: Texts.get("live.loading", "A carregar canais...")

    LiveCategoryListView {
        anchors.fill: parent
        focus: true
        model: view.model
        onCategoryOpened: {
            const stack = view.parent as NavigationStack
            stack.open(Qt.resolvedUrl("LiveCategoryDetailView.qml"), { model: view.model })
        }
    }
}
