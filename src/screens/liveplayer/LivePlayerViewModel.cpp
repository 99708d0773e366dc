#include "screens/liveplayer/LivePlayerViewModel.h"

#include "base/AppLogger.h"
#include "personal/FavoritesService.h"
#include "personal/Profile.h"
#include "platform/MPRemoteCommandCenter.h"
#include "playback/PlayerManager.h"
#include "protocol/XtreamAPIClient.h"
#include "screens/pictures/PictureProvider.h"
#include "screens/player/OrientationLock.h"
#include "state/AppState.h"
#include "store/StoreContext.h"
#include "style/ShownText.h"

#include <QGuiApplication>
#include <QPointer>
#include <QScreen>

#include <algorithm>

namespace ondavia {
namespace {

std::vector<CategoryRow> categoryRows(const LiveChannels& channels) {
    std::vector<CategoryRow> rows;
    for (const auto& category : channels.categories()) {
        rows.push_back({category.name, static_cast<std::int64_t>(category.rows.size())});
    }
    return rows;
}

/// A recording that comes back from the mini player belongs to its channel: that is what the view is of.
Channel channelOf(const Channel& item, const LiveChannels& channels) {
    for (std::size_t row = 0; row < channels.size(); ++row) {
        const LiveChannel& channel = channels.at(row);
        if (channel.streamId == item.streamId && item.id.starts_with(channel.id + "_catchup_")) {
            return channels.channel(row);
        }
    }
    return item;
}

double screenWidth() {
    const QScreen* screen = QGuiApplication::primaryScreen();
    return screen != nullptr ? screen->size().width() : LivePlayerViewModel::widthWithoutAScreen;
}

} // namespace

LivePlayerViewModel::LivePlayerViewModel(const LivePlayerServices& services, Channel initialChannel,
                                         std::shared_ptr<const LiveChannels> allChannels)
    : PlayerScreen(services.player, SettingsSheetModel::Kind::Live)
    , m_live(services)
    , m_initialChannel(std::move(initialChannel))
    , m_allChannels(std::move(allChannels))
    , m_channels(m_allChannels)
    , m_guide(services.guide, services.player.appState, nullptr, services.now)
    , m_number(m_allChannels, services.player.scheduler) {
    connectFields();
    bindKeys();
    controls()->setShowControls(false);
    setContainerWidth(screenWidth());
    m_categories.setRows(categoryRows(*m_allChannels));
    // A category may have no name: the field is as it was then, and tells nobody.
    m_channels.setCategory(m_initialChannel.groupTitle);
    setSelectedCategory(m_initialChannel.groupTitle);
    setCurrentChannel(channelOf(m_initialChannel, *m_allChannels));
    m_guide.setChannel(currentChannel());
    m_guide.selectToday();
}

LivePlayerViewModel::~LivePlayerViewModel() = default;

void LivePlayerViewModel::connectFields() {
    using Self = LivePlayerViewModel;
    connect(this, &Self::currentChannelChanged, this, [this] {
        Q_EMIT itemChanged();
        Q_EMIT currentRowChanged();
    });
    connect(this, &Self::selectedCategoryChanged, this, [this] {
        m_channels.setCategory(selectedCategory());
        Q_EMIT currentRowChanged();
    });
    connect(this, &Self::isFullscreenChanged, this, &Self::arrange);
    connect(&services().playerManager, &PlayerManager::currentItemChanged, this, &Self::recordingChanged);
    connect(&m_guide, &EPGPanelViewModel::playCatchupRequested, this, &Self::playCatchup);
    connect(&m_number, &ChannelNumberEntry::chosen, this,
            [this](std::size_t place) { switchAnywhere(m_allChannels->channel(place)); });
}

void LivePlayerViewModel::appear() {
    OrientationLock::set(portrait);
    levels()->read();
    setup();
    recordChannelAccess(currentChannel());
}

void LivePlayerViewModel::setup() {
    if (!takesOver(m_initialChannel)) {
        services().playerManager.play(m_initialChannel, 0);
    }
    setupRemoteChannelNav();
    refreshFavorite();
    loadCurrentProgram();
}

/// Playing anything takes the callbacks away again: what the remote can do ends with the first zap.
void LivePlayerViewModel::setupRemoteChannelNav() {
    PlayerManager& manager = services().playerManager;
    manager.setOnNextTrack([self = QPointer(this)] {
        if (self) {
            self->switchToNextChannel();
        }
    });
    manager.setOnPreviousTrack([self = QPointer(this)] {
        if (self) {
            self->switchToPreviousChannel();
        }
    });
    m_live.remoteCommands.nextTrackCommand.setEnabled(true);
    m_live.remoteCommands.previousTrackCommand.setEnabled(true);
}

/// By value: it may be the channel on air itself.
void LivePlayerViewModel::switchChannel(Channel channel) {
    if (channel.id != currentChannel().id) {
        m_channelBefore = currentChannel();
    }
    m_number.cancel();
    setCurrentChannel(channel);
    services().appState.setCurrentChannel(channel);
    setShowEPG(false);
    // Not before: a guide that shows would read the channel's day.
    m_guide.setChannel(channel);
    m_guide.selectToday();
    services().playerManager.play(channel, 0);
    recordChannelAccess(channel);
    loadCurrentProgram();
    refreshFavorite();
}

void LivePlayerViewModel::switchBy(int step) {
    const int count = m_channels.rowCount();
    if (count == 0) {
        return;
    }
    const int current = currentRow();
    chooseChannel(current < 0 ? 0 : (current + step + count) % count);
}

void LivePlayerViewModel::chooseChannel(int row) {
    if (const auto place = m_channels.placeOf(row)) {
        switchChannel(m_allChannels->channel(*place));
    }
}

void LivePlayerViewModel::switchAnywhere(Channel channel) {
    setSelectedCategory(channel.groupTitle);
    switchChannel(std::move(channel));
}

void LivePlayerViewModel::switchToChannelBefore() {
    if (isRecording()) {
        returnToLive();
    } else if (m_channelBefore) {
        switchAnywhere(*m_channelBefore);
    }
}

int LivePlayerViewModel::categoryRow() const {
    const auto found = std::ranges::find(categories(), selectedCategory(), &LiveChannels::Category::name);
    return found != categories().end() ? static_cast<int>(found - categories().begin()) : -1;
}

void LivePlayerViewModel::chooseCategory(int row) {
    if (row >= 0 && row < m_categories.rowCount()) {
        setSelectedCategory(categories()[static_cast<std::size_t>(row)].name);
    }
    setShowCategories(false);
}

/// Of a channel that has left the catalogue, and of a recording, there is no row.
void LivePlayerViewModel::recordChannelAccess(const Channel& channel) {
    StoreContext& context = services().modelContext;
    try {
        context.note<Channel>(channel.id, &Channel::lastAccessedAt, m_live.now());
        context.save();
    } catch (const StoreError& error) {
        // It is only missing among the recent channels.
        AppLogger::general.debug("recent channels: %s", {error.what()});
    }
}

void LivePlayerViewModel::refreshFavorite() {
    setIsFavorite(FavoritesService(services().modelContext, mainProfileId).isFavorite(currentChannel().id));
}

void LivePlayerViewModel::toggleFavorite() {
    setIsFavorite(
        FavoritesService(services().modelContext, mainProfileId).toggleFavorite(currentChannel().id));
}

void LivePlayerViewModel::retry() {
    services().playerManager.play(currentChannel(), 0);
}

void LivePlayerViewModel::leave() {
    controls()->invalidate();
    m_number.cancel();
    endSession();
    OrientationLock::set(portrait);
}

void LivePlayerViewModel::arrange() {
    OrientationLock::set(isFullscreen() ? landscape : portrait);
    if (!isFullscreen()) {
        // Only the picture alone has sliders over it, and open ones would keep the controls from going.
        levels()->brightness()->setShowSlider(false);
        levels()->volume()->setShowSlider(false);
    }
}

void LivePlayerViewModel::openList() {
    setIsFullscreen(false);
    setShowEPG(false);
    Q_EMIT panelWanted();
}

bool LivePlayerViewModel::closeLayer() {
    if (PlayerScreen::closeLayer()) {
        return true;
    }
    const bool hadCategories = showCategories();
    setShowCategories(false);
    const bool hadDays = !hadCategories && showEPG() && m_guide.showDatePicker();
    if (hadDays) {
        m_guide.setShowDatePicker(false);
    }
    return hadCategories || hadDays;
}

void LivePlayerViewModel::goBack() {
    if (m_number.isTyping()) {
        m_number.cancel();
    } else if (closeLayer()) {
        return;
    } else if (isFullscreen()) {
        setIsFullscreen(false);
    } else if (showEPG()) {
        openList();
    } else {
        minimizeToMini();
    }
}

QString LivePlayerViewModel::title() const {
    return shownText(currentChannel().name);
}

bool LivePlayerViewModel::isRecording() const {
    // Not the session's item: that stays the recording when another try plays the channel itself.
    const auto& item = services().playerManager.currentItem();
    return item && item->id != currentChannel().id;
}

QString LivePlayerViewModel::recordingTitle() const {
    return isRecording() ? shownText(services().playerManager.currentItem()->name) : QString();
}

QUrl LivePlayerViewModel::logo() const {
    return pictureUrl(currentChannel().logo);
}

QString LivePlayerViewModel::programTitle() const {
    return shownText(currentProgramTitle().value_or(std::string()));
}

} // namespace ondavia
