#include "personal/FavoritesService.h"

#include "personal/QuietStore.h"

namespace ondavia {
namespace {

Query<Favorite> marksOf(const std::string& profileId, const std::string& channelId) {
    return {.where = field(&Favorite::profileId) == profileId && field(&Favorite::channelId) == channelId};
}

} // namespace

FavoritesService::FavoritesService(StoreContext& modelContext, std::string profileId)
    : m_modelContext(modelContext)
    , m_profileId(std::move(profileId)) {}

bool FavoritesService::isFavorite(const std::string& channelId) {
    return fetchFirstQuietly(m_modelContext, marksOf(m_profileId, channelId)).has_value();
}

bool FavoritesService::toggleFavorite(const std::string& channelId) {
    if (isFavorite(channelId)) {
        removeFavorite(channelId);
        return false;
    }
    m_modelContext.insert(Favorite(m_profileId, channelId));
    saveQuietly(m_modelContext);
    return true;
}

void FavoritesService::removeFavorite(const std::string& channelId) {
    if (const auto mark = fetchFirstQuietly(m_modelContext, marksOf(m_profileId, channelId))) {
        m_modelContext.remove<Favorite>(mark->id);
        saveQuietly(m_modelContext);
    }
}

std::vector<Favorite> FavoritesService::getAllFavorites() {
    return fetchQuietly(m_modelContext, Query<Favorite>{.where = field(&Favorite::profileId) == m_profileId,
                                                        .sort = {descending(&Favorite::addedAt)}});
}

std::vector<Channel> FavoritesService::getFavoriteChannels() {
    std::vector<Channel> channels;
    for (const Favorite& mark : getAllFavorites()) {
        auto channel =
            fetchFirstQuietly(m_modelContext, Query<Channel>{.where = field(&Channel::id) == mark.channelId});
        if (channel) {
            channels.push_back(std::move(*channel));
        }
    }
    return channels;
}

} // namespace ondavia
