#include "screens/details/DetailViewModel.h"

#include "base/AppLogger.h"
#include "base/Text.h"
#include "personal/Profile.h"
#include "screens/pictures/PictureProvider.h"
#include "state/AppState.h"
#include "store/StoreContext.h"
#include "style/ShownText.h"
#include "style/Texts.h"

namespace ondavia {
namespace {

/// Of what is read, not seen in passing.
constexpr qsizetype longestProse = 4000;

QString prose(const std::optional<std::string>& text) {
    return shownText(text.value_or(std::string()), longestProse).trimmed();
}

} // namespace

DetailViewModel::DetailViewModel(const DetailServices& services, Channel channel)
    : m_services(services)
    , m_channel(std::move(channel)) {
    connect(this, &DetailViewModel::isInSightChanged, this, &DetailViewModel::follow);
    for (const auto signal :
         {&AppState::isPlayingChanged, &AppState::currentChannelChanged, &AppState::showMiniPlayerChanged}) {
        connect(&services.appState, signal, this, &DetailViewModel::follow);
    }
}

DetailViewModel::~DetailViewModel() = default;

/// The player covers the page, which itself cannot tell.
void DetailViewModel::follow() {
    const bool isOnShow = isInSight() && !services().appState.presentsPlayer();
    const bool hasCome = isOnShow && !m_isOnShow;
    m_isOnShow = isOnShow;
    if (hasCome) {
        // In the next turn: a player that goes has written by then how far it came.
        QMetaObject::invokeMethod(
            this, [this] { appear(); }, Qt::QueuedConnection);
    }
}

QString DetailViewModel::title() const {
    return shownText(m_channel.name);
}

QUrl DetailViewModel::poster() const {
    return pictureUrl(m_channel.logo);
}

QUrl DetailViewModel::backdrop() const {
    return pictureUrl(m_channel.backdrop);
}

QVariantList DetailViewModel::badgeList() const {
    QVariantList list;
    for (const DetailBadge& badge : badges()) {
        list.append(QVariantMap{{QStringLiteral("text"), badge.text},
                                {QStringLiteral("highlight"), badge.highlight}});
    }
    return list;
}

QString DetailViewModel::plot() const {
    return prose(m_channel.plot);
}

bool DetailViewModel::hasPlotToggle() const {
    return m_channel.plot && firstCharacters(*m_channel.plot, longPlot).has_value();
}

QString DetailViewModel::plotToggleText() const {
    return showFullPlot() ? textFor("detail.less", "Menos") : textFor("detail.readMore", "Ler mais");
}

QString DetailViewModel::cast() const {
    return prose(m_channel.cast);
}

QString DetailViewModel::director() const {
    return prose(m_channel.director);
}

QString DetailViewModel::playText() const {
    return continues() ? textFor("player.continue", "Continuar a ver") : textFor("player.play", "Reproduzir");
}

void DetailViewModel::checkFavorite() {
    bool isMarked = false;
    try {
        isMarked = services().modelContext.count<Favorite>(field(&Favorite::channelId) == m_channel.id) > 0;
    } catch (const StoreError& error) {
        AppLogger::general.error("The favourites could not be read: %s", {error.what()});
    }
    setIsFavorite(isMarked);
}

/// By what the heart shows: whoever presses it wants the other of the two.
void DetailViewModel::toggleFavorite() {
    StoreContext& context = services().modelContext;
    if (isFavorite()) {
        context.remove(field(&Favorite::profileId) == mainProfileId &&
                       field(&Favorite::channelId) == m_channel.id);
    } else {
        context.insert(Favorite(mainProfileId, m_channel.id));
    }
    setIsFavorite(!isFavorite());
    try {
        context.save(OnFailure::Keep);
    } catch (const StoreError& error) {
        AppLogger::general.error("A favourite could not be written: %s", {error.what()});
    }
}

} // namespace ondavia
