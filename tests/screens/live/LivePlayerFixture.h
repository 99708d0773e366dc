#pragma once

#include "protocol/XtreamAPIClient.h"
#include "screens/ScreensFixture.h"
#include "screens/liveplayer/LivePlayerViewModel.h"
#include "screens/player/OrientationLock.h"
#include "screens/player/PlayerPresentation.h"

#include <gmock/gmock.h>

#include <memory>
#include <span>

namespace ondavia::testing {

/// The live player of the open session, over a stored catalogue and an engine that writes down what it is
/// told.
class LivePlayerFixture : public ScreensFixture {
protected:
    LivePlayerFixture() {
        fill({channel(4, "Música"), channel(1, "Notícias"), channel(5, "Desporto"), channel(2, "Notícias"),
              channel(3, "Notícias"), title(9, "movie", "Drama", "Uma Longa Noite")});
    }
    [[nodiscard]] static Channel channel(std::int64_t number, const std::string& group) {
        Channel channel = title(number, "live", group, "Canal " + std::to_string(number));
        channel.epgChannelId = "guia." + std::to_string(number);
        return channel;
    }
    [[nodiscard]] static std::string url(std::int64_t number) {
        return "http://tv.example/live/" + std::to_string(number);
    }
    [[nodiscard]] long plays(std::int64_t number) const {
        return std::ranges::count(journal, "create " + url(number));
    }

    [[nodiscard]] LivePlayerServices liveServices() {
        return {.player = {appState, store->mainContext(), playerManager, scheduler, audio, systemVolume,
                           screenBrightness},
                .remoteCommands = commands,
                .defaults = defaults,
                .guide = EPGService(guideEnvironment()),
                .loadGuide =
                    [this](std::shared_ptr<XtreamAPIClient> client) {
                        ++guideLoads;
                        return refresh.loadGuide(std::move(client));
                    },
                .now = [this] { return now; }};
    }
    [[nodiscard]] std::unique_ptr<LivePlayerViewModel> make(const Channel& initial) {
        return std::make_unique<LivePlayerViewModel>(
            liveServices(), initial,
            std::make_shared<LiveChannels>(LiveChannels::fetch(store->mainContext())));
    }
    [[nodiscard]] LivePlayerViewModel& player() {
        return dynamic_cast<LivePlayerViewModel&>(*presentation.player());
    }
    /// Opens a session and lets the engine run.
    void open(const Channel& initial) {
        appState.playChannel(initial);
        run();
    }
    void open(std::int64_t number = 1, const std::string& group = "Notícias") {
        open(channel(number, group));
    }
    void run() {
        scheduler.runPending();
        playerManager.setIsBuffering(false);
        playerManager.setIsPlaying(true);
    }
    [[nodiscard]] Channel stored(const std::string& id) {
        return *store->mainContext().fetchFirst<Channel>({.where = field(&Channel::id) == id});
    }
    [[nodiscard]] std::string onAir() { return player().currentChannel().id; }
    [[nodiscard]] bool offersNext() const { return commands.nextTrackCommand.isEnabled(); }
    [[nodiscard]] bool offersPrevious() const { return commands.previousTrackCommand.isEnabled(); }
    /// Out of the mini player.
    void reexpand() {
        appState.setShowMiniPlayer(false);
        drainEvents();
    }
    /// Notes each of an object's signals by a name, in their order, as long as the listener lives.
    template<typename Object, typename Signal>
    void note(const QObject& listener, const Object& object, Signal signal, const char* step) {
        QObject::connect(&object, signal, &listener, [this, step] { steps.emplace_back(step); });
    }
    void signIn(const std::string& server = "http://tv.example") {
        appState.setServer(server);
        appState.setUsername("ana");
        appState.setPassword("s3cr3t-word");
    }
    void keepGuideFresh() { defaults.setDate("ondavia_last_epg_load", now); }

    [[nodiscard]] std::vector<std::string> listed() {
        const LiveChannelListModel& list = *player().channels();
        std::vector<std::string> names;
        for (int row = 0; row < list.rowCount(); ++row) {
            names.push_back(list.index(row).data(LiveChannelListModel::NameRole).toString().toStdString());
        }
        return names;
    }
    void broadcast(const std::string& guideId, const std::string& title, Date start, Date stop) {
        store->mainContext().insert(
            EPGProgram{guideId + title, guideId, title, std::nullopt, start, stop, std::nullopt});
        store->mainContext().save();
    }

    Date now = currentDate();
    int guideLoads = 0;
    /// What was noted.
    std::vector<std::string> steps;
    AllOrientationsAgain orientations;
    PlayerPresentation presentation{
        appState, [this](const Channel& item) -> std::unique_ptr<PlayerScreen> { return make(item); }};
};

} // namespace ondavia::testing
