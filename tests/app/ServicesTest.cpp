#include "ScriptedProvider.h"
#include "guide/GuideSamples.h"
#include "support/TestSupport.h"

#include <QProcess>
#include <QScopeGuard>

#include <gtest/gtest.h>

#include <future>

namespace ondavia::testing {
namespace {

/// Rows without an end, so that the transfer is under way whenever it is looked at.
Reply endless(const std::string& head, const std::string& filler) {
    constexpr std::size_t more = std::size_t{1} << 40;
    return longBody(head, filler, more);
}

/// A program with services of its own, in a folder of its own, that works on `url` until it is told to end.
class Probe final {
public:
    explicit Probe(const std::string& url) {
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(QStringLiteral("ONDAVIA_DATA_DIR"),
                           QString::fromStdString(m_folder.path().string()));
        environment.insert(QStringLiteral("ONDAVIA_VAULT"), QStringLiteral("file"));
        // What waits for a transfer is left behind by a process that ends.
        environment.insert(QStringLiteral("ASAN_OPTIONS"), QStringLiteral("detect_leaks=0"));
        m_process.setProcessEnvironment(environment);
        m_process.start(QStringLiteral(SERVICES_EXIT_PROBE), {QString::fromStdString(url)});
    }

    void expectGoodEnd() {
        m_process.write("end\n");
        const auto ended = [this] { return m_process.state() == QProcess::NotRunning; };
        EXPECT_TRUE(waitUntil(ended, std::chrono::minutes(1)));
        const std::string errors = m_process.readAllStandardError().toStdString();
        EXPECT_EQ(m_process.exitStatus(), QProcess::NormalExit) << errors;
        EXPECT_EQ(m_process.exitCode(), 0) << errors;
        EXPECT_EQ(errors.find("left behind"), std::string::npos) << errors;
    }

private:
    TemporaryFolder m_folder;
    QProcess m_process;
};

TEST(Services, EndWellInTheMiddleOfASynchronisationAndAGuide) {
    ScriptedProvider provider;
    provider.script("get_vod_categories", {body(categoriesJSON({{"1", "Drama"}}))});
    provider.script("get_vod_streams",
                    {endless("[{\"name\":\"Film\",\"stream_id\":1}",
                             ",{\"name\":\"Film\",\"stream_id\":2,\"category_id\":\"1\"}")});
    provider.script(guideDocument, {endless("<tv>", programme("<title>News</title>"))});
    // The first rounds meet a list that never comes: what waits for it must not wait on.
    std::promise<void> gate;
    const Reply never = [opened = gate.get_future().share()](const auto&, auto&) { opened.wait(); };
    provider.script("get_live_categories", {never, never, never, body("[]")});
    const auto opened = qScopeGuard([&gate] { gate.set_value(); });
    // What goes wrong at the end does so now and then.
    constexpr int rounds = 12;
    for (int round = 0; round < rounds; ++round) {
        Probe probe(provider.url());
        ASSERT_TRUE(waitUntil([&] {
            return provider.requestCount("get_vod_streams") > round &&
                   provider.requestCount(guideDocument) > round;
        }));
        SCOPED_TRACE(round);
        probe.expectGoodEnd();
    }
}

} // namespace
} // namespace ondavia::testing
