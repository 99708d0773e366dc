import QtQuick
import Ondavia.Search

/// The search over the whole catalogue, which chips narrow to a type.
SearchPage {
    canGoBack: true
}
