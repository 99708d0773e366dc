#include "cli/Playback.h"

#include "app/Services.h"
#include "cli/Items.h"
#include "playback/StreamMeta.h"

#include <QPointer>
#include <QVariantList>

namespace ondavia::cli {
namespace {

constexpr double secondsBetweenPositions = 1.0;

std::string stateName(FSPlaybackState state) {
    switch (state) {
    case FSPlaybackState::Stopped:
        return "stopped";
    case FSPlaybackState::Playing:
        return "playing";
    case FSPlaybackState::Paused:
        return "paused";
    case FSPlaybackState::Interrupted:
        return "interrupted";
    case FSPlaybackState::SeekingForward:
    case FSPlaybackState::SeekingBackward:
        break;
    }
    return "seeking";
}

QVariant entry(const QVariantMap& stream, const char* key) {
    return stream.value(QString::fromLatin1(key));
}

std::string textOf(const QVariantMap& stream, const char* key) {
    return entry(stream, key).toString().toStdString();
}

std::string formatOf(const QVariantMap& stream) {
    const auto width = parseMetaInt(entry(stream, "width"));
    const auto height = parseMetaInt(entry(stream, "height"));
    if (width && height) {
        return std::to_string(*width) + "x" + std::to_string(*height);
    }
    const auto rate = parseMetaInt(entry(stream, "sample_rate"));
    return rate ? std::to_string(*rate) + " Hz" : std::string();
}

} // namespace

Playback::Playback(Services& services, Output& output)
    : m_services(services)
    , m_output(output) {}

Playback::~Playback() {
    forgetEngine();
}

QCoro::Task<void> Playback::run(Channel item, double from, double seconds) {
    PlayerManager& manager = m_services.playerManager;
    connect(&manager, &PlayerManager::playerChanged, this, &Playback::observeEngine);
    connect(&manager, &PlayerManager::currentTimeChanged, this, &Playback::timeChanged);
    connect(&manager, &PlayerManager::isBufferingChanged, this, [this] {
        const bool isBuffering = m_services.playerManager.isBuffering();
        printEvent("buffering", {{"value", std::string(isBuffering ? "begins" : "ends")}});
    });
    m_begin = currentDate();
    manager.play(item, from);
    if (manager.error()) {
        throw CommandError(*manager.error());
    }
    const std::stop_token end = m_end.get_token();
    co_await m_services.scheduler->sleep(seconds, end);
    printPosition();
    manager.disconnect(this);
    forgetEngine();
    manager.stop();
    if (!m_hasPlayed) {
        throw CommandError("nothing was played in this time");
    }
}

/// A retry brings a new engine, whose notifications have to be asked for again.
void Playback::observeEngine() {
    forgetEngine();
    m_engine = m_services.playerManager.player();
    if (m_engine) {
        observe(FSPlayerPlaybackStateDidChangeNotification, &Playback::stateChanged);
        observe(FSPlayerFirstVideoFrameRenderedNotification, &Playback::firstFrameShown);
        observe(FSPlayerDidFinishNotification, &Playback::finished);
    }
}

void Playback::forgetEngine() {
    if (m_engine) {
        m_services.notifications.removeObserver(this, m_engine.get());
        m_engine.reset();
    }
}

/// Notifications may come from any thread: what they tell is looked at on the main thread.
void Playback::observe(const char* notification, void (Playback::*told)(int reason)) {
    const QPointer<Playback> self(this);
    const std::weak_ptr<FSPlayer> engine = m_engine;
    Scheduler* scheduler = m_services.scheduler.get();
    const auto handler = [self, engine, scheduler, told](const Notification& posted) {
        const int reason =
            posted.userInfo.value(QString::fromLatin1(FSPlayerDidFinishReasonUserInfoKey), -1).toInt();
        scheduler->onMainThread([self, engine, told, reason] {
            if (self && self->m_engine && self->m_engine == engine.lock()) {
                (self.data()->*told)(reason);
            }
        });
    };
    m_services.notifications.addObserver(this, notification, m_engine.get(), handler);
}

void Playback::stateChanged(int) {
    printEvent("state", {{"value", stateName(m_engine->playbackState())}});
}

void Playback::firstFrameShown(int) {
    m_hasPlayed = true;
    printEvent("first frame", {});
    printTracks();
}

void Playback::finished(int reason) {
    if (reason == static_cast<int>(FSFinishReason::PlaybackError)) {
        printEvent("failure", {{"value", std::string("the stream cannot be played; once more in a second")}});
    } else {
        printEvent("end", {});
        m_end.request_stop();
    }
}

void Playback::timeChanged() {
    const double now = secondsSoFar();
    if (m_services.playerManager.currentTime() > 0) {
        m_hasPlayed = true;
        if (m_lastPrinted < 0 || now - m_lastPrinted >= secondsBetweenPositions) {
            printPosition();
        }
    }
}

void Playback::printTracks() {
    const FSMonitor monitor = m_engine->monitor();
    for (const QVariant& element : entry(monitor.mediaMeta, "streams").toList()) {
        const QVariantMap stream = element.toMap();
        const auto index = parseMetaInt(entry(stream, "stream_idx"));
        const auto isActive = [&](const QVariantMap& active) {
            return index && parseMetaInt(entry(active, "stream_idx")) == index;
        };
        const bool isSelected =
            isActive(monitor.videoMeta) || isActive(monitor.audioMeta) || isActive(monitor.subtitleMeta);
        printEvent("track", {{"index", toValue(index)},
                             {"type", textOf(stream, "type")},
                             {"codec", textOf(stream, "codec_name")},
                             {"format", formatOf(stream)},
                             {"language", textOf(stream, "language")},
                             {"selected", isSelected}});
    }
}

void Playback::printPosition() {
    const PlayerManager& manager = m_services.playerManager;
    m_lastPrinted = secondsSoFar();
    printEvent("position", {{"position", manager.currentTime()}, {"duration", manager.duration()}});
}

void Playback::printEvent(const char* event, Record more) {
    Record record{{"at", secondsSoFar()}, {"event", std::string(event)}};
    record.insert(record.end(), more.begin(), more.end());
    m_output.printLine(record, {5, 11, 2, 9, 6, 9, 3});
}

double Playback::secondsSoFar() const {
    return secondsSince1970(currentDate()) - secondsSince1970(m_begin);
}

QCoro::Task<void> playItem(CommandContext context) {
    const Channel item = co_await findItem(context.services, context.arguments.id);
    requireStream(item);
    Playback playback(context.services, context.output);
    co_await playback.run(item, context.arguments.playFrom, context.arguments.playFor);
}

} // namespace ondavia::cli
