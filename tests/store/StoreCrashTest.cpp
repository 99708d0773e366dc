#include "store/StoreSamples.h"
#include "support/AcknowledgedLog.h"

#include <QProcess>

#include <gmock/gmock.h>

#include <algorithm>
#include <random>
#include <set>

namespace ondavia::testing {
namespace {

namespace fs = std::filesystem;

constexpr std::int64_t rowsPerGeneration = 2000;

/// Rounds of killing; ONDAVIA_CRASH_ROUNDS asks for more.
int roundCount() {
    return qEnvironmentVariableIsSet("ONDAVIA_CRASH_ROUNDS")
               ? qEnvironmentVariableIntValue("ONDAVIA_CRASH_ROUNDS")
               : 25;
}

class StoreCrashTest : public ::testing::Test {
protected:
    void start(QProcess& process, const QString& mode, const QString& argument) {
        process.setProcessChannelMode(QProcess::ForwardedChannels);
        process.start(QStringLiteral(STORE_CRASH_WRITER),
                      {mode, QString::fromStdString(storeFolder().string()), argument});
        ASSERT_TRUE(process.waitForStarted());
    }

    /// Lets both writers write for a random time after each has shown that it does, then kills them.
    void writeAndKill() {
        QProcess catalogue;
        QProcess favourites;
        const auto linkBefore = fs::read_symlink(storeFolder() / "catalogue.db");
        const auto logSize = [this] { return fs::exists(logFile()) ? fs::file_size(logFile()) : 0; };
        const auto logBefore = logSize();
        start(catalogue, QStringLiteral("catalogue"), QString::number(rowsPerGeneration));
        start(favourites, QStringLiteral("favourites"), QString::fromStdString(logFile().string()));
        const auto bothHaveWritten = [&] {
            return logSize() > logBefore && fs::read_symlink(storeFolder() / "catalogue.db") != linkBefore;
        };
        // A favourite waits for the disk, which may be busy with everything else on the machine.
        ASSERT_TRUE(waitUntil(bothHaveWritten, std::chrono::minutes(2)));
        QThread::usleep(std::uniform_int_distribution<unsigned long>(0, 60'000)(m_random));
        catalogue.kill();
        favourites.kill();
        ASSERT_TRUE(catalogue.waitForFinished());
        ASSERT_TRUE(favourites.waitForFinished());
        ASSERT_EQ(catalogue.exitStatus(), QProcess::CrashExit);
        ASSERT_EQ(favourites.exitStatus(), QProcess::CrashExit);
    }

    void expectWhole() {
        const auto store = LibraryStore::open(storeFolder());
        EXPECT_FALSE(store->openReport().damagedUserFile);
        EXPECT_TRUE(store->openReport().rebuiltFiles.empty());
        const auto generations = store->mainContext().countsBy(&Channel::groupTitle);
        ASSERT_EQ(generations.size(), 1U);
        EXPECT_EQ(generations[0].second, rowsPerGeneration);
        EXPECT_EQ(store->mainContext().fetch<Channel>().size(), static_cast<std::size_t>(rowsPerGeneration));
        const auto stored = store->mainContext().distinct(&Favorite::channelId);
        const std::set<std::string> favourites(stored.begin(), stored.end());
        for (const std::string& acknowledged : AcknowledgedLog::read(logFile())) {
            EXPECT_TRUE(favourites.contains(acknowledged)) << acknowledged;
        }
        for (const char* file : {"catalogue.db", "user.db"}) {
            SQLite::Database database(storeFolder() / file);
            EXPECT_EQ(database.execAndGet("PRAGMA integrity_check").getString(), "ok") << file;
        }
    }

    fs::path storeFolder() const { return m_folder.path() / "store"; }
    fs::path logFile() const { return m_folder.path() / "acknowledged"; }

    TemporaryFolder m_folder;
    std::mt19937_64 m_random{std::random_device{}()};
};

TEST_F(StoreCrashTest, KilledWritersLoseNothingThatWasCommitted) {
    replaceAll(*LibraryStore::open(storeFolder()), makeChannels(1, rowsPerGeneration, "0"));
    for (int round = 0; round < roundCount(); ++round) {
        ASSERT_NO_FATAL_FAILURE(writeAndKill()) << "round " << round;
        ASSERT_NO_FATAL_FAILURE(expectWhole()) << "round " << round;
        ASSERT_FALSE(HasFailure()) << "round " << round;
    }
    EXPECT_GE(AcknowledgedLog::read(logFile()).size(), static_cast<std::size_t>(roundCount()));
}

} // namespace
} // namespace ondavia::testing
