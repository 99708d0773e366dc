import QtQuick
import Ondavia.Browse
import Ondavia.Style

/// The films.
TitlesView {
    kind: "movie"
    symbol: "film.fill"
    title: Texts.get("movies.title", "Filmes")
    emptyTitle: Texts.get("movies.empty", "Sem filmes")
    emptyMessage: Texts.get("movies.emptyMessage", "Os filmes aparecem aqui assim que o catálogo do provedor for carregado.")
}
