#pragma once

#include "base/Observable.h"
#include "library/CatalogueSummary.h"
#include "screens/browse/ChannelListModel.h"
#include "store/LiveQuery.h"
#include "style/ShownText.h"

#include <QObject>
#include <QString>
#include <qcoro/qcorotask.h>
#include <qqmlregistration.h>

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace ondavia {

class AppState;
class LibraryStore;
struct CategoryItem;

/// What a browser lists.
enum class BrowserKind { Live, Movies, Series };

/// A browser: the provider's categories in their order, and the titles of the open one. Follows the catalogue
/// as it changes, from its first appearance on; reading the catalogue does not hold up the main thread. Main
/// thread.
class CatalogueBrowser : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the application")
    Q_PROPERTY(bool isLoading READ isLoading NOTIFY isLoadingChanged)
    Q_PROPERTY(QString categoryName READ categoryName NOTIFY categoryNameChanged)
    /// The titles of the open category, by number.
    Q_PROPERTY(ondavia::ChannelListModel* titles READ titles CONSTANT)

    /// The first load is running.
    ONDAVIA_OBSERVABLE(bool, isLoading, setIsLoading, true);

public:
    [[nodiscard]] ChannelListModel* titles() { return &m_titles; }
    [[nodiscard]] QString categoryName() const { return shownText(m_categoryName.value_or(std::string())); }

    /// The browser's page has come into sight.
    Q_INVOKABLE void appear();

    Q_SIGNAL void categoryNameChanged();
    /// Somebody wants to search what this browser lists.
    Q_SIGNAL void searchWanted();

protected:
    /// All must outlive the object.
    CatalogueBrowser(BrowserKind kind, AppState& appState, LibraryStore& store, CatalogueSummary& catalogue);

    [[nodiscard]] AppState& appState() { return m_appState; }
    [[nodiscard]] LibraryStore& store() { return m_store; }
    [[nodiscard]] const std::shared_ptr<ChannelRowCache>& rows() const { return m_rows; }
    void showCategory(const std::string& name);

    /// Takes what the catalogue has now, by the provider's categories.
    virtual void showGroups(const std::vector<CategoryItem>& categories,
                            const CatalogueSummary::Groups& groups) = 0;

private:
    [[nodiscard]] const char* type() const;
    [[nodiscard]] const std::vector<CategoryItem>& providerCategories() const;
    [[nodiscard]] CatalogueSummary::Groups storedGroups();
    [[nodiscard]] std::vector<std::int64_t> keysOf(const std::string& categoryName);
    QCoro::Task<void> load();
    void follow();
    void show();

    BrowserKind m_kind;
    AppState& m_appState;
    LibraryStore& m_store;
    CatalogueSummary& m_catalogue;
    std::shared_ptr<ChannelRowCache> m_rows;
    ChannelListModel m_titles{this};
    std::optional<std::string> m_categoryName;
    bool m_hasAppeared = false;
    bool m_isWaiting = false;
    ChangeListener m_listener;
};

} // namespace ondavia
