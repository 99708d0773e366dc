#pragma once

#include "base/Date.h"
#include "screens/browse/CatalogueBrowser.h"
#include "screens/browse/CategoryListModel.h"

#include <QThreadPool>
#include <qqmlregistration.h>

#include <functional>

namespace ondavia {

/// The channels: every category of the provider with its number of channels, and the channels of one with
/// what is on. Main thread.
class LiveViewModel final : public ondavia::CatalogueBrowser {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the application")
    Q_PROPERTY(ondavia::CategoryListModel* categories READ categories CONSTANT)

public:
    /// All must outlive the object.
    LiveViewModel(AppState& appState, LibraryStore& store, CatalogueSummary& catalogue,
                  std::function<Date()> now = currentDate);

    [[nodiscard]] CategoryListModel* categories() { return &m_categories; }

    Q_INVOKABLE void openCategory(int row);
    Q_INVOKABLE void play(int row);
    /// Reads what is on: once for each time that the channels come into sight, and for all of them at once.
    Q_INVOKABLE void loadCurrentEPG() { (void)fetchPrograms(); }

private:
    void showGroups(const std::vector<CategoryItem>& categories,
                    const CatalogueSummary::Groups& groups) override;
    /// Raises nothing, and ends by itself when the object goes.
    QCoro::Task<void> fetchPrograms();

    std::function<Date()> m_now;
    CategoryListModel m_categories{this};
    /// Ends before the store does.
    QThreadPool m_reading;
};

} // namespace ondavia
