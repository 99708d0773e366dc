#include "engine/EngineTestSupport.h"

#include <QProcess>

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>

namespace ondavia::testing {
namespace {

/// A sink of the sound server's that plays to nobody, where this process's sound goes while it lives; what
/// arrives there can be listened to.
class NullSink final {
public:
    NullSink()
        : m_name(QStringLiteral("ondavia_test_%1").arg(QCoreApplication::applicationPid())) {
        QProcess load;
        load.start(QStringLiteral("pactl"),
                   {QStringLiteral("load-module"), QStringLiteral("module-null-sink"),
                    QStringLiteral("sink_name=") + m_name});
        load.waitForFinished();
        m_module = QString::fromLatin1(load.readAllStandardOutput().trimmed());
        qputenv("PULSE_SINK", m_name.toLatin1());
        m_listener.start(QStringLiteral("parec"),
                         {QStringLiteral("--device=") + m_name + QStringLiteral(".monitor"),
                          QStringLiteral("--raw"), QStringLiteral("--format=s16le"),
                          QStringLiteral("--channels=1"), QStringLiteral("--rate=8000"),
                          QStringLiteral("--latency-msec=50")});
    }
    ~NullSink() {
        m_listener.kill();
        m_listener.waitForFinished();
        qunsetenv("PULSE_SINK");
        QProcess::execute(QStringLiteral("pactl"), {QStringLiteral("unload-module"), m_module});
    }
    NullSink(const NullSink&) = delete;
    NullSink& operator=(const NullSink&) = delete;

    [[nodiscard]] bool exists() const { return !m_module.isEmpty(); }
    /// Runs the event loop until a tenth of a second of the sink is loud, or silent.
    [[nodiscard]] bool becomes(bool loud) {
        m_listener.readAllStandardOutput();
        return waitUntil([this, loud] {
            constexpr qint64 tenthOfASecond = 800 * sizeof(std::int16_t);
            while (m_listener.bytesAvailable() >= tenthOfASecond) {
                if (isLoud(m_listener.read(tenthOfASecond)) == loud) {
                    return true;
                }
            }
            return false;
        });
    }

private:
    static bool isLoud(const QByteArray& bytes) {
        constexpr int audible = 300;
        std::vector<std::int16_t> samples(static_cast<std::size_t>(bytes.size()) / sizeof(std::int16_t));
        std::memcpy(samples.data(), bytes.data(), samples.size() * sizeof(std::int16_t));
        return std::ranges::any_of(samples, [](std::int16_t sample) { return std::abs(sample) > audible; });
    }

    QString m_name;
    QString m_module;
    QProcess m_listener;
};

TEST(EngineSound, IsHeardAndFollowsPauseAndVolume) {
    NullSink sink;
    ASSERT_TRUE(sink.exists()) << "no sound server answers";
    Engine engine(MpvOutputs::Window, Media::shared().movie);
    EXPECT_TRUE(sink.becomes(false));
    engine->prepareToPlay();
    EXPECT_TRUE(sink.becomes(true));
    engine->setPlaybackVolume(0.0F);
    EXPECT_TRUE(sink.becomes(false));
    engine->setPlaybackVolume(1.0F);
    EXPECT_TRUE(sink.becomes(true));
    engine->pause();
    EXPECT_TRUE(sink.becomes(false));
    engine->play();
    EXPECT_TRUE(sink.becomes(true));
    engine->shutdown();
    EXPECT_TRUE(sink.becomes(false));
}

} // namespace
} // namespace ondavia::testing
