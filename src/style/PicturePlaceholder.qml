import QtQuick
import Ondavia.Style

/// What stands where a picture will be, or never comes: its final size, a quiet symbol.
Rectangle {
    id: placeholder
    property string symbol: "photo"

    gradient: Gradient {
        GradientStop { position: 0; color: Theme.placeholderTop }
        GradientStop { position: 1; color: Theme.placeholderBottom }
    }
    Icon {
        anchors.centerIn: parent
        symbol: placeholder.symbol
        size: Math.max(20, Math.min(48, Math.min(placeholder.width, placeholder.height) * 0.4))
        color: Theme.placeholderSymbol
    }
}
