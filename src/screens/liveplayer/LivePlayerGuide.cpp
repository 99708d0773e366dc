// What the live player knows of the programme, and what it plays of the past.
#include "guide/EPGService.h"
#include "library/RefreshSchedule.h"
#include "playback/PlayerManager.h"
#include "protocol/XtreamAPIClient.h"
#include "screens/liveplayer/LivePlayerViewModel.h"
#include "state/AppState.h"

#include <QPointer>

#include <chrono>

namespace ondavia {

void LivePlayerViewModel::loadCurrentProgram() {
    const auto& guideId = currentChannel().epgChannelId;
    const auto program =
        guideId && !guideId->empty() ? m_live.guide.getCurrentProgram(*guideId, m_live.now()) : std::nullopt;
    setCurrentProgramTitle(program ? std::optional(program->title) : std::nullopt);
}

void LivePlayerViewModel::toggleView() {
    if (showEPG()) {
        setShowEPG(false);
    } else if (!isLoadingEPG()) {
        // It raises nothing, and ends by itself when the view goes.
        (void)showGuide();
    }
}

void LivePlayerViewModel::openGuide() {
    if (showEPG() && !isFullscreen()) {
        openList();
        return;
    }
    setIsFullscreen(false);
    if (!showEPG()) {
        toggleView();
    }
    Q_EMIT panelWanted();
}

QCoro::Task<void> LivePlayerViewModel::showGuide() {
    const QPointer self(this);
    setIsLoadingEPG(true);
    co_await loadEPGDataIfNeeded();
    if (!self) {
        co_return;
    }
    setIsLoadingEPG(false);
    setShowEPG(true);
    m_guide.selectToday();
}

QCoro::Task<void> LivePlayerViewModel::loadEPGDataIfNeeded() {
    if (epgLoaded()) {
        co_return;
    }
    // The interval that the viewer has set is the start's alone.
    if (!guideSchedule.hasPassed(RefreshSchedule::defaultInterval, m_live.defaults, m_live.now())) {
        setEpgLoaded(true);
        co_return;
    }
    const auto client = services().appState.makeXtreamClient();
    if (!client) {
        co_return;
    }
    const QPointer self(this);
    try {
        co_await m_live.loadGuide(client);
    } catch (const std::exception&) {
        // The guide of before is shown, and the next time that it opens tries again.
        co_return;
    }
    if (self) {
        setEpgLoaded(true);
        loadCurrentProgram();
    }
}

/// The channel on air stays the view's: the list goes by it, and so does the next zap.
void LivePlayerViewModel::playCatchup(const EPGProgram& program) {
    const auto client = services().appState.makeXtreamClient();
    if (!client) {
        return;
    }
    m_number.cancel();
    const Channel& channel = currentChannel();
    const auto minutes =
        std::chrono::duration_cast<std::chrono::minutes>(program.stop - program.start).count();
    Channel recording;
    recording.id = channel.id + "_catchup_" + program.id;
    recording.playlistId = channel.playlistId;
    recording.streamId = channel.streamId;
    recording.name = channel.name + " — " + program.title;
    recording.type = "live";
    recording.groupTitle = channel.groupTitle;
    recording.logo = channel.logo;
    recording.url = client->getCatchupURL(channel.streamId, program.start, minutes);
    recording.addedAt = m_live.now();
    services().appState.setCurrentChannel(recording);
    services().playerManager.play(std::move(recording), 0);
}

} // namespace ondavia
