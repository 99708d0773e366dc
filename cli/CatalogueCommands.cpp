#include "app/Services.h"
#include "base/Redaction.h"
#include "base/Text.h"
#include "base/VisibleText.h"
#include "cli/Account.h"
#include "cli/Arguments.h"
#include "cli/Items.h"
#include "cli/Output.h"
#include "library/RefreshSchedule.h"
#include "library/SearchIndex.h"
#include "protocol/XtreamAPIClient.h"

#include <map>

namespace ondavia::cli {
namespace {

/// Tells on standard error what the state would show on screen, as long as it lives.
class ProgressReport final {
public:
    explicit ProgressReport(const AppState& appState) {
        QObject::connect(&appState, &AppState::loadingMessageChanged, &m_listener,
                         [&appState] { tell("", appState.loadingMessage()); });
        QObject::connect(&appState, &AppState::toastMessageChanged, &m_listener,
                         [&appState] { tell("warning: ", appState.toastMessage().value_or(std::string())); });
    }

private:
    static void tell(const char* kind, const std::string& message) {
        if (!message.empty()) {
            writeLine(stderr, kind + maskSecrets(message));
        }
    }

    QObject m_listener;
};

const char* orderKey(const std::string& type) {
    if (type == "live") {
        return DataSyncService::liveOrderKey;
    }
    return type == "movie" ? DataSyncService::vodOrderKey : DataSyncService::seriesOrderKey;
}

void hintAtEmptyCatalogue(StoreContext& rows) {
    if (rows.count<Channel>() == 0) {
        writeLine(stderr, "the catalogue is empty: ondavia-cli sync");
    }
}

} // namespace

QCoro::Task<void> synchronise(CommandContext context) {
    Services& services = context.services;
    const ProgressReport report(services.appState);
    const auto client = requireClient(services.appState);
    if (services.network.isConnected()) {
        co_await logIn(client);
    }
    co_await services.refresh.synchronise(client);
    const AppState& appState = services.appState;
    const Record record{{"totalLive", appState.totalLive()},
                        {"totalMovies", appState.totalMovies()},
                        {"totalSeries", appState.totalSeries()},
                        {"lastSync", toValue(services.defaults->dateForKey(catalogueSchedule.lastKey))}};
    context.output.print(record);
}

QCoro::Task<void> listCategories(CommandContext context) {
    StoreContext& rows = context.services.store->mainContext();
    const std::string& type = context.arguments.type;
    hintAtEmptyCatalogue(rows);
    std::map<std::string, std::int64_t> counts;
    for (auto& [name, count] : rows.countsBy(&Channel::groupTitle, field(&Channel::type) == type)) {
        counts.emplace(std::move(name), count);
    }
    Output::Table table(context.output, {"channelCount", "name"});
    const auto add = [&table](const std::string& name, std::int64_t count) {
        table.add({{"id", name}, {"name", name}, {"channelCount", count}});
    };
    // The provider's order first; what it did not name comes after.
    const auto order = context.services.defaults->stringArrayForKey(orderKey(type));
    for (const auto& name : order.value_or(std::vector<std::string>())) {
        if (const auto found = counts.extract(name)) {
            add(name, found.mapped());
        }
    }
    for (const auto& [name, count] : counts) {
        add(name, count);
    }
    table.finish();
    co_return;
}

QCoro::Task<void> listItems(CommandContext context) {
    const Arguments& arguments = context.arguments;
    StoreContext& rows = context.services.store->mainContext();
    hintAtEmptyCatalogue(rows);
    Query<Channel> query;
    query.where = field(&Channel::type) == arguments.type;
    if (arguments.category) {
        query.where = query.where && field(&Channel::groupTitle) == *arguments.category;
        if (rows.count(query.where) == 0) {
            throw CommandError("there is no such category, or nothing in it: " + *arguments.category);
        }
    }
    query.sort = {ascending(&Channel::num)};
    query.limit = arguments.limit;
    Output::Table table = tableOfItems(context.output);
    rows.forEach<Channel>(query, [&table](Channel channel) { table.add(recordOf(channel)); });
    table.finish();
    co_return;
}

QCoro::Task<void> searchItems(CommandContext context) {
    const Arguments& arguments = context.arguments;
    StoreContext& rows = context.services.store->mainContext();
    hintAtEmptyCatalogue(rows);
    if (!firstCharacters(arguments.text, SearchIndex::minimumLength)) {
        throw CommandError("a search needs at least two characters");
    }
    const SearchIndex index = SearchIndex::read(rows);
    Output::Table table = tableOfItems(context.output);
    for (const std::size_t place : index.find(arguments.text, arguments.onlyType)) {
        if (const auto item = rows.fetchByKey<Channel>(index.key(place))) {
            table.add(recordOf(*item));
        }
    }
    table.finish();
    co_return;
}

QCoro::Task<void> showItem(CommandContext context) {
    const Channel item = co_await findItem(context.services, context.arguments.id);
    context.output.print(recordOf(item));
}

} // namespace ondavia::cli
