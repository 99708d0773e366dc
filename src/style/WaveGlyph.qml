import QtQuick
import Ondavia.Style

/// The sign of the application: a breaking wave. A drawing rather than shapes, which would have the
/// graphics card prepare several programs before the first frame.
Image {
    id: glyph
    property int size: 28
    width: glyph.size * 1.2
    height: glyph.size * 1.2
    source: Environment.hasShownFrame ? Qt.resolvedUrl("wave.svg") : ""
    sourceSize.width: Math.ceil(glyph.width * Screen.devicePixelRatio)
    sourceSize.height: Math.ceil(glyph.height * Screen.devicePixelRatio)
    asynchronous: true
    Accessible.ignored: true
}
