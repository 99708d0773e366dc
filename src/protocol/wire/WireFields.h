#pragma once

#include "protocol/wire/AccountRecords.h"
#include "protocol/wire/CatalogueRecords.h"
#include "protocol/wire/GuideRecords.h"
#include "protocol/wire/SeriesRecords.h"

#include <cstddef>
#include <string_view>
#include <tuple>
#include <vector>

/// The one table of each wire record: its keys and members, for decoding and encoding alike. Keys stand
/// in the order in which servers send them.
namespace ondavia::wire {

template<class Record, class Member> struct Field final {
    std::string_view key;
    Member Record::*member;
};

template<class Record, class Member>
constexpr Field<Record, Member> field(std::string_view key, Member Record::*member) {
    return {key, member};
}

/// Specialised with a tuple `fields` for each record.
template<class Record> struct Wire;

template<> struct Wire<XtreamUserInfo> {
    using R = XtreamUserInfo;
    static constexpr std::tuple fields{
        field("username", &R::username),
        field("password", &R::password),
        field("message", &R::message),
        field("auth", &R::auth),
        field("status", &R::status),
        field("exp_date", &R::expDate),
        field("is_trial", &R::isTrial),
        field("active_cons", &R::activeCons),
        field("created_at", &R::createdAt),
        field("max_connections", &R::maxConnections),
        field("allowed_output_formats", &R::allowedOutputFormats),
    };
};

template<> struct Wire<XtreamServerInfo> {
    using R = XtreamServerInfo;
    static constexpr std::tuple fields{
        field("url", &R::url),
        field("port", &R::port),
        field("https_port", &R::httpsPort),
        field("server_protocol", &R::serverProtocol),
        field("rtmp_port", &R::rtmpPort),
        field("timezone", &R::timezone),
        field("timestamp_now", &R::timestampNow),
        field("time_now", &R::timeNow),
    };
};

template<> struct Wire<XtreamAuthResponse> {
    using R = XtreamAuthResponse;
    static constexpr std::tuple fields{
        field("user_info", &R::userInfo),
        field("server_info", &R::serverInfo),
    };
};

template<> struct Wire<XtreamCategory> {
    using R = XtreamCategory;
    static constexpr std::tuple fields{
        field("category_id", &R::categoryId),
        field("category_name", &R::categoryName),
        field("parent_id", &R::parentId),
    };
};

template<> struct Wire<XtreamLiveStream> {
    using R = XtreamLiveStream;
    static constexpr std::tuple fields{
        field("num", &R::num),
        field("name", &R::name),
        field("stream_type", &R::streamType),
        field("stream_id", &R::streamId),
        field("stream_icon", &R::streamIcon),
        field("epg_channel_id", &R::epgChannelId),
        field("added", &R::added),
        field("is_adult", &R::isAdult),
        field("category_id", &R::categoryId),
        field("category_ids", &R::categoryIds),
        field("tv_archive", &R::tvArchive),
        field("direct_source", &R::directSource),
        field("tv_archive_duration", &R::tvArchiveDuration),
    };
};

template<> struct Wire<XtreamVodStream> {
    using R = XtreamVodStream;
    static constexpr std::tuple fields{
        field("num", &R::num),
        field("name", &R::name),
        field("stream_type", &R::streamType),
        field("stream_id", &R::streamId),
        field("stream_icon", &R::streamIcon),
        field("rating", &R::_rating),
        field("rating_5based", &R::_ratingFive),
        field("added", &R::added),
        field("is_adult", &R::isAdult),
        field("category_id", &R::categoryId),
        field("category_ids", &R::categoryIds),
        field("container_extension", &R::containerExtension),
        field("direct_source", &R::directSource),
        field("plot", &R::plot),
        field("cast", &R::cast),
        field("director", &R::director),
        field("genre", &R::genre),
        field("year", &R::_year),
        field("release_date", &R::_releaseDate),
        field("youtube_trailer", &R::_youtubeTrailer),
        field("episode_run_time", &R::_episodeRunTime),
    };
};

template<> struct Wire<XtreamSeriesItem> {
    using R = XtreamSeriesItem;
    static constexpr std::tuple fields{
        field("num", &R::num),
        field("name", &R::name),
        field("series_id", &R::seriesId),
        field("cover", &R::cover),
        field("plot", &R::plot),
        field("cast", &R::cast),
        field("director", &R::director),
        field("genre", &R::genre),
        field("releaseDate", &R::releaseDate),
        field("last_modified", &R::lastModified),
        field("rating", &R::_rating),
        field("rating_5based", &R::_ratingFive),
        field("backdrop_path", &R::backdropPath),
        field("youtube_trailer", &R::youtubeTrailer),
        field("category_id", &R::categoryId),
        field("category_ids", &R::categoryIds),
    };
};

template<> struct Wire<XtreamSeriesDetail> {
    using R = XtreamSeriesDetail;
    static constexpr std::tuple fields{
        field("name", &R::name),
        field("cover", &R::cover),
        field("plot", &R::plot),
        field("cast", &R::cast),
        field("director", &R::director),
        field("genre", &R::genre),
        field("releaseDate", &R::releaseDate),
        field("rating", &R::rating),
        field("backdrop_path", &R::backdropPath),
        field("youtube_trailer", &R::youtubeTrailer),
    };
};

template<> struct Wire<XtreamSeason> {
    using R = XtreamSeason;
    static constexpr std::tuple fields{
        field("air_date", &R::airDate),
        field("episode_count", &R::episodeCount),
        field("id", &R::id),
        field("name", &R::name),
        field("overview", &R::overview),
        field("season_number", &R::seasonNumber),
        field("cover", &R::cover),
        field("cover_big", &R::coverBig),
    };
};

template<> struct Wire<XtreamEpisodeInfo> {
    using R = XtreamEpisodeInfo;
    static constexpr std::tuple fields{
        field("movie_image", &R::movieImage),  field("plot", &R::plot),
        field("releasedate", &R::releaseDate), field("rating", &R::_rating),
        field("duration", &R::duration),       field("duration_secs", &R::durationSecs),
        field("bitrate", &R::bitrate),         field("cover_big", &R::coverBig),
    };
};

template<> struct Wire<XtreamEpisode> {
    using R = XtreamEpisode;
    static constexpr std::tuple fields{
        field("id", &R::id),         field("episode_num", &R::_episodeNum),
        field("title", &R::title),   field("container_extension", &R::containerExtension),
        field("info", &R::info),     field("subtitles", &R::subtitles),
        field("season", &R::season),
    };
};

template<> struct Wire<XtreamSeriesInfo> {
    using R = XtreamSeriesInfo;
    static constexpr std::tuple fields{
        field("seasons", &R::seasons),
        field("info", &R::info),
        field("episodes", &R::episodes),
    };
};

template<> struct Wire<XtreamEPGListing> {
    using R = XtreamEPGListing;
    static constexpr std::tuple fields{
        field("id", &R::id),
        field("title", &R::title),
        field("description", &R::description),
        field("channel_id", &R::channelId),
        field("start", &R::start),
        field("end", &R::end),
        field("has_archive", &R::hasArchive),
    };
};

template<> struct Wire<XtreamEPGResponse> {
    using R = XtreamEPGResponse;
    static constexpr std::tuple fields{
        field("epg_listings", &R::epgListings),
    };
};

template<class T>
concept WireRecord = requires {
    Wire<T>::fields;
};

/// Every type that travels as one reply.
#define ONDAVIA_FOR_EACH_REPLY(INSTANTIATE)                                                                  \
    INSTANTIATE(XtreamAuthResponse)                                                                          \
    INSTANTIATE(XtreamSeriesInfo)                                                                            \
    INSTANTIATE(XtreamEPGResponse)                                                                           \
    INSTANTIATE(std::vector<XtreamCategory>)                                                                 \
    INSTANTIATE(std::vector<XtreamLiveStream>)                                                               \
    INSTANTIATE(std::vector<XtreamVodStream>)                                                                \
    INSTANTIATE(std::vector<XtreamSeriesItem>)

} // namespace ondavia::wire
