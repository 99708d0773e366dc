#include "screens/browse/BrowserViewModel.h"

#include "base/AppLogger.h"
#include "library/CatalogueSummary.h"
#include "state/AppState.h"
#include "store/LibraryStore.h"

#include <algorithm>
#include <unordered_map>

namespace ondavia {
namespace {

auto categoriesChanged(BrowserKind kind) {
    switch (kind) {
    case BrowserKind::Live:
        return &AppState::liveCategoriesChanged;
    case BrowserKind::Movies:
        return &AppState::vodCategoriesChanged;
    case BrowserKind::Series:
        break;
    }
    return &AppState::seriesCategoriesChanged;
}

} // namespace

BrowserViewModel::BrowserViewModel(BrowserKind kind, AppState& appState, LibraryStore& store,
                                   CatalogueSummary& catalogue, OpenTitle openTitle)
    : m_kind(kind)
    , m_appState(appState)
    , m_catalogue(catalogue)
    , m_openTitle(std::move(openTitle))
    , m_categories(this)
    , m_titles(store, this)
    , m_listener(store, EntityKind::Channel, [this] {
        m_titles.reload();
        refresh();
    }) {
    connect(&appState, categoriesChanged(kind), this, &BrowserViewModel::refresh);
    connect(&appState, &AppState::isLoadingChanged, this, &BrowserViewModel::isLoadingChanged);
    refresh();
}

const char* BrowserViewModel::type() const {
    switch (m_kind) {
    case BrowserKind::Live:
        return "live";
    case BrowserKind::Movies:
        return "movie";
    case BrowserKind::Series:
        break;
    }
    return "series";
}

const std::vector<CategoryItem>& BrowserViewModel::providerCategories() const {
    switch (m_kind) {
    case BrowserKind::Live:
        return m_appState.liveCategories();
    case BrowserKind::Movies:
        return m_appState.vodCategories();
    case BrowserKind::Series:
        break;
    }
    return m_appState.seriesCategories();
}

std::vector<CategoryRow> BrowserViewModel::countedCategories() const {
    const std::vector<CategoryItem>& categories = providerCategories();
    if (categories.empty()) {
        // Before the catalogue is there nobody has to wait for its counts.
        return {};
    }
    std::unordered_map<std::string, std::int64_t> counts;
    try {
        const auto& groups = m_catalogue.groups(type());
        counts.insert(groups.begin(), groups.end());
    } catch (const StoreError& error) {
        AppLogger::general.error("The categories could not be counted: %s", {error.what()});
    }
    std::vector<CategoryRow> rows;
    for (const CategoryItem& item : categories) {
        const auto count = counts.find(item.name);
        if (count != counts.end()) {
            rows.push_back({item.name, count->second});
        } else if (m_kind == BrowserKind::Live) {
            rows.push_back({item.name, std::nullopt});
        }
    }
    return rows;
}

bool BrowserViewModel::isLoading() const {
    return m_appState.isLoading();
}

int BrowserViewModel::categoryRow() const {
    const auto& rows = m_categories.rows();
    const auto open = std::ranges::find(rows, m_categoryName, &CategoryRow::name);
    return open == rows.end() ? -1 : static_cast<int>(open - rows.begin());
}

void BrowserViewModel::openCategory(int row) {
    const auto& rows = m_categories.rows();
    if (row >= 0 && row < static_cast<int>(rows.size())) {
        show(rows[static_cast<std::size_t>(row)].name);
    }
}

void BrowserViewModel::play(int row) {
    if (const auto channel = m_titles.channel(row)) {
        m_appState.playChannel(*channel);
    }
}

void BrowserViewModel::open(int row) {
    const auto title = m_titles.channel(row);
    if (title && m_openTitle) {
        m_openTitle(*title);
    }
}

void BrowserViewModel::refresh() {
    m_categories.setRows(countedCategories());
    if (m_kind != BrowserKind::Live && categoryRow() < 0 && m_categories.rowCount() > 0) {
        openCategory(0);
    } else {
        Q_EMIT categoryChanged();
    }
}

void BrowserViewModel::show(std::string categoryName) {
    m_categoryName = std::move(categoryName);
    m_titles.setQuery(
        {.where = field(&Channel::type) == type() && field(&Channel::groupTitle) == m_categoryName,
         .sort = {ascending(&Channel::num)}});
    Q_EMIT categoryChanged();
}

} // namespace ondavia
