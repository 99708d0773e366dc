import QtQuick
import Ondavia.Style

/// The favourites tab.
EmptyStateView {
    icon: "heart.fill"
    title: Texts.get("tab.favorites", "Favoritos")
    message: Texts.get("favorites.notYet", "Os favoritos ainda não podem ser guardados nesta versão.")
}
