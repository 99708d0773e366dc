import QtQuick
import Ondavia.Details

/// A film.
DetailPage {
    id: view
    required property MovieDetailViewModel model

    objectName: "movieDetail"
    detail: view.model
    symbol: "film.fill"
}
