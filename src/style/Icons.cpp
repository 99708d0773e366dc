#include "style/Icons.h"

#include "base/AppLogger.h"

#include <algorithm>
#include <array>

namespace ondavia {

namespace {

/// Goes back; who shows one that goes forward turns it round, and writes the seconds into it.
constexpr char16_t skipArrow = u'\ue042';

constexpr std::array icons{
    IconEntry{"arrow.clockwise", u'\ue5d5'},
    IconEntry{"arrow.down.right.and.arrow.up.left", u'\ue5d1'},
    IconEntry{"arrow.up.left.and.arrow.down.right", u'\ue5d0'},
    IconEntry{"calendar", u'\ue935'},
    IconEntry{"backward.end.fill", u'\ue045'},
    IconEntry{"checkmark", u'\ue5ca'},
    IconEntry{"checkmark.circle.fill", u'\ue86c'},
    IconEntry{"chevron.down", u'\ue5cf'},
    IconEntry{"chevron.left", u'\ue5cb'},
    IconEntry{"chevron.right", u'\ue5cc'},
    IconEntry{"clock", u'\ue192'},
    IconEntry{"exclamationmark.triangle.fill", u'\ue002'},
    IconEntry{"eye", u'\ue8f4'},
    IconEntry{"eye.slash", u'\ue8f5'},
    IconEntry{"film.fill", u'\ue02c'},
    IconEntry{"forward.end.fill", u'\ue044'},
    IconEntry{"gearshape", u'\ue8b8'},
    IconEntry{"gobackward.5", skipArrow},
    IconEntry{"gobackward.10", skipArrow},
    IconEntry{"gobackward.15", skipArrow},
    IconEntry{"gobackward.30", skipArrow},
    IconEntry{"gobackward.45", skipArrow},
    IconEntry{"gobackward.75", skipArrow},
    IconEntry{"gobackward.90", skipArrow},
    IconEntry{"goforward.5", skipArrow},
    IconEntry{"goforward.10", skipArrow},
    IconEntry{"goforward.15", skipArrow},
    IconEntry{"goforward.30", skipArrow},
    IconEntry{"goforward.45", skipArrow},
    IconEntry{"goforward.75", skipArrow},
    IconEntry{"goforward.90", skipArrow},
    IconEntry{"heart", u'\ue87e'},
    IconEntry{"heart.fill", u'\ue87d'},
    IconEntry{"house.fill", u'\ue88a'},
    IconEntry{"info.circle.fill", u'\ue88e'},
    IconEntry{"link", u'\ue157'},
    IconEntry{"magnifyingglass", u'\ue8b6'},
    IconEntry{"pause.fill", u'\ue034'},
    IconEntry{"person", u'\ue7fd'},
    IconEntry{"photo", u'\ue3f4'},
    IconEntry{"pip.enter", u'\ue911'},
    IconEntry{"play.fill", u'\ue037'},
    IconEntry{"play.rectangle.fill", u'\ue63a'},
    IconEntry{"play.rectangle.on.rectangle.fill", u'\ue04a'},
    IconEntry{"plus", u'\ue145'},
    IconEntry{"speaker.slash.fill", u'\ue04f'},
    IconEntry{"speaker.wave.2.fill", u'\ue050'},
    IconEntry{"star.fill", u'\ue838'},
    IconEntry{"sun.max.fill", u'\ue430'},
    IconEntry{"tv.fill", u'\ue639'},
    IconEntry{"tv.slash", u'\ue647'},
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
