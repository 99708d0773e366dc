#pragma once

#include "entities/Channel.h"
#include "entities/EPGProgram.h"
#include "screens/browse/CategoryListModel.h"
#include "screens/guide/EPGPanelViewModel.h"
#include "screens/liveplayer/ChannelNumberEntry.h"
#include "screens/liveplayer/LiveChannelListModel.h"
#include "screens/liveplayer/LiveChannels.h"
#include "screens/liveplayer/LivePlayerServices.h"
#include "screens/player/PlayerScreen.h"
#include "style/ShownText.h"

#include <QUrl>
#include <qqmlregistration.h>

#include <memory>
#include <optional>
#include <span>
#include <string>

namespace ondavia {

/// The player of live channels: plays one, zaps through those of a category, shows the guide and plays what
/// it has of the past, and hands over to the mini player. In the split arrangement the picture stands beside
/// or above the list of channels or the guide; in the other one it is alone on the screen. Main thread.
// With its namespace, by which QML knows the base.
class LivePlayerViewModel final : public ondavia::PlayerScreen {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the presentation")
    Q_PROPERTY(QUrl logo READ logo NOTIFY itemChanged)
    /// Empty when the guide knows of none.
    Q_PROPERTY(QString currentProgramTitle READ programTitle NOTIFY currentProgramTitleChanged)
    /// What plays is a recording of the channel.
    Q_PROPERTY(bool isRecording READ isRecording NOTIFY recordingChanged)
    /// Which one; empty for none.
    Q_PROPERTY(QString recordingTitle READ recordingTitle NOTIFY recordingChanged)
    Q_PROPERTY(bool isFavorite READ isFavorite NOTIFY isFavoriteChanged)
    Q_PROPERTY(bool showEPG READ showEPG NOTIFY showEPGChanged)
    Q_PROPERTY(bool isLoadingEPG READ isLoadingEPG NOTIFY isLoadingEPGChanged)
    Q_PROPERTY(bool isFullscreen READ isFullscreen WRITE setIsFullscreen NOTIFY isFullscreenChanged)
    Q_PROPERTY(bool showCategories READ showCategories WRITE setShowCategories NOTIFY showCategoriesChanged)
    /// Where the picture stands above the list: as wide as the view, and 16 by 9.
    Q_PROPERTY(double containerWidth READ containerWidth WRITE setContainerWidth NOTIFY containerWidthChanged)
    Q_PROPERTY(double videoHeight READ videoHeight NOTIFY containerWidthChanged)
    Q_PROPERTY(ondavia::CategoryListModel* categories READ categoryList CONSTANT)
    Q_PROPERTY(QString selectedCategory READ categoryName NOTIFY selectedCategoryChanged)
    /// Row of the selected category; -1 when no channel is in it.
    Q_PROPERTY(int categoryRow READ categoryRow NOTIFY selectedCategoryChanged)
    Q_PROPERTY(ondavia::LiveChannelListModel* channels READ channels CONSTANT)
    /// Row of the channel on air in `channels`; -1 when it is not in the selected category.
    Q_PROPERTY(int currentRow READ currentRow NOTIFY currentRowChanged)
    Q_PROPERTY(ondavia::EPGPanelViewModel* guide READ guide CONSTANT)
    Q_PROPERTY(ondavia::ChannelNumberEntry* number READ number CONSTANT)

    /// On air in this view. A recording leaves it as it is.
    ONDAVIA_OBSERVABLE(Channel, currentChannel, setCurrentChannel);
    /// The guide stands in the place of the list.
    ONDAVIA_OBSERVABLE(bool, showEPG, setShowEPG, false);
    /// Whose channels are listed.
    ONDAVIA_OBSERVABLE(std::string, selectedCategory, setSelectedCategory);
    ONDAVIA_OBSERVABLE(std::optional<std::string>, currentProgramTitle, setCurrentProgramTitle);
    ONDAVIA_OBSERVABLE(bool, isFullscreen, setIsFullscreen, false);
    ONDAVIA_OBSERVABLE(bool, isFavorite, setIsFavorite, false);
    ONDAVIA_OBSERVABLE(bool, isLoadingEPG, setIsLoadingEPG, false);
    ONDAVIA_OBSERVABLE(double, containerWidth, setContainerWidth, 0.0);
    /// The guide was found fresh, or loaded, during this view's life.
    ONDAVIA_OBSERVABLE(bool, epgLoaded, setEpgLoaded, false);
    /// The categories to choose from lie over the list.
    ONDAVIA_OBSERVABLE(bool, showCategories, setShowCategories, false);

public:
    /// How wide the view is taken to be where there is no screen to ask.
    static constexpr double widthWithoutAScreen = 390.0;

