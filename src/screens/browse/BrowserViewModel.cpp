#include "screens/browse/BrowserViewModel.h"

#include "state/AppState.h"

#include <string_view>
#include <unordered_map>

namespace ondavia {

BrowserViewModel::BrowserViewModel(BrowserKind kind, AppState& appState, LibraryStore& store,
                                   CatalogueSummary& catalogue, OpenTitle openTitle)
    : CatalogueBrowser(kind, appState, store, catalogue)
    , m_openTitle(std::move(openTitle)) {}

void BrowserViewModel::showGroups(const std::vector<CategoryItem>& categories,
                                  const CatalogueSummary::Groups& groups) {
    std::unordered_map<std::string_view, const KeyGroup*> byName;
    for (const KeyGroup& group : groups) {
        byName.emplace(group.value, &group);
    }
    std::vector<Carousel> carousels;
    for (const CategoryItem& category : categories) {
        const auto group = byName.find(category.name);
        if (group != byName.end()) {
            carousels.push_back({category.name, group->second->firstKeys});
        }
    }
    m_carousels.setRows(rows(), std::move(carousels));
}

void BrowserViewModel::openCategory(int carousel) {
    if (carousel >= 0 && carousel < m_carousels.rowCount()) {
        showCategory(m_carousels.rows()[static_cast<std::size_t>(carousel)].name);
    }
}

void BrowserViewModel::lead(const std::optional<Channel>& title) const {
    if (title) {
        m_openTitle(*title);
    }
}

} // namespace ondavia
