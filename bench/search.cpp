#include "support/BenchSupport.h"

#include "app/Services.h"
#include "library/SearchIndex.h"
#include "store/LibraryStore.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QTemporaryDir>

#include <SQLiteCpp/SQLiteCpp.h>

#include <algorithm>
#include <cstdio>
#include <stdexcept>

namespace ondavia::bench {
namespace {

constexpr int queries = 1000;

QCoro::Task<void> synchronize(Services& services, QEventLoop& loop, bool& succeeded) {
    try {
        co_await services.refresh.synchronise(services.appState.makeXtreamClient());
        succeeded = true;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "error: %s\n", error.what());
    }
    loop.quit();
}

double milliseconds(const QElapsedTimer& clock) {
    return static_cast<double>(clock.nsecsElapsed()) / 1e6;
}

/// Parts of names, of two characters and more: what somebody types on the way to a title.
std::vector<std::string> wishes(StoreContext& context) {
    std::vector<std::string> texts;
    const auto rows = context.fetchMembers<Channel>({.sort = {ascending(&Channel::num)}}, &Channel::name);
    for (std::size_t number = 0; number < queries; ++number) {
        const QString name = QString::fromStdString(std::get<0>(rows[number * 7919 % rows.size()].members));
        const auto length = static_cast<qsizetype>(2 + number % 7);
        const auto start = static_cast<qsizetype>(number * 31) % std::max<qsizetype>(1, name.size() - length);
        texts.push_back(name.mid(start, length).toStdString());
    }
    return texts;
}

struct Times final {
    double first = 0;
    double median = 0;
    double late = 0;
};

template<class Search> Times timesOf(const std::vector<std::string>& texts, double first, Search&& search) {
    std::vector<double> times;
    for (const auto& text : texts) {
        QElapsedTimer clock;
        clock.start();
        search(text);
        times.push_back(milliseconds(clock));
    }
    std::ranges::sort(times);
    return {first, times.at(times.size() / 2), times.at(times.size() * 95 / 100)};
}

void print(const char* what, const Times& times) {
    std::printf("  %-5s first %8.2f ms   median %7.3f ms   95th percentile %7.3f ms\n", what, times.first,
                times.median, times.late);
}

/// The same fields, the database's own way, to the keys.
Times timesOfLike(const std::filesystem::path& file, const std::vector<std::string>& texts) {
    QElapsedTimer clock;
    clock.start();
    SQLite::Database database(file, SQLite::OPEN_READONLY);
    SQLite::Statement like(database, "SELECT key FROM channel WHERE name LIKE ?1 OR group_title LIKE ?1 OR "
                                     "series_name LIKE ?1 ORDER BY num");
    const auto search = [&like](const std::string& text) {
        like.reset();
        like.bind(1, "%" + text + "%");
        std::size_t found = 0;
        while (like.executeStep()) {
            ++found;
        }
        return found;
    };
    search(texts.front());
    const double first = milliseconds(clock);
    return timesOf(texts, first, search);
}

Times timesOfOurs(StoreContext& context, const std::vector<std::string>& texts) {
    SearchIndex index;
    double first = 0;
    const Measurement reading = measure([&] {
        QElapsedTimer clock;
        clock.start();
        index = SearchIndex::read(context);
        static_cast<void>(index.find(texts.front()));
        first = milliseconds(clock);
    });
    std::printf("  %zu rows; made in memory: %.1f MiB at most\n", index.size(), reading.memory);
    return timesOf(texts, first, [&index](const std::string& text) { return index.find(text).size(); });
}

int run() {
    const QTemporaryDir folder;
    qputenv("ONDAVIA_DATA_DIR", folder.path().toUtf8());
    qputenv("ONDAVIA_VAULT", "file");
    const ProviderProcess provider({QStringLiteral("--scale"), QStringLiteral("180000")});
    Services services(MpvOutputs::Null);
    services.appState.saveCredentials(provider.url().toStdString(), "demo", "demo");
    bool succeeded = false;
    QEventLoop loop;
    const auto task = synchronize(services, loop, succeeded);
    loop.exec();
    if (!succeeded) {
        return 1;
    }
    StoreContext& context = services.store->mainContext();
    const auto texts = wishes(context);
    std::printf("%d searches in the catalogue of the demo provider\n", queries);
    const Times ours = timesOfOurs(context, texts);
    const Times bare =
        timesOfLike(std::filesystem::canonical(services.folders.store / "catalogue.db"), texts);
    print("ours", ours);
    print("LIKE", bare);
    std::printf("  ratio first %6.2f   median %7.3f   95th percentile %7.3f\n", ours.first / bare.first,
                ours.median / bare.median, ours.late / bare.late);
    return 0;
}

} // namespace
} // namespace ondavia::bench

int main(int argc, char** argv) {
    const QCoreApplication application(argc, argv);
    return ondavia::bench::run();
}
