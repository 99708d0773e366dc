#include "engine/EngineTestSupport.h"
#include "platform/linux/PulseVolume.h"

#include <QLocalServer>
#include <QProcess>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <algorithm>
#include <complex>
#include <cstdlib>
#include <functional>
#include <numbers>
#include <vector>

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
        return hears([loud](const Samples& samples) { return isLoud(samples) == loud; });
    }
    /// Runs the event loop until a tenth of a second of the sink is little but a sine of this frequency, in
    /// Hz.
    [[nodiscard]] bool sounds(double frequency) {
        return hears([frequency](const Samples& samples) {
            return isLoud(samples) && shareOf(frequency, samples) > 0.8;
        });
    }

private:
    using Samples = std::vector<std::int16_t>;
    static constexpr double rate = 8000;

    bool hears(const std::function<bool(const Samples&)>& isWanted) {
        m_listener.readAllStandardOutput();
        return waitUntil([&] {
            Samples samples(static_cast<std::size_t>(rate / 10));
            const auto size = static_cast<qint64>(samples.size() * sizeof(std::int16_t));
            while (m_listener.bytesAvailable() >= size) {
                m_listener.read(reinterpret_cast<char*>(samples.data()), size);
                if (isWanted(samples)) {
                    return true;
                }
            }
            return false;
        });
    }
    static bool isLoud(const Samples& samples) {
        constexpr int audible = 300;
        return std::ranges::any_of(samples, [](std::int16_t sample) { return std::abs(sample) > audible; });
    }
    /// How much of the samples' power one frequency has, from 0 to 1.
    static double shareOf(double frequency, const Samples& samples) {
        std::complex<double> component;
        double power = 0;
        for (std::size_t index = 0; index < samples.size(); ++index) {
            const double angle = 2 * std::numbers::pi * frequency * static_cast<double>(index) / rate;
            component += std::polar(static_cast<double>(samples[index]), -angle);
            power += static_cast<double>(samples[index]) * samples[index];
        }
        return 2 * std::norm(component) / (power * static_cast<double>(samples.size()));
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

TEST(EngineSound, TheOtherStreamIsHeardOnceItIsChosen) {
    NullSink sink;
    ASSERT_TRUE(sink.exists()) << "no sound server answers";
    Engine engine(MpvOutputs::Window, Media::shared().tracks);
    engine->prepareToPlay();
    EXPECT_TRUE(sink.sounds(440));
    engine->exchangeSelectedStream(2);
    EXPECT_TRUE(sink.sounds(880));
    engine->exchangeSelectedStream(1);
    EXPECT_TRUE(sink.sounds(440));
}

TEST(EngineSound, AServerThatNeverAnswersHoldsNoPictureUp) {
    const QTemporaryDir folder;
    QLocalServer silent;
    ASSERT_TRUE(silent.listen(folder.filePath(QStringLiteral("pulse"))));
    const QByteArray former = qgetenv("PULSE_SERVER");
    qputenv("PULSE_SERVER", "unix:" + silent.fullServerName().toUtf8());
    PulseVolume volume;
    EXPECT_EQ(volume.outputVolume(), 1.0F);
    EXPECT_FALSE(PulseVolume::isServerSilent()) << "it has just been asked";
    ASSERT_TRUE(waitUntil([] { return PulseVolume::isServerSilent(); }, std::chrono::seconds(30)));
    Engine engine(MpvOutputs::Window, Media::shared().movie);
    engine->prepareToPlay();
    EXPECT_TRUE(engine.awaitPosition(1));
    qputenv("PULSE_SERVER", former);
}

} // namespace
} // namespace ondavia::testing
