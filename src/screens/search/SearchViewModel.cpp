#include "screens/search/SearchViewModel.h"

#include "base/AppLogger.h"
#include "base/Text.h"
#include "library/SearchIndex.h"
#include "platform/PoolWork.h"
#include "platform/Scheduler.h"
#include "state/AppState.h"
#include "style/Texts.h"

#include <QLocale>
#include <qcoro/qcorofuture.h>

namespace ondavia {

SearchViewModel::SearchViewModel(std::optional<std::string> fixedType, const SearchServices& services,
                                 QObject* parent)
    : QObject(parent)
    , m_fixedType(std::move(fixedType))
    , m_appState(services.appState)
    , m_catalogue(services.catalogue)
    , m_scheduler(services.scheduler)
    , m_rows(services.store, this)
    , m_chips(this)
    , m_changes(services.store, EntityKind::Channel, [this] { searchAgain(); }) {
    connect(this, &SearchViewModel::searchTextChanged, this, &SearchViewModel::debouncedSearch);
    connect(this, &SearchViewModel::typeFilterChanged, this, &SearchViewModel::showRows);
    for (const auto signal : {&SearchViewModel::searchTextChanged, &SearchViewModel::isSearchingChanged,
                              &SearchViewModel::resultsChanged}) {
        connect(this, signal, this, &SearchViewModel::contentChanged);
    }
    // While the user types: it is there when the first search begins, or soon after.
    m_catalogue.prefetch();
}

SearchViewModel::~SearchViewModel() {
    m_searchTask.request_stop();
}

SearchViewModel::Content SearchViewModel::content() const {
    if (m_isSearching) {
        return Content::Searching;
    }
    if (m_results.isEmpty()) {
        return m_searchText.isEmpty() ? Content::Hint : Content::NoResults;
    }
    return Content::Results;
}

QString SearchViewModel::title() const {
    return m_fixedType ? textFor("search.searchIn", "Pesquisar") + QLatin1Char(' ') + typeLabel()
                       : textFor("search.title", "Pesquisar");
}

QString SearchViewModel::typeLabel() const {
    if (!m_fixedType) {
        return {};
    }
    if (*m_fixedType == "live") {
        return textFor("search.live", "canais");
    }
    return *m_fixedType == "movie" ? textFor("search.movies", "filmes") : textFor("search.series", "series");
}

QString SearchViewModel::countText() const {
    return QLocale().toString(static_cast<qulonglong>(m_results.size())) + QLatin1Char(' ') +
           textFor("search.results", "resultados");
}

void SearchViewModel::debouncedSearch() {
    const std::stop_token stop = beginTask();
    if (isLongEnough()) {
        setIsSearching(true);
        // It ends by itself, and touches nothing of this object once it was stopped.
        searchLater(stop);
    } else {
        setResults({});
    }
}

void SearchViewModel::open(int row) {
    const auto channel = m_rows.channel(row);
    if (!channel) {
        return;
    }
    if (channel->type == "live") {
        m_appState.playChannel(*channel);
    } else {
        Q_EMIT detailWanted(*channel);
    }
}

bool SearchViewModel::isLongEnough() const {
    return firstCharacters(m_searchText.toStdString(), SearchIndex::minimumLength).has_value();
}

/// Ends the pending search.
std::stop_token SearchViewModel::beginTask() {
    m_searchTask.request_stop();
    m_searchTask = std::stop_source();
    return m_searchTask.get_token();
}

QCoro::Task<void> SearchViewModel::searchLater(std::stop_token stop) {
    const bool hasSlept = co_await m_scheduler.sleep(debounce, stop);
    if (hasSlept && !stop.stop_requested()) {
        co_await performSearch(stop, Chip::First);
    }
}

QCoro::Task<void> SearchViewModel::performSearch(std::stop_token stop, Chip chip) {
    const std::string text = m_searchText.toStdString();
    const auto type = m_fixedType;
    std::optional<SearchResults> found;
    try {
        const CatalogueSearch::Index index = co_await m_catalogue.index();
        if (stop.stop_requested()) {
            co_return;
        }
        // Beside the main thread: two letters in a large catalogue may take longer than a frame.
        const auto finding =
            runOnPool([index, text, type] { return SearchResults(index, index->find(text, type)); });
        found = co_await finding;
    } catch (const StoreError& error) {
        // The results of before stay.
        AppLogger::general.error("The catalogue could not be searched: %s", {error.what()});
    }
    if (stop.stop_requested()) {
        co_return;
    }
    if (found) {
        setResults(std::move(*found));
    }
    setIsSearching(false);
    // A chip that has gone cannot stay selected.
    if (chip == Chip::First || m_chips.selectedRow() < 0) {
        setTypeFilter(std::string(everyType));
    }
}

/// Rows of a catalogue that was replaced are gone.
void SearchViewModel::searchAgain() {
    if (isLongEnough()) {
        const std::stop_token stop = beginTask();
        // As in `debouncedSearch`.
        performSearch(stop, m_isSearching ? Chip::First : Chip::Kept);
    }
}

void SearchViewModel::setResults(SearchResults results) {
    m_results = std::move(results);
    if (!m_fixedType) {
        m_chips.setCounts(m_results.size(), m_results.typeCounts());
    }
    showRows();
    Q_EMIT resultsChanged();
}

void SearchViewModel::showRows() {
    m_chips.select(m_typeFilter);
    m_rows.setGroups(m_results.grouped(m_typeFilter));
}

} // namespace ondavia
