#include "screens/live/LiveViewModel.h"

#include "guide/EPGService.h"
#include "platform/PoolWork.h"
#include "state/AppState.h"
#include "store/LibraryStore.h"

#include <QPointer>
#include <qcoro/qcorofuture.h>

#include <string_view>
#include <unordered_map>

namespace ondavia {

LiveViewModel::LiveViewModel(AppState& appState, LibraryStore& store, CatalogueSummary& catalogue,
                             std::function<Date()> now)
    : CatalogueBrowser(BrowserKind::Live, appState, store, catalogue)
    , m_now(std::move(now)) {}

void LiveViewModel::showGroups(const std::vector<CategoryItem>& categories,
                               const CatalogueSummary::Groups& groups) {
    std::unordered_map<std::string_view, std::int64_t> channelCounts;
    for (const KeyGroup& group : groups) {
        channelCounts.emplace(group.value, group.count);
    }
    std::vector<CategoryRow> rows;
    for (const CategoryItem& category : categories) {
        const auto count = channelCounts.find(category.name);
        rows.push_back(
            {category.name, count != channelCounts.end() ? std::optional(count->second) : std::nullopt});
    }
    m_categories.setRows(std::move(rows));
}

void LiveViewModel::openCategory(int row) {
    const auto& rows = m_categories.rows();
    if (row >= 0 && row < static_cast<int>(rows.size())) {
        titles()->setPrograms({});
        showCategory(rows[static_cast<std::size_t>(row)].name);
    }
}

void LiveViewModel::play(int row) {
    if (const auto channel = titles()->channel(row)) {
        appState().playChannel(*channel);
    }
}

QCoro::Task<void> LiveViewModel::fetchPrograms() {
    const QPointer self(this);
    const auto fetch = [&guide = store(), now = m_now()] {
        const auto context = guide.makeContext();
        return fetchCurrentTitles(*context, now);
    };
    const auto fetching = runOnPool(fetch, m_reading);
    CurrentTitles programs = co_await fetching;
    if (self) {
        titles()->setPrograms(std::move(programs));
    }
}

} // namespace ondavia
