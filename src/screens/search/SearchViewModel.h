#pragma once

#include "base/Observable.h"
#include "entities/Channel.h"
#include "library/CatalogueSearch.h"
#include "screens/search/FilterChipListModel.h"
#include "screens/search/SearchResultListModel.h"
#include "screens/search/SearchResults.h"
#include "store/LiveQuery.h"

#include <QObject>
#include <QString>
#include <qcoro/qcorotask.h>
#include <qqmlregistration.h>

#include <optional>
#include <stop_token>
#include <string>

namespace ondavia {

class AppState;
class Scheduler;

/// What a search works with. All of it must outlive the search.
struct SearchServices final {
    AppState& appState;
    LibraryStore& store;
    CatalogueSearch& catalogue;
    Scheduler& scheduler;
};

/// A search as it is typed: over the whole catalogue, narrowed to a type by chips, or over one fixed type.
/// Runs when nothing more has been typed for a while, and again when the catalogue has changed. Made for one
/// opening of its page. Main thread.
class SearchViewModel final : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the application")
    /// As it was typed: neither trimmed nor changed.
    Q_PROPERTY(QString searchText READ searchText WRITE setSearchText NOTIFY searchTextChanged)
    Q_PROPERTY(Content content READ content NOTIFY contentChanged)
    Q_PROPERTY(QString title READ title CONSTANT)
    /// How many results there are, of whatever type, in words.
    Q_PROPERTY(QString countText READ countText NOTIFY resultsChanged)
    /// The results of the selected type, by groups.
    Q_PROPERTY(ondavia::SearchResultListModel* rows READ rows CONSTANT)
    /// None where the type is fixed.
    Q_PROPERTY(ondavia::FilterChipListModel* chips READ chips CONSTANT)

    ONDAVIA_OBSERVABLE(QString, searchText, setSearchText);
    /// A search is pending. A text that became too short for one leaves this as it stands.
    ONDAVIA_OBSERVABLE(bool, isSearching, setIsSearching, false);
    /// "live", "movie", "series", or `everyType`.
    ONDAVIA_OBSERVABLE(std::string, typeFilter, setTypeFilter, everyType);

public:
    /// What the page shows below its field.
    enum class Content { Searching, Hint, NoResults, Results };
    Q_ENUM(Content)

    /// How long nothing must have been typed, in seconds.
    static constexpr double debounce = 0.3;

    /// `fixedType` is "live", "movie" or "series"; absent for a search over the whole catalogue.
    SearchViewModel(std::optional<std::string> fixedType, const SearchServices& services,
                    QObject* parent = nullptr);
    ~SearchViewModel() override;

    [[nodiscard]] Content content() const;
    [[nodiscard]] QString title() const;
    /// What a search of a fixed type looks for; empty without one.
    [[nodiscard]] QString typeLabel() const;
    [[nodiscard]] QString countText() const;
    [[nodiscard]] SearchResultListModel* rows() { return &m_rows; }
    [[nodiscard]] FilterChipListModel* chips() { return &m_chips; }
    [[nodiscard]] const SearchResults& results() const { return m_results; }

    /// Searches for the text when `debounce` has passed, unless that is asked for again before. A text of
    /// fewer characters than a search needs has no results.
    Q_INVOKABLE void debouncedSearch();
    Q_INVOKABLE void pickChip(int row) { setTypeFilter(m_chips.type(row)); }
    /// Plays a channel; asks for the page of anything else.
    Q_INVOKABLE void open(int row);
    /// The page has gone: so does this object, soon.
    Q_INVOKABLE void close() { deleteLater(); }

    Q_SIGNAL void contentChanged();
    Q_SIGNAL void resultsChanged();
    /// Somebody opened a film or a series.
    Q_SIGNAL void detailWanted(const ondavia::Channel& channel);

private:
    /// What becomes of the selected chip.
    enum class Chip { First, Kept };

    [[nodiscard]] bool isLongEnough() const;
    [[nodiscard]] std::stop_token beginTask();
    QCoro::Task<void> searchLater(std::stop_token stop);
    QCoro::Task<void> performSearch(std::stop_token stop, Chip chip);
    void searchAgain();
    void setResults(SearchResults results);
    void showRows();

    std::optional<std::string> m_fixedType;
    AppState& m_appState;
    CatalogueSearch& m_catalogue;
    Scheduler& m_scheduler;
    SearchResults m_results;
    SearchResultListModel m_rows;
    FilterChipListModel m_chips;
    /// Of the pending search: stopped when another one takes its place, and when this object goes.
    std::stop_source m_searchTask;
    ChangeListener m_changes;
};

} // namespace ondavia
