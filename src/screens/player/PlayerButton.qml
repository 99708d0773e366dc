import QtQuick
import Ondavia.Style

/// A round button over a picture. A click leaves the focus with the picture, so that the keys go on steering
/// the film.
IconButton {
    id: button
    /// On a disc of its own, where no scrim lies behind it.
    property bool hasDisc: false

    // The controls fade as one, also while they take no input.
    opacity: 1
    focusPolicy: Qt.TabFocus
    background: Rectangle {
        radius: width / 2
        color: button.down ? Theme.discPressed : button.hovered ? Theme.discHover
            : button.hasDisc ? Theme.disc : "transparent"
        Behavior on color { ColorAnimation { duration: Theme.motionShort } }
        FocusRing { control: button; distance: -1; radius: width / 2 }
    }
}
