#pragma once

#include "screens/browse/CarouselListModel.h"
#include "screens/browse/CatalogueBrowser.h"

#include <qqmlregistration.h>

#include <functional>

namespace ondavia {

/// Leads to the page of a title.
using OpenTitle = std::function<void(const Channel&)>;

/// The films or the series: a row of the first titles for each category that has any, and all titles of one
/// category once it is opened. Main thread.
class BrowserViewModel final : public ondavia::CatalogueBrowser {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the application")
    Q_PROPERTY(ondavia::CarouselListModel* carousels READ carousels CONSTANT)

public:
    /// All must outlive the object.
    BrowserViewModel(BrowserKind kind, AppState& appState, LibraryStore& store, CatalogueSummary& catalogue,
                     OpenTitle openTitle);

    [[nodiscard]] CarouselListModel* carousels() { return &m_carousels; }

    /// Of the row `carousel`.
    Q_INVOKABLE void openCategory(int carousel);
    /// Leads to the page of a title of the open category.
    Q_INVOKABLE void open(int row) { lead(titles()->channel(row)); }
    /// Leads to the page of a title of a list that a row of carousels shows.
    Q_INVOKABLE void openFrom(ondavia::ChannelListModel* list, int row) { lead(list->channel(row)); }

private:
    void showGroups(const std::vector<CategoryItem>& categories,
                    const CatalogueSummary::Groups& groups) override;
    void lead(const std::optional<Channel>& title) const;

    OpenTitle m_openTitle;
    CarouselListModel m_carousels{this};
};

} // namespace ondavia
