import QtQuick
import Ondavia.Search
import Ondavia.Style

/// The search over one type, as a browser opens it.
SearchPage {
    id: view
    actions: IconButton {
        symbol: "xmark"
        text: Texts.get("general.close", "Fechar")
        onClicked: view.leave()
    }
}
