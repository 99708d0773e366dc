import QtQuick
import Ondavia.Browse
import Ondavia.Style

/// The series by categories.
CarouselsPage {
    kind: "series"
    symbol: "play.rectangle.fill"
    title: Texts.get("series.title", "Series")
}
