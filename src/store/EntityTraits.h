#pragma once

#include "entities/Channel.h"
#include "entities/EPGProgram.h"
#include "entities/Favorite.h"
#include "entities/Playlist.h"
#include "entities/WatchHistory.h"

#include <array>
#include <chrono>
#include <string_view>
#include <tuple>
#include <type_traits>

namespace ondavia {

/// The kinds of rows that the store keeps.
enum class EntityKind { Channel, Playlist, Favorite, WatchHistory, EPGProgram };

/// The database files. What the user made and what can be downloaded again differ in worth: the user's
/// file is small and fully synchronous, the two others are fast and are thrown away when damaged.
enum class StoreFile { User, Catalogue, Guide };
inline constexpr std::size_t storeFileCount = 3;

/// One member of an entity and the column that holds it.
template<class T, class Member> struct Column final {
    std::string_view name;
    Member T::*member;
};
template<class T, class Member> Column(const char*, Member T::*) -> Column<T, Member>;

/// An index of a table. A partial index is made before the rows: it costs nothing while they lack the
/// column. The others are made after the rows, by sorting.
struct IndexDescription final {
    std::string_view name;
    std::string_view columns;
    /// Empty for an index over all rows.
    std::string_view condition = {};
};

/// How the id of a row is kept unique.
enum class IdRule {
    /// By a unique index.
    Indexed,
    /// By a look-up among the rows of the same channel, for rows inserted one by one. The guide has a
    /// million rows with random ids that nobody looks up, and an index on those would cost more than the
    /// rows themselves. Ids looked up begin with their channel's id, so the channel's index serves them:
    /// a query by id must name the channel too, or it reads the whole table. Rows of a replacement are
    /// taken at their writer's word.
    WithinChannel,
};

/// Where and how the entities of one type are kept: the one description that tables, statements, binding,
/// reading and predicates are derived from.
template<class T> struct EntityTraits;

template<> struct EntityTraits<Channel> final {
    static constexpr EntityKind kind = EntityKind::Channel;
    static constexpr StoreFile file = StoreFile::Catalogue;
    static constexpr std::string_view table = "channel";
    static constexpr IdRule idRule = IdRule::Indexed;
    static constexpr std::tuple columns{
        Column{"id", &Channel::id},
        Column{"playlist_id", &Channel::playlistId},
        Column{"stream_id", &Channel::streamId},
        Column{"num", &Channel::num},
        Column{"name", &Channel::name},
        Column{"type", &Channel::type},
        Column{"group_title", &Channel::groupTitle},
        Column{"logo", &Channel::logo},
        Column{"url", &Channel::url},
        Column{"series_id", &Channel::seriesId},
        Column{"series_name", &Channel::seriesName},
        Column{"season_num", &Channel::seasonNum},
        Column{"episode_num", &Channel::episodeNum},
        Column{"episode_title", &Channel::episodeTitle},
        Column{"plot", &Channel::plot},
        Column{"cast", &Channel::cast},
        Column{"director", &Channel::director},
        Column{"genre", &Channel::genre},
        Column{"rating", &Channel::rating},
        Column{"year", &Channel::year},
        Column{"backdrop", &Channel::backdrop},
        Column{"youtube_trailer", &Channel::youtubeTrailer},
        Column{"release_date", &Channel::releaseDate},
        Column{"duration", &Channel::duration},
        Column{"container_extension", &Channel::containerExtension},
        Column{"adult", &Channel::adult},
        Column{"epg_channel_id", &Channel::epgChannelId},
        Column{"tvg_name", &Channel::tvgName},
        Column{"tvg_chno", &Channel::tvgChno},
        Column{"tv_archive", &Channel::tvArchive},
        Column{"tv_archive_duration", &Channel::tvArchiveDuration},
        Column{"added_at", &Channel::addedAt},
        Column{"last_accessed_at", &Channel::lastAccessedAt},
    };
    static constexpr std::array indexes{
        IndexDescription{"channel_by_group", "type, group_title, num"},
        IndexDescription{"channel_by_num", "type, num"},
        IndexDescription{"channel_by_access", "type, last_accessed_at", "last_accessed_at IS NOT NULL"},
    };
};

/// Programmes longer than this are few. They have an index of their own, so that what is on now on all
/// channels is found among the starts of the last hours.
inline constexpr std::chrono::hours longProgram{3};
inline constexpr std::string_view longProgramCondition = "\"stop\" - \"start\" > 10800000000";

template<> struct EntityTraits<EPGProgram> final {
    static constexpr EntityKind kind = EntityKind::EPGProgram;
    static constexpr StoreFile file = StoreFile::Guide;
    static constexpr std::string_view table = "epg_program";
    static constexpr IdRule idRule = IdRule::WithinChannel;
    static constexpr std::tuple columns{
        Column{"id", &EPGProgram::id},
        Column{"channel_id", &EPGProgram::channelId},
        Column{"title", &EPGProgram::title},
        Column{"desc", &EPGProgram::desc},
        Column{"start", &EPGProgram::start},
        Column{"stop", &EPGProgram::stop},
        Column{"category", &EPGProgram::category},
    };
    static constexpr std::array indexes{
        IndexDescription{"epg_program_by_channel", "channel_id, start, stop"},
        IndexDescription{"epg_program_by_start", "start, stop, channel_id, title"},
        IndexDescription{"epg_program_long", "stop, start, channel_id, title", longProgramCondition},
    };
};

template<> struct EntityTraits<Playlist> final {
    static constexpr EntityKind kind = EntityKind::Playlist;
    static constexpr StoreFile file = StoreFile::User;
    static constexpr std::string_view table = "playlist";
    static constexpr IdRule idRule = IdRule::Indexed;
    static constexpr std::tuple columns{
        Column{"id", &Playlist::id},
        Column{"name", &Playlist::name},
        Column{"type", &Playlist::type},
        Column{"enabled", &Playlist::enabled},
        Column{"profile_id", &Playlist::profileId},
        Column{"channel_count", &Playlist::channelCount},
        Column{"added_at", &Playlist::addedAt},
        Column{"last_updated_at", &Playlist::lastUpdatedAt},
    };
    static constexpr std::array<IndexDescription, 0> indexes{};
};

template<> struct EntityTraits<Favorite> final {
    static constexpr EntityKind kind = EntityKind::Favorite;
    static constexpr StoreFile file = StoreFile::User;
    static constexpr std::string_view table = "favorite";
    static constexpr IdRule idRule = IdRule::Indexed;
    static constexpr std::tuple columns{
        Column{"id", &Favorite::id},
        Column{"profile_id", &Favorite::profileId},
        Column{"channel_id", &Favorite::channelId},
        Column{"added_at", &Favorite::addedAt},
    };
    static constexpr std::array<IndexDescription, 0> indexes{};
};

template<> struct EntityTraits<WatchHistory> final {
    static constexpr EntityKind kind = EntityKind::WatchHistory;
    static constexpr StoreFile file = StoreFile::User;
    static constexpr std::string_view table = "watch_history";
    static constexpr IdRule idRule = IdRule::Indexed;
    static constexpr std::tuple columns{
        Column{"id", &WatchHistory::id},
        Column{"profile_id", &WatchHistory::profileId},
        Column{"channel_id", &WatchHistory::channelId},
        Column{"position", &WatchHistory::position},
        Column{"duration", &WatchHistory::duration},
        Column{"type", &WatchHistory::type},
        Column{"last_watched_at", &WatchHistory::lastWatchedAt},
        Column{"title", &WatchHistory::title},
        Column{"thumbnail_url", &WatchHistory::thumbnailURL},
        Column{"series_id", &WatchHistory::seriesId},
        Column{"is_complete", &WatchHistory::isComplete},
    };
    static constexpr std::array<IndexDescription, 0> indexes{};
};

/// A stored type.
template<class T>
concept Entity = requires {
    EntityTraits<T>::kind;
};

/// A stored type that can be downloaded again, and is replaced as a whole. Each is alone in its file.
template<class T>
concept DownloadedEntity = Entity<T> && EntityTraits<T>::file != StoreFile::User;

/// The column that holds `member`.
template<Entity T, class Member> constexpr std::string_view columnName(Member T::*member) {
    std::string_view name;
    std::apply(
        [&](const auto&... column) {
            const auto compare = [&](const auto& candidate) {
                if constexpr (std::is_same_v<decltype(candidate.member), Member T::*>) {
                    if (candidate.member == member) {
                        name = candidate.name;
                    }
                }
            };
            (compare(column), ...);
        },
        EntityTraits<T>::columns);
    return name;
}

} // namespace ondavia
