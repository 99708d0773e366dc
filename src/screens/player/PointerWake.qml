import QtQuick
import Ondavia.Player

/// Whoever moves a pointer over the picture wants to see the controls. One that trembles does not mean anything.
HoverHandler {
    id: pointer
    required property PlayerScreen model
    readonly property bool showsControls: pointer.model.controls.showControls
    property point rest
    /// The picture may have come under a pointer that does not move.
    property bool hasRest: false

    acceptedDevices: PointerDevice.Mouse | PointerDevice.TouchPad
    onShowsControlsChanged: pointer.rest = pointer.point.position
    onPointChanged: {
        const place = pointer.point.position
        if (!pointer.hasRest) {
            pointer.rest = place
            pointer.hasRest = true
        } else if (Math.hypot(place.x - pointer.rest.x, place.y - pointer.rest.y) > 6) {
            pointer.rest = place
            pointer.model.controls.wake()
        }
    }
}
