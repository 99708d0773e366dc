#pragma once

#include "playback/engine/PublishedStream.h"
#include "playback/engine/SubtitleFile.h"
#include "playback/engine/TrackList.h"

#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace ondavia::engine {

class MpvHandle;

/// The external subtitle files of one film: mpv makes tracks of them, and one shows when it is picked. Over
/// HTTP alone: a provider names them, and must not have a file of this machine's read. Main thread.
class ExternalSubtitles final {
public:
    /// What may come, in bytes after inflation: of all files that are added ahead together, and of each one
    /// that is picked. It stays in memory, where mpv takes up to 25 times as much.
    static constexpr std::int64_t maximumBytes = std::int64_t{8} << 20;
    /// Files that are added ahead. Each is a thread of mpv's while it comes, and a track in each report of
    /// all tracks; those beyond are fetched when they are picked.
    static constexpr std::size_t maximumAhead = 200;

    /// The film is open, before which mpv takes no files: those that were added so far go to it now.
    void begin(std::shared_ptr<MpvHandle> handle);
    /// Ends all transfers.
    void end();

    /// Adds files, each once, without showing one.
    void add(const std::vector<std::string>& urls);
    /// Shows a file as soon as it is there. One that is still on its way, or did not come, is fetched anew.
    void pick(const std::string& url, const TrackList& tracks);
    /// Something else was chosen: what was picked and is still on its way does not show.
    void forgetPick() { m_picked.reset(); }
    /// mpv has these tracks now.
    void follow(const TrackList& tracks);

private:
    void fetch(const std::string& url, const ByteAllowance& allowance);
    /// The track that mpv has made of the file; null until it has.
    [[nodiscard]] const Track* trackOf(const std::string& url, const TrackList& tracks) const;

    /// Null before `begin`.
    std::shared_ptr<MpvHandle> m_handle;
    /// By their own addresses.
    std::map<std::string, std::unique_ptr<PublishedSource>> m_files;
    std::optional<std::string> m_picked;
    /// For those that nobody has picked yet.
    ByteAllowance m_allowance = std::make_shared<std::atomic<std::int64_t>>(maximumBytes);
};

} // namespace ondavia::engine
