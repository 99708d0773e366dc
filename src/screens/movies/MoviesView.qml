import QtQuick
import Ondavia.Browse
import Ondavia.Style

/// The films.
BrowserPage {
    id: view
    required property BrowserViewModel model
    browser: view.model
    loadingText: Texts.get("movies.loading", "A carregar filmes...")

    MoviesCarouselView {
        anchors.fill: parent
        focus: true
        browser: view.model
        onCategoryOpened: {
            const stack = view.parent as NavigationStack
            stack.open(Qt.resolvedUrl("MoviesCategoryGridView.qml"), { browser: view.model })
        }
    }
}
