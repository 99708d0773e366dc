#pragma once

#include "platform/AVAudioSession.h"
#include "platform/FSPlayer.h"
#include "platform/NotificationCenter.h"

#include <cmath>
#include <functional>
#include <string>
#include <vector>

namespace ondavia::testing {

/// What was asked of the engines and the audio session, one line a call, in order.
using Journal = std::vector<std::string>;

class FakeView final : public FSPlayerView {
public:
    [[nodiscard]] QQuickItem* item() override { return picture; }
    [[nodiscard]] float darPreference() const override { return m_ratio; }
    void setDarPreference(float ratio) override { m_ratio = ratio; }
    void setCoveredBottom(double fraction) override { coveredBottom = fraction; }
    void setNeedsRefreshCurrentPic() override { ++refreshes; }

    /// Not owned.
    QQuickItem* picture = nullptr;
    int refreshes = 0;
    double coveredBottom = 0;

private:
    float m_ratio = 0;
};

/// An engine that does nothing by itself: it writes down what it is told and reports what the test says.
class FakePlayer final : public FSPlayer {
public:
    FakePlayer(std::string url, FSOptions given, Journal& log, NotificationCenter& notifications)
        : content(std::move(url))
        , options(std::move(given))
        , journal(log)
        , center(notifications) {}
    ~FakePlayer() override { journal.push_back("released"); }

    void setIsLive(bool live) override { isLive = live; }
    void setScalingMode(FSScalingMode mode) override {
        journal.push_back("scalingMode " + std::to_string(static_cast<int>(mode)));
    }
    void setShouldAutoplay(bool autoplay) override {
        journal.push_back("autoplay " + std::to_string(static_cast<int>(autoplay)));
    }
    FSPlayerView* view() override { return hasView ? &m_view : nullptr; }
    void setPlaybackVolume(float level) override {
        volume = level;
        journal.push_back("volume " + std::to_string(std::lround(level * 100)));
    }
    float playbackVolume() const override { return volume; }
    void prepareToPlay() override { journal.push_back("prepare " + content); }
    void play() override { journal.push_back("play"); }
    void pause() override { journal.push_back("pause"); }
    void shutdown() override {
        journal.push_back("shutdown " + content);
        if (onShutdown) {
            onShutdown();
        }
    }
    double currentPlaybackTime() const override { return time; }
    void setCurrentPlaybackTime(double seconds) override {
        time = seconds;
        journal.push_back("seek " + std::to_string(std::lround(seconds)));
    }
    double duration() const override { return length; }
    FSPlaybackState playbackState() const override { return state; }
    unsigned loadState() const override { return load; }
    bool isPlaying() const override { return state == FSPlaybackState::Playing; }
    float playbackRate() const override { return rate; }
    void setPlaybackRate(float speed) override { rate = speed; }
    FSMonitor monitor() const override { return meta; }
    FSStatistics statistics() const override { return currentStatistics; }
    void exchangeSelectedStream(std::int32_t streamIndex) override {
        journal.push_back("exchange " + std::to_string(streamIndex));
    }
    void closeCurrentStream(const std::string& streamType) override {
        journal.push_back("close " + streamType);
    }
    void loadSubtitlesOnly(const std::vector<std::string>& urls) override {
        for (const auto& url : urls) {
            journal.push_back("add " + url);
        }
    }
    void loadThenActiveSubtitle(const std::string& url) override { journal.push_back("show " + url); }

    /// Posts a notification of this engine, on the calling thread.
    void post(const char* name, const QVariantMap& userInfo = {}) {
        const FSPlayer* self = this;
        center.post({name, self, userInfo});
    }
    void report(FSPlaybackState reached) {
        state = reached;
        post(FSPlayerPlaybackStateDidChangeNotification);
    }
    void reportLoad(unsigned bits) {
        load = bits;
        post(FSPlayerLoadStateDidChangeNotification);
    }
    void finish(const QVariant& reason) {
        post(FSPlayerDidFinishNotification,
             {{QString::fromLatin1(FSPlayerDidFinishReasonUserInfoKey), reason}});
    }
    void fail() { finish(static_cast<int>(FSFinishReason::PlaybackError)); }
    FakeView& fakeView() { return m_view; }

    std::string content;
    FSOptions options;
    Journal& journal;
    NotificationCenter& center;
    std::function<void()> onShutdown;
    FSPlaybackState state = FSPlaybackState::Stopped;
    FSMonitor meta;
    FSStatistics currentStatistics;
    double time = 0;
    double length = 0;
    float volume = 1.0F;
    float rate = 1.0F;
    unsigned load = 0;
    bool hasView = true;
    bool isLive = false;

private:
    FakeView m_view;
};

class FakeAudioSession final : public AVAudioSession {
public:
    explicit FakeAudioSession(Journal& log)
        : m_journal(log) {}

    bool setCategory(std::string_view category, std::string_view mode) override {
        m_journal.push_back(std::string(category) + " " + std::string(mode));
        if (onCategory) {
            onCategory();
        }
        return !refuses;
    }
    bool setActive(bool active) override {
        m_journal.push_back("active " + std::to_string(static_cast<int>(active)));
        return !refuses;
    }
    float outputVolume() const override { return volume; }

    std::function<void()> onCategory;
    float volume = 0.5F;
    bool refuses = false;

private:
    Journal& m_journal;
};

} // namespace ondavia::testing
