#include "screens/style/Icons.h"

#include "base/AppLogger.h"

#include <algorithm>
#include <array>

namespace ondavia {

namespace {

constexpr std::array icons{
    IconEntry{"arrow.clockwise", u'\ue5d5'},
    IconEntry{"checkmark.circle.fill", u'\ue86c'},
    IconEntry{"chevron.left", u'\ue5cb'},
    IconEntry{"chevron.right", u'\ue5cc'},
    IconEntry{"clock", u'\ue192'},
    IconEntry{"exclamationmark.triangle.fill", u'\ue002'},
    IconEntry{"eye", u'\ue8f4'},
    IconEntry{"eye.slash", u'\ue8f5'},
    IconEntry{"film.fill", u'\ue02c'},
    IconEntry{"gearshape", u'\ue8b8'},
    IconEntry{"heart", u'\ue87e'},
    IconEntry{"heart.fill", u'\ue87d'},
    IconEntry{"house.fill", u'\ue88a'},
    IconEntry{"info.circle.fill", u'\ue88e'},
    IconEntry{"link", u'\ue157'},
    IconEntry{"magnifyingglass", u'\ue8b6'},
    IconEntry{"pause.fill", u'\ue034'},
    IconEntry{"person", u'\ue7fd'},
    IconEntry{"photo", u'\ue3f4'},
    IconEntry{"play.fill", u'\ue037'},
    IconEntry{"play.rectangle.fill", u'\ue63a'},
    IconEntry{"play.rectangle.on.rectangle.fill", u'\ue04a'},
    IconEntry{"plus", u'\ue145'},
    IconEntry{"speaker.slash.fill", u'\ue04f'},
    IconEntry{"speaker.wave.2.fill", u'\ue050'},
    IconEntry{"star.fill", u'\ue838'},
    IconEntry{"tv.fill", u'\ue639'},
    IconEntry{"xmark", u'\ue5cd'},
    IconEntry{"xmark.circle.fill", u'\ue5c9'},
};

} // namespace

std::span<const IconEntry> iconTable() {
    return icons;
}

QString Icons::glyph(const QString& symbol) const {
    const std::string name = symbol.toStdString();
    const auto entry = std::ranges::find(icons, name, &IconEntry::symbol);
    if (entry != icons.end()) {
        return QChar(entry->codePoint);
    }
    if (!name.empty()) {
        AppLogger::general.error("No icon is called %{public}s", {name});
    }
    return {};
}

} // namespace ondavia
