#pragma once

#include "entities/Channel.h"

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace ondavia {

class StoreContext;

/// What the live player keeps of a channel, of which a provider may list tens of thousands.
struct LiveChannel final {
    std::string id;
    std::string playlistId;
    std::int64_t streamId = 0;
    std::int64_t num = 0;
    std::string name;
    std::optional<std::string> logo;
    std::string url;
    std::optional<std::string> epgChannelId;
    bool tvArchive = false;
    std::int64_t tvArchiveDuration = 0;
    bool adult = false;
    Date addedAt{};
    /// Among `LiveChannels::categories`.
    std::size_t category = 0;
};

/// The channels among which the live player zaps, in their order, as the catalogue had them when it was
/// asked: they stay when it changes. Nothing changes after it was made; any thread.
class LiveChannels final {
public:
    struct Category final {
        std::string name;
        /// Of its channels, in their order.
        std::vector<std::size_t> rows;
    };

    LiveChannels() = default;
    /// The live channels of the catalogue, by number. None when they cannot be read.
    [[nodiscard]] static LiveChannels fetch(StoreContext& context);

    [[nodiscard]] std::size_t size() const { return m_channels.size(); }
    [[nodiscard]] bool isEmpty() const { return m_channels.empty(); }
    [[nodiscard]] const LiveChannel& at(std::size_t row) const { return m_channels[row]; }
    /// As the rest of the application knows it.
    [[nodiscard]] Channel channel(std::size_t row) const;

    /// The group titles in the order of their first appearance.
    [[nodiscard]] const std::vector<Category>& categories() const { return m_categories; }
    /// Rows of the channels of a group; none for a group that has none.
    [[nodiscard]] std::span<const std::size_t> inCategory(std::string_view name) const;
    /// The first of that number.
    [[nodiscard]] std::optional<std::size_t> withNumber(std::int64_t num) const;

private:
    std::vector<LiveChannel> m_channels;
    std::vector<Category> m_categories;
};

} // namespace ondavia
