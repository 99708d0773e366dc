#pragma once

#include "store/LibraryStore.h"
#include "support/TestSupport.h"

#include <SQLiteCpp/Database.h>

#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

namespace ondavia::testing {

/// A moment with microseconds, so that a store that rounds is found out.
inline constexpr Date sampleDate{std::chrono::microseconds{1'700'000'000'123'457}};

inline Channel makeChannel(std::int64_t number, const std::string& type = "movie",
                           const std::string& group = "Drama") {
    Channel channel;
    channel.id = "main_" + std::to_string(number);
    channel.playlistId = "main";
    channel.streamId = number;
    channel.num = number;
    channel.name = "Item " + std::to_string(number);
    channel.type = type;
    channel.groupTitle = group;
    channel.url = "http://provider.test/movie/user/pass/" + std::to_string(number) + ".mp4";
    channel.addedAt = sampleDate;
    return channel;
}

inline std::vector<Channel> makeChannels(std::int64_t first, std::int64_t count,
                                         const std::string& group = "Drama") {
    std::vector<Channel> channels;
    for (std::int64_t number = first; number < first + count; ++number) {
        channels.push_back(makeChannel(number, "movie", group));
    }
    return channels;
}

inline Channel makeFullChannel() {
    Channel channel = makeChannel(77, "series", "Séries \"A\" & 'B'");
    channel.streamId = std::numeric_limits<std::int64_t>::min();
    channel.num = std::numeric_limits<std::int64_t>::max();
    channel.logo = "http://images.test/l.png";
    channel.seriesId = 77;
    channel.seriesName = "Nome";
    channel.seasonNum = 2;
    channel.episodeNum = 3;
    channel.episodeTitle = "";
    channel.plot = std::string("nul\0inside", 10);
    channel.cast = "cast";
    channel.director = "director";
    channel.genre = "genre";
    channel.rating = "7.5";
    channel.year = "2020";
    channel.backdrop = "backdrop";
    channel.youtubeTrailer = "trailer";
    channel.releaseDate = "2020-01-02";
    channel.duration = "1h 05m";
    channel.containerExtension = "mkv";
    channel.adult = true;
    channel.epgChannelId = "epg.id";
    channel.tvgName = "tvg";
    channel.tvgChno = "5";
    channel.tvArchive = true;
    channel.tvArchiveDuration = 7;
    channel.lastAccessedAt = sampleDate + std::chrono::microseconds(1);
    return channel;
}

inline EPGProgram makeProgram(const std::string& channelId, std::int64_t startMinute,
                              const std::string& id = {}) {
    EPGProgram program;
    program.id = id.empty() ? channelId + "_" + std::to_string(startMinute) : id;
    program.channelId = channelId;
    program.title = "Programa " + std::to_string(startMinute);
    program.start = sampleDate + std::chrono::minutes(startMinute);
    program.stop = program.start + std::chrono::minutes(30);
    return program;
}

template<class T> void insertAndSave(StoreContext& context, const std::vector<T>& rows) {
    for (const T& row : rows) {
        context.insert(row);
    }
    context.save();
}

/// Replaces all rows of a kind by `rows`.
template<class T> void replaceAll(LibraryStore& store, const std::vector<T>& rows) {
    Replacement<T> replacement = store.beginReplacement<T>();
    replacement.append(0, rows);
    replacement.commit();
}

/// Runs SQL on a file behind the store's back.
inline void executeRaw(const std::filesystem::path& file, const std::string& sql) {
    SQLite::Database(file, SQLite::OPEN_READWRITE | SQLite::OPEN_CREATE, 5000).exec(sql);
}

/// Overwrites bytes of a file.
inline void scribble(const std::filesystem::path& file, std::int64_t offset, std::size_t count) {
    std::fstream stream(file, std::ios::in | std::ios::out | std::ios::binary);
    stream.seekp(offset);
    stream << std::string(count, '\xAB');
}

/// What a crash would leave of the store in `from`, in a new folder. A backup that is being made meanwhile
/// may have gone, or be there in part.
inline void copyStore(const std::filesystem::path& from, const std::filesystem::path& to) {
    std::filesystem::create_directory(to);
    for (const auto& entry : std::filesystem::directory_iterator(from)) {
        if (!entry.is_directory()) {
            std::error_code error;
            std::filesystem::copy(entry.path(), to / entry.path().filename(),
                                  std::filesystem::copy_options::copy_symlinks, error);
            if (error && error != std::errc::no_such_file_or_directory) {
                throw std::filesystem::filesystem_error("copyStore", entry.path(), error);
            }
        }
    }
}

/// The files of a folder whose names begin with `prefix`.
inline std::vector<std::string> filesWithPrefix(const std::filesystem::path& folder,
                                                const std::string& prefix) {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(folder)) {
        const std::string name = entry.path().filename().string();
        if (name.starts_with(prefix)) {
            names.push_back(name);
        }
    }
    return names;
}

} // namespace ondavia::testing
