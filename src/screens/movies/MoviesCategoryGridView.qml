import QtQuick
import Ondavia.Browse

/// The films of one category.
CategoryGridPage {
    kind: "movie"
    symbol: "film.fill"
}
