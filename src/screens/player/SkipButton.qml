import QtQuick

/// Steps back or forward; shows by how much.
PlayerButton {
    id: button
    hasDisc: true
    diameter: 60
    contentItem: SkipIcon {
        symbol: button.symbol
        size: 36
    }
}
