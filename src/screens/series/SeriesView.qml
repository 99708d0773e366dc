import QtQuick
import Ondavia.Browse
import Ondavia.Style

/// The series.
BrowserPage {
    id: view
    required property BrowserViewModel model
    browser: view.model
    loadingText: Texts.get("series.loading", "A carregar series...")

    SeriesCarouselsView {
        anchors.fill: parent
        focus: true
        browser: view.model
        onCategoryOpened: {
            const stack = view.parent as NavigationStack
            stack.open(Qt.resolvedUrl("SeriesCategoryGridView.qml"), { browser: view.model })
        }
    }
}
