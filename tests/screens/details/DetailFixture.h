#pragma once

#include "DetailProvider.h"
#include "screens/ScreensFixture.h"
#include "screens/details/DetailViewModel.h"
#include "store/LibraryStore.h"

#include <gmock/gmock.h>

#include <string>
#include <vector>

namespace ondavia::testing {

/// A provider that answers, and what the pages work with.
class DetailFixture : public ScreensFixture {
protected:
    void signIn() {
        appState.setServer(provider.url());
        appState.setUsername("ana");
        appState.setPassword("s3cr3t-word");
    }
    [[nodiscard]] DetailServices detailServices() { return {appState, store->mainContext()}; }

    /// The page comes into sight, and has its answer.
    void visit(DetailViewModel& model, const std::string& question) {
        const long before = provider.count(question);
        model.setIsInSight(false);
        model.setIsInSight(true);
        ASSERT_TRUE(waitUntil([&] { return provider.count(question) > before; }));
    }
    void watch(const std::string& id, const std::string& type, double position, double duration,
               std::optional<std::int64_t> seriesId = std::nullopt) {
        WatchHistory row("main", id, position, duration, type);
        row.isComplete = row.progress() >= 95;
        row.seriesId = seriesId;
        store->mainContext().insert(row);
        store->mainContext().save();
    }
    void mark(const std::string& id) {
        store->mainContext().insert(Favorite("main", id));
        store->mainContext().save();
    }
    [[nodiscard]] std::vector<std::string> marked() {
        return store->mainContext().distinct(&Favorite::channelId);
    }
    [[nodiscard]] static std::vector<std::string> texts(const std::vector<DetailBadge>& badges) {
        std::vector<std::string> found;
        for (const DetailBadge& badge : badges) {
            found.push_back((badge.highlight ? "!" : "") + badge.text.toStdString());
        }
        return found;
    }

    DetailProvider provider;
};

} // namespace ondavia::testing
