#pragma once

#include "screens/browse/CategoryListModel.h"
#include "screens/browse/ChannelListModel.h"
#include "store/LiveQuery.h"
#include "style/ShownText.h"

#include <QObject>
#include <QString>
#include <qqmlregistration.h>

#include <functional>
#include <string>

namespace ondavia {

class AppState;
class CatalogueSummary;
class LibraryStore;
struct CategoryItem;

/// What a browser lists.
enum class BrowserKind {
    /// Every category of the provider; one is open once the user opens it.
    Live,
    /// The categories that have titles; one is always open.
    Movies,
    /// As the films.
    Series
};

/// Leads to the page of a title.
using OpenTitle = std::function<void(const Channel&)>;

/// A browser: the provider's categories in their order, the titles of the open one, and the way on from one
/// of them. Follows the catalogue as it changes. Main thread.
class BrowserViewModel final : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the application")
    Q_PROPERTY(ondavia::CategoryListModel* categories READ categories CONSTANT)
    /// The titles of the open category, by number.
    Q_PROPERTY(ondavia::ChannelListModel* titles READ titles CONSTANT)
    /// The catalogue is on its way for the first time: that a list is empty says nothing yet.
    Q_PROPERTY(bool isLoading READ isLoading NOTIFY isLoadingChanged)
    Q_PROPERTY(QString categoryName READ categoryName NOTIFY categoryChanged)
    /// Row of the open category; -1 when none is.
    Q_PROPERTY(int categoryRow READ categoryRow NOTIFY categoryChanged)

public:
    /// All must outlive the object. `openTitle` is for titles that have a page of their own.
    BrowserViewModel(BrowserKind kind, AppState& appState, LibraryStore& store, CatalogueSummary& catalogue,
                     OpenTitle openTitle = {});

    [[nodiscard]] CategoryListModel* categories() { return &m_categories; }
    [[nodiscard]] ChannelListModel* titles() { return &m_titles; }
    [[nodiscard]] bool isLoading() const;
    [[nodiscard]] QString categoryName() const { return shownText(m_categoryName); }
    [[nodiscard]] int categoryRow() const;

    Q_INVOKABLE void openCategory(int row);
    Q_INVOKABLE void play(int row);
    /// Leads to the page of a title.
    Q_INVOKABLE void open(int row);

    Q_SIGNAL void isLoadingChanged();
    Q_SIGNAL void categoryChanged();
    /// Somebody wants to search what this browser lists.
    Q_SIGNAL void searchWanted();

private:
    [[nodiscard]] const char* type() const;
    [[nodiscard]] const std::vector<CategoryItem>& providerCategories() const;
    [[nodiscard]] std::vector<CategoryRow> countedCategories() const;
    void refresh();
    void show(std::string categoryName);

    BrowserKind m_kind;
    AppState& m_appState;
    CatalogueSummary& m_catalogue;
    OpenTitle m_openTitle;
    CategoryListModel m_categories;
    ChannelListModel m_titles;
    std::string m_categoryName;
    ChangeListener m_listener;
};

} // namespace ondavia
