import QtQuick
import Ondavia.Browse
import Ondavia.Style

/// The films by categories.
CarouselsPage {
    kind: "movie"
    symbol: "film.fill"
    title: Texts.get("movies.title", "Filmes")
}
