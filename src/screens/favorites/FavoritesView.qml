import QtQuick
import Ondavia.Style

/// The favourites tab.
EmptyStateView {
    icon: "heart.fill"
    title: Texts.get("tab.favorites", "Favoritos")
    message: Texts.get("favorites.notYet", "Os favoritos ficam guardados, mas esta versão ainda não os mostra aqui.")
}
