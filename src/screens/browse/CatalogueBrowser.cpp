#include "screens/browse/CatalogueBrowser.h"

#include "base/AppLogger.h"
#include "state/AppState.h"
#include "store/LibraryStore.h"

#include <QPointer>

#include <utility>

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

CatalogueBrowser::CatalogueBrowser(BrowserKind kind, AppState& appState, LibraryStore& store,
                                   CatalogueSummary& catalogue)
    : m_kind(kind)
    , m_appState(appState)
    , m_store(store)
    , m_catalogue(catalogue)
    , m_rows(std::make_shared<ChannelRowCache>(store))
    , m_listener(store, EntityKind::Channel, [this] { follow(); }) {
    connect(&appState, categoriesChanged(kind), this, &CatalogueBrowser::follow);
    // At once: nobody is shown what has just gone.
    connect(&store, &LibraryStore::changed, this, [this](EntityKind changed) {
        if (changed == EntityKind::Channel) {
            m_rows->clear();
        }
    });
}

const char* CatalogueBrowser::type() const {
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

const std::vector<CategoryItem>& CatalogueBrowser::providerCategories() const {
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

void CatalogueBrowser::appear() {
    m_hasAppeared = true;
    follow();
}

void CatalogueBrowser::follow() {
    if (m_hasAppeared && !m_isWaiting) {
        // It raises nothing, and ends by itself when the browser goes.
        (void)load();
    }
}

QCoro::Task<void> CatalogueBrowser::load() {
    const QPointer self(this);
    m_isWaiting = true;
    while (!m_catalogue.isReady()) {
        co_await m_catalogue.ready();
        if (!self) {
            co_return;
        }
    }
    m_isWaiting = false;
    show();
    setIsLoading(false);
}

void CatalogueBrowser::show() {
    showGroups(providerCategories(), storedGroups());
    if (m_categoryName) {
        m_titles.setKeys(m_rows, keysOf(*m_categoryName));
    }
}

CatalogueSummary::Groups CatalogueBrowser::storedGroups() {
    try {
        return m_catalogue.groups(type());
    } catch (const StoreError& error) {
        AppLogger::general.error("The categories could not be counted: %s", {error.what()});
        return {};
    }
}

std::vector<std::int64_t> CatalogueBrowser::keysOf(const std::string& categoryName) {
    try {
        return m_store.mainContext().fetchKeys<Channel>(
            {.where = field(&Channel::type) == type() && field(&Channel::groupTitle) == categoryName,
             .sort = {ascending(&Channel::num)}});
    } catch (const StoreError& error) {
        AppLogger::general.error("The titles could not be read: %s", {error.what()});
        return {};
    }
}

void CatalogueBrowser::showCategory(const std::string& name) {
    m_categoryName = name;
    m_titles.startWith(m_rows, keysOf(name));
    Q_EMIT categoryNameChanged();
}

} // namespace ondavia
