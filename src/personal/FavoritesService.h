#pragma once

#include "entities/Channel.h"
#include "entities/Favorite.h"
#include "personal/Profile.h"

#include <string>
#include <vector>

namespace ondavia {

class StoreContext;

/// What the user has marked. A favourite names its item by value: one that has left the catalogue keeps its
/// mark, and has it again when it comes back. Cheap: made where it is needed.
///
/// On the context's thread. Nothing is raised: what cannot be read is absent, and what cannot be written goes
/// along with the context's next save.
class FavoritesService final {
public:
    /// `modelContext` outlives the object.
    FavoritesService(StoreContext& modelContext, std::string profileId);

    [[nodiscard]] bool isFavorite(const std::string& channelId);
    /// Yields what is to hold from now on, whether or not it could be written.
    bool toggleFavorite(const std::string& channelId);
    void removeFavorite(const std::string& channelId);
    /// The latest first, those whose items have left the catalogue included.
    [[nodiscard]] std::vector<Favorite> getAllFavorites();
    /// The items that are in the catalogue, in the same order.
    [[nodiscard]] std::vector<Channel> getFavoriteChannels();

private:
    StoreContext& m_modelContext;
    std::string m_profileId;
};

} // namespace ondavia
