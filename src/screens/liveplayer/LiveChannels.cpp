#include "screens/liveplayer/LiveChannels.h"

#include "base/AppLogger.h"
#include "store/StoreContext.h"

#include <algorithm>
#include <unordered_map>

namespace ondavia {

LiveChannels LiveChannels::fetch(StoreContext& context) {
    LiveChannels channels;
    try {
        auto rows = context.fetchMembers<Channel>(
            {.where = field(&Channel::type) == "live", .sort = {ascending(&Channel::num)}},
            &Channel::groupTitle, &Channel::id, &Channel::playlistId, &Channel::streamId, &Channel::num,
            &Channel::name, &Channel::logo, &Channel::url, &Channel::epgChannelId, &Channel::tvArchive,
            &Channel::tvArchiveDuration, &Channel::adult, &Channel::addedAt);
        std::unordered_map<std::string, std::size_t> places;
        channels.m_channels.reserve(rows.size());
        for (auto& row : rows) {
            auto& [groupTitle, id, playlistId, streamId, num, name, logo, url, epgChannelId, tvArchive,
                   tvArchiveDuration, adult, addedAt] = row.members;
            const auto [place, isNew] = places.try_emplace(groupTitle, channels.m_categories.size());
            if (isNew) {
                channels.m_categories.push_back({std::move(groupTitle), {}});
            }
            channels.m_categories[place->second].rows.push_back(channels.m_channels.size());
            channels.m_channels.push_back({std::move(id), std::move(playlistId), streamId, num,
                                           std::move(name), std::move(logo), std::move(url),
                                           std::move(epgChannelId), tvArchive, tvArchiveDuration, adult,
                                           addedAt, place->second});
        }
    } catch (const StoreError& error) {
        AppLogger::general.error("The channels could not be read: %s", {error.what()});
        return {};
    }
    return channels;
}

Channel LiveChannels::channel(std::size_t row) const {
    const LiveChannel& kept = at(row);
    Channel channel;
    channel.id = kept.id;
    channel.playlistId = kept.playlistId;
    channel.streamId = kept.streamId;
    channel.num = kept.num;
    channel.name = kept.name;
    channel.type = "live";
    channel.groupTitle = m_categories[kept.category].name;
    channel.logo = kept.logo;
    channel.url = kept.url;
    channel.epgChannelId = kept.epgChannelId;
    channel.tvArchive = kept.tvArchive;
    channel.tvArchiveDuration = kept.tvArchiveDuration;
    channel.adult = kept.adult;
    channel.addedAt = kept.addedAt;
    return channel;
}

std::span<const std::size_t> LiveChannels::inCategory(std::string_view name) const {
    const auto found = std::ranges::find(m_categories, name, &Category::name);
    return found != m_categories.end() ? std::span<const std::size_t>(found->rows)
                                       : std::span<const std::size_t>();
}

std::optional<std::size_t> LiveChannels::withNumber(std::int64_t num) const {
    const auto found = std::ranges::find(m_channels, num, &LiveChannel::num);
    return found != m_channels.end() ? std::optional(static_cast<std::size_t>(found - m_channels.begin()))
                                     : std::nullopt;
}

} // namespace ondavia
