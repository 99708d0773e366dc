#pragma once

#include "demo/Catalogue.h"
#include "demo/Guide.h"

#include <string>

namespace ondavia::demo {

enum class EpisodesShape { object, array };

/// What a log-in tells about the account.
struct AccountState final {
    std::string user;
    std::string password;
    int port = 0;
    int openStreams = 0;
    int maxConnections = 0;
    /// Absent for no expiry.
    std::optional<UnixTime> expires;
    enum class Expiry { asText, asNumber } expiry = Expiry::asText;
};

/// The bodies of player_api.php. Written against the protocol; knows nothing of any client.
/// May be used from any thread.
class Replies final {
public:
    Replies(const Catalogue& catalogue, const Guide& guide, std::string baseUrl)
        : m_catalogue(catalogue)
        , m_guide(guide)
        , m_baseUrl(std::move(baseUrl)) {}

    [[nodiscard]] static std::string login(const AccountState& account);
    [[nodiscard]] static std::string refusal();
    [[nodiscard]] static std::string categories(std::span<const CategoryRow> rows);
    [[nodiscard]] std::string liveStreams() const;
    [[nodiscard]] std::string films() const;
    [[nodiscard]] std::string series() const;
    [[nodiscard]] std::string seriesInfo(std::size_t index, EpisodesShape shape) const;
    [[nodiscard]] std::string filmInfo(std::size_t index) const;
    /// Listings of one channel that touch the span.
    [[nodiscard]] std::string listings(std::size_t channelIndex, UnixTime from, UnixTime until) const;
    /// At most `limit` listings from `now` on.
    [[nodiscard]] std::string shortListings(std::size_t channelIndex, UnixTime now, std::size_t limit) const;

private:
    [[nodiscard]] std::string pictureUrl(Picture picture, std::string_view path, std::int64_t id) const;
    [[nodiscard]] std::string listingsOf(const ChannelRecord& channel,
                                         std::span<const Programme> programmes) const;

    const Catalogue& m_catalogue;
    const Guide& m_guide;
    std::string m_baseUrl;
};

} // namespace ondavia::demo
