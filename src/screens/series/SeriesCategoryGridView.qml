import QtQuick
import Ondavia.Browse

/// The series of one category.
CategoryGridPage {
    kind: "series"
    symbol: "play.rectangle.fill"
}
