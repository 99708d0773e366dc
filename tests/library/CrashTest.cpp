#include "SyncFixture.h"
#include "support/AcknowledgedLog.h"

#include <QProcess>

#include <fstream>
#include <random>
#include <set>

namespace ondavia::testing {
namespace {

namespace fs = std::filesystem;

constexpr std::int64_t rowsPerList = 500;
constexpr std::int64_t rowsPerCatalogue = 3 * rowsPerList;

/// Rounds of killing; ONDAVIA_CRASH_ROUNDS asks for more.
int roundCount() {
    return qEnvironmentVariableIsSet("ONDAVIA_CRASH_ROUNDS")
               ? qEnvironmentVariableIntValue("ONDAVIA_CRASH_ROUNDS")
               : 10;
}

/// Two catalogues of equal size, by the user's name; every group title is that name.
class TwoCatalogues final {
public:
    TwoCatalogues() {
        for (const char* action : {"get_live_categories", "get_vod_categories", "get_series_categories"}) {
            answer(action, [](const std::string& user) { return categoriesJSON({{"1", user}}); });
        }
        answer("get_live_streams", listOf(ListKind::Live, 0));
        answer("get_vod_streams", listOf(ListKind::Movies, rowsPerList));
        answer("get_series", listOf(ListKind::Series, 0));
    }

    [[nodiscard]] std::string url() const { return m_provider.url(); }

private:
    using Text = std::function<std::string(const std::string& user)>;

    static Text listOf(ListKind kind, std::int64_t first) {
        return [kind, first](const std::string& user) {
            return listJSON(kind,
                            {.first = first, .count = rowsPerList, .name = user + std::string(700, '.')});
        };
    }
    void answer(const std::string& action, const Text& text) {
        const std::map<std::string, std::string> bodies{{"even", text("even")}, {"odd", text("odd")}};
        m_provider.script(action, {[bodies](const httplib::Request& request, httplib::Response& response) {
                              response.set_content(bodies.at(request.get_param_value("username")),
                                                   "application/octet-stream");
                          }});
    }

    ScriptedProvider m_provider;
};

class CrashTest : public ::testing::Test {
protected:
    void start(QProcess& process, const QString& mode, const std::string& argument) {
        process.setProcessChannelMode(QProcess::ForwardedChannels);
        process.start(
            QStringLiteral(SYNC_CRASH_WRITER),
            {mode, QString::fromStdString(m_folder.path().string()), QString::fromStdString(argument)});
        ASSERT_TRUE(process.waitForStarted());
    }
    static void kill(QProcess& process) {
        process.kill();
        ASSERT_TRUE(process.waitForFinished());
        ASSERT_EQ(process.exitStatus(), QProcess::CrashExit);
    }

    /// Lets both processes write for a random time after each has shown that it does, then kills them.
    void writeAndKill() {
        QProcess synchronisation;
        QProcess recorder;
        const auto logSize = [this] { return fs::exists(logFile()) ? fs::file_size(logFile()) : 0; };
        const auto logBefore = logSize();
        const auto linkBefore = catalogueLink();
        start(synchronisation, QStringLiteral("sync"), m_catalogues.url());
        start(recorder, QStringLiteral("personal"), logFile().string());
        ASSERT_TRUE(waitUntil([&] { return logSize() > logBefore && catalogueLink() != linkBefore; },
                              std::chrono::minutes(1)));
        QThread::usleep(std::uniform_int_distribution<unsigned long>(0, 150'000)(m_random));
        ASSERT_NO_FATAL_FAILURE(kill(synchronisation));
        ASSERT_NO_FATAL_FAILURE(kill(recorder));
    }

    void expectWhole() {
        const auto store = LibraryStore::open(storeFolder());
        EXPECT_FALSE(store->openReport().damagedUserFile);
        EXPECT_TRUE(store->openReport().rebuiltFiles.empty());
        StoreContext& context = store->mainContext();
        const auto catalogues = context.countsBy(&Channel::groupTitle);
        ASSERT_EQ(catalogues.size(), 1U) << "rows of two catalogues, or none";
        EXPECT_EQ(catalogues[0].second, rowsPerCatalogue);
        m_seen.insert(catalogues[0].first);
        for (const Channel& channel : context.fetch<Channel>()) {
            ASSERT_TRUE(channel.name.starts_with(channel.groupTitle)) << channel.id;
        }
        std::set<std::string> kept;
        std::ranges::copy(context.distinct(&Favorite::channelId), std::inserter(kept, kept.end()));
        std::ranges::copy(context.distinct(&WatchHistory::channelId), std::inserter(kept, kept.end()));
        for (const std::string& acknowledged : AcknowledgedLog::read(logFile())) {
            EXPECT_TRUE(kept.contains(acknowledged)) << acknowledged;
        }
    }

    fs::path storeFolder() const { return m_folder.path() / "store"; }
    fs::path logFile() const { return m_folder.path() / "acknowledged"; }
    /// Which file holds the catalogue now; empty before there is one.
    fs::path catalogueLink() const {
        std::error_code none;
        return fs::read_symlink(storeFolder() / "catalogue.db", none);
    }

    TemporaryFolder m_folder;
    TwoCatalogues m_catalogues;
    std::mt19937_64 m_random{std::random_device{}()};
    std::set<std::string> m_seen;
};

TEST_F(CrashTest, AKilledSynchronisationLeavesTheOldCatalogueOrTheNewOneAndLosesNothingElse) {
    std::ignore = LibraryStore::open(storeFolder());
    for (int round = 0; round < roundCount(); ++round) {
        ASSERT_NO_FATAL_FAILURE(writeAndKill()) << "round " << round;
        ASSERT_NO_FATAL_FAILURE(expectWhole()) << "round " << round;
        ASSERT_FALSE(HasFailure()) << "round " << round;
    }
    EXPECT_GE(AcknowledgedLog::read(logFile()).size(), static_cast<std::size_t>(roundCount()));
    std::string seen;
    for (const std::string& catalogue : m_seen) {
        seen += catalogue + " ";
    }
    RecordProperty("catalogues", seen);
    RecordProperty("acknowledged", static_cast<int>(AcknowledgedLog::read(logFile()).size()));
}

} // namespace
} // namespace ondavia::testing
