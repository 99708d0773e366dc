#pragma once

#include "screens/ScreensFixture.h"
#include "screens/browse/BrowserViewModel.h"
#include "screens/browse/CarouselTitles.h"
#include "screens/live/LiveViewModel.h"

#include <QAbstractItemModelTester>

#include <gmock/gmock.h>

namespace ondavia::testing {

/// The texts that a model shows in one of its roles.
inline std::vector<std::string> texts(const QAbstractItemModel& model, int role) {
    std::vector<std::string> found;
    for (int row = 0; row < model.rowCount(); ++row) {
        found.push_back(model.index(row, 0).data(role).toString().toStdString());
    }
    return found;
}

/// Models that are watched from before they have data.
class Watch final {
public:
    explicit Watch(std::initializer_list<QAbstractItemModel*> models) {
        for (QAbstractItemModel* model : models) {
            m_testers.push_back(std::make_unique<QAbstractItemModelTester>(
                model, QAbstractItemModelTester::FailureReportingMode::Fatal));
        }
    }

private:
    std::vector<std::unique_ptr<QAbstractItemModelTester>> m_testers;
};

class BrowseFixture : public ScreensFixture {
protected:
    /// Its page comes into sight, and it has read what there is.
    void appear(CatalogueBrowser& browser) {
        browser.appear();
        ASSERT_TRUE(waitUntil([&] { return !browser.isLoading() && catalogue.isReady(); }));
    }
    /// Until the browsers that have appeared show what `fill` has stored.
    void fillAndFollow(const std::vector<Channel>& channels) {
        fill(channels);
        follow();
    }
    void follow() {
        ASSERT_TRUE(waitUntil([this] { return catalogue.isReady(); }));
        drainEvents();
    }
    void removeAll() {
        store->mainContext().removeAll<Channel>();
        store->mainContext().save();
        drainEvents();
        follow();
    }
};

} // namespace ondavia::testing