    /// Zaps through `allChannels`.
    LivePlayerViewModel(const LivePlayerServices& services, Channel initialChannel,
                        std::shared_ptr<const LiveChannels> allChannels);
    ~LivePlayerViewModel() override;

    void appear() override;
    void retry() override;
    void toggleFullScreen() override { setIsFullscreen(!isFullscreen()); }
    /// The categories and the days lie over the rest too.
    bool closeLayer() override;

    [[nodiscard]] const Channel& initialChannel() const { return m_initialChannel; }
    [[nodiscard]] const LiveChannels& allChannels() const { return *m_allChannels; }
    [[nodiscard]] QString title() const override;
    [[nodiscard]] QUrl logo() const;
    [[nodiscard]] QString programTitle() const;
    [[nodiscard]] bool isRecording() const;
    [[nodiscard]] QString recordingTitle() const;
    [[nodiscard]] double videoHeight() const { return containerWidth() * 9 / 16; }
    [[nodiscard]] CategoryListModel* categoryList() { return &m_categories; }
    [[nodiscard]] QString categoryName() const { return shownText(selectedCategory()); }
    [[nodiscard]] int categoryRow() const;
    [[nodiscard]] LiveChannelListModel* channels() { return &m_channels; }
    [[nodiscard]] int currentRow() const { return m_channels.rowOf(currentChannel().id); }
    [[nodiscard]] EPGPanelViewModel* guide() { return &m_guide; }
    [[nodiscard]] ChannelNumberEntry* number() { return &m_number; }

    [[nodiscard]] const std::vector<LiveChannels::Category>& categories() const {
        return m_allChannels->categories();
    }
    /// The channels of the selected category, as places among all.
    [[nodiscard]] std::span<const std::size_t> filteredChannels() const {
        return m_allChannels->inCategory(selectedCategory());
    }

    void switchChannel(Channel channel);
    /// Both go round; from a channel outside of the category, to its first one.
    Q_INVOKABLE void switchToNextChannel() { switchBy(1); }
    Q_INVOKABLE void switchToPreviousChannel() { switchBy(-1); }
    /// A channel of the list was chosen.
    Q_INVOKABLE void chooseChannel(int row);
    Q_INVOKABLE void chooseCategory(int row);
    /// From a recording to what its channel shows now.
    Q_INVOKABLE void returnToLive() { switchChannel(currentChannel()); }
    /// Back to the channel that was on air before this one, or out of a recording; nothing where there was
    /// none.
    Q_INVOKABLE void switchToChannelBefore();

    /// The guide in the place of the list, or the list in the place of the guide.
    Q_INVOKABLE void toggleView();
    /// Either of them, and the arrangement in which it can be seen. A guide that can be seen makes room for
    /// the list.
    Q_INVOKABLE void openGuide();
    Q_INVOKABLE void openList();
    QCoro::Task<void> loadEPGDataIfNeeded();
    void loadCurrentProgram();
    void playCatchup(const EPGProgram& program);
    Q_INVOKABLE void toggleFavorite();
    /// Out of what covers the rest, out of the whole screen, out of the guide, out to the mini player: one of
    /// them.
    Q_INVOKABLE void goBack();

    Q_SIGNAL void currentRowChanged();
    Q_SIGNAL void recordingChanged();
    /// The viewer wants to go on in the list or the guide.
    Q_SIGNAL void panelWanted();

private:
    void leave() override;
    void connectFields();
    void bindKeys();
    void setup();
    void setupRemoteChannelNav();
    void switchBy(int step);
    /// To a channel that need not be in the selected category, which follows it then.
    void switchAnywhere(Channel channel);
    void refreshFavorite();
    void recordChannelAccess(const Channel& channel);
    QCoro::Task<void> showGuide();
    void arrange();

    LivePlayerServices m_live;
    Channel m_initialChannel;
    std::shared_ptr<const LiveChannels> m_allChannels;
    std::optional<Channel> m_channelBefore;
    CategoryListModel m_categories{nullptr};
    LiveChannelListModel m_channels;
    EPGPanelViewModel m_guide;
    ChannelNumberEntry m_number;
};

} // namespace ondavia
