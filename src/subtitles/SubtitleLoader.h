#pragma once

#include "platform/URLSession.h"
#include "subtitles/SubtitleTrack.h"

#include <cstddef>
#include <qcoro/qcorotask.h>
#include <stop_token>
#include <string>
#include <vector>

namespace ondavia {

/// Downloads external subtitle files and parses them.
class SubtitleLoader final {
public:
    /// What the files of one load may have in all, in bytes after inflation. Each may have an even share of
    /// it, so that one without an end takes nothing from the others; a longer one is left out.
    static constexpr std::size_t maximumLoad = std::size_t{64} << 20;
    /// The share of each where they are very many, so that those of ordinary length are not left out before
    /// all of them together are too much.
    static constexpr std::size_t minimumShare = std::size_t{1} << 20;
    /// Longest silence of a server, in seconds.
    static constexpr double requestTimeout = 15;
    /// Longest download of one file, in seconds: one that never ends must not keep the others from showing.
    static constexpr double resourceTimeout = 60;

    /// The tracks of those files that have cues, by `displayName`. All are fetched at once, each once. A file
    /// that cannot be had is told to the log and left out; nothing is raised. Awaited on the main thread;
    /// parsing happens on the pool. A requested stop ends the downloads with what they bring next, and what
    /// was loaded is worth nothing then.
    static QCoro::Task<std::vector<SubtitleTrack>>
    loadAll(URLSessionFactory makeSession, std::vector<std::string> urls, std::stop_token stop = {});
};

} // namespace ondavia
