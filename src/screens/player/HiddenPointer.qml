import QtQuick

/// Above all that a pointer may rest on: where it rests, its shape is that of the uppermost item which asks for one.
/// A handler's would change at the next move only.
MouseArea {
    property bool hides: false

    acceptedButtons: Qt.NoButton
    cursorShape: hides ? Qt.BlankCursor : Qt.ArrowCursor
    Accessible.ignored: true
}
