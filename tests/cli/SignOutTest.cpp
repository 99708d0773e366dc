#include "CommandLine.h"

#include "ScriptedProvider.h"
#include "guide/GuideSamples.h"
#include "store/LibraryStore.h"

#include <gmock/gmock.h>

#include <future>

namespace ondavia::cli::testing {
namespace {

using namespace ondavia::testing;
using ::testing::HasSubstr;

constexpr const char* acceptance = R"({"user_info":{"auth":1,"exp_date":null},"server_info":{}})";

/// Two processes at one library: one downloads and is held up, the other signs out or in.
class TwoProcesses : public ::testing::Test {
protected:
    TwoProcesses() {
        provider.script("", {body(acceptance)});
        provider.script("get_live_streams", {body(listJSON(ListKind::Live, {.count = 2}))});
        cli.signIn(provider.url());
    }
    ~TwoProcesses() override {
        open();
        m_download.kill();
        m_download.waitForFinished();
    }

    /// Starts a download that has asked for `action` and gets its answer when the gate is open.
    void begin(const QStringList& arguments, const std::string& action, const std::string& text) {
        provider.script(action, {[gate = m_opened, answer = body(text)](const auto& request, auto& reply) {
                            gate.wait();
                            answer(request, reply);
                        }});
        cli.prepare(m_download, arguments);
        m_download.start();
        ASSERT_TRUE(waitUntil([&] { return provider.requestCount(action) > 0; }, std::chrono::minutes(1)));
    }
    /// Lets the download go on to its end; what it said.
    std::string end() {
        open();
        EXPECT_TRUE(m_download.waitForFinished(120'000));
        EXPECT_EQ(m_download.exitCode(), 1);
        return m_download.readAllStandardError().toStdString();
    }
    void expectNothingStored() {
        const auto store = LibraryStore::open(cli.folder() / "store");
        EXPECT_EQ(store->mainContext().count<Channel>(), 0);
        EXPECT_EQ(store->mainContext().count<Playlist>(), 0);
        EXPECT_EQ(store->mainContext().count<EPGProgram>(), 0);
        EXPECT_FALSE(isPasswordStored(cli.folder()));
    }

    ScriptedProvider provider;
    CommandLine cli;

private:
    void open() {
        if (!m_isOpen) {
            m_isOpen = true;
            m_gate.set_value();
        }
    }
    std::promise<void> m_gate;
    std::shared_future<void> m_opened = m_gate.get_future().share();
    bool m_isOpen = false;
    QProcess m_download;
};

TEST_F(TwoProcesses, ASynchronisationStoresNothingAfterTheOtherHasSignedOut) {
    begin({QStringLiteral("sync")}, "get_series", listJSON(ListKind::Series, {.first = 20}));
    ASSERT_EQ(cli.run({QStringLiteral("signout")}).status, 0);
    EXPECT_THAT(end(), HasSubstr("the account has changed meanwhile"));
    expectNothingStored();
}

TEST_F(TwoProcesses, AGuideIsNotStoredAfterTheOtherHasSignedOut) {
    begin({QStringLiteral("guide"), QStringLiteral("load")}, guideDocument,
          xmltv(programme("<title>New</title>")));
    ASSERT_EQ(cli.run({QStringLiteral("signout")}).status, 0);
    EXPECT_THAT(end(), HasSubstr("the account has changed meanwhile"));
    expectNothingStored();
}

TEST_F(TwoProcesses, ASynchronisationStoresNothingAfterTheOtherHasSignedInAsSomebodyElse) {
    begin({QStringLiteral("sync")}, "get_series", listJSON(ListKind::Series, {.first = 20}));
    const auto other =
        cli.run({QStringLiteral("signin"), QStringLiteral("--server"), QString::fromStdString(provider.url()),
                 QStringLiteral("--username"), QStringLiteral("eva")},
                "another-word-9\n");
    ASSERT_EQ(other.status, 0) << other.errors;
    EXPECT_THAT(end(), HasSubstr("the account has changed meanwhile"));
    expectNothingStored();
}

TEST_F(TwoProcesses, AnotherAccountFindsNoCatalogueOfTheFirst) {
    ASSERT_EQ(cli.run({QStringLiteral("sync")}).status, 0);
    ASSERT_TRUE(isPasswordStored(cli.folder()));
    ASSERT_EQ(
        cli.run({QStringLiteral("signin"), QStringLiteral("--server"), QString::fromStdString(provider.url()),
                 QStringLiteral("--username"), QStringLiteral("eva")},
                "another-word-9\n")
            .status,
        0);
    EXPECT_EQ(cli.run({QStringLiteral("list"), QStringLiteral("live")}).output, "");
    EXPECT_FALSE(isPasswordStored(cli.folder()));
}

} // namespace
} // namespace ondavia::cli::testing
