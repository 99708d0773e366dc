#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace ondavia {

/// One place of a movie's detail record that lists subtitle files.
struct SubtitleListing final {
    /// Such as "info.subtitles".
    std::string_view place;
    std::size_t elementCount = 0;
    /// What the elements name as their files, in their order and as it stands there; elements that name none
    /// are left out. No more than `maximumReplyElements`.
    std::vector<std::string> files;
};

/// What a movie's detail record says of subtitle files: providers agree neither on the place nor on the form.
struct SubtitleListings final {
    /// The places where a list stands that is not empty, in the order in which they are to be tried.
    std::vector<SubtitleListing> lists;

    // What there is instead, in words for a log: secrets masked, of bounded length.
    std::string rootKeys;
    /// Absent where `info` is no object.
    std::optional<std::string> infoKeys;
    /// Absent where `info` says nothing of subtitles.
    std::optional<std::string> infoSubtitlesType;
};

/// Absent where `json` is no JSON object, nested too deeply, or not UTF-8. Of a key that occurs twice the
/// last value counts. Any thread.
[[nodiscard]] std::optional<SubtitleListings> readSubtitleListings(std::string_view json);

} // namespace ondavia
