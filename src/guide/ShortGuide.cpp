#include "guide/ShortGuide.h"

#include "base/Text.h"
#include "guide/Base64.h"
#include "guide/DatePattern.h"

#include <unordered_set>

namespace ondavia {
namespace {

/// Absent where the text is, or where it is Base64 of something else than UTF-8.
std::optional<std::string> decodedText(const std::optional<std::string>& text) {
    if (!text) {
        return std::nullopt;
    }
    std::optional<std::string> decoded = decodeBase64(*text);
    if (!decoded) {
        return text;
    }
    return isValidUtf8(*decoded) ? std::move(decoded) : std::nullopt;
}

std::optional<EPGProgram> programFromListing(const XtreamEPGListing& listing, const DatePattern& dates,
                                             const std::string& epgChannelId) {
    if (!listing.start || !listing.end) {
        return std::nullopt;
    }
    const auto start = dates.date(*listing.start);
    const auto stop = dates.date(*listing.end);
    if (!start || !stop) {
        return std::nullopt;
    }
    auto title = decodedText(listing.title);
    if (!title || title->empty()) {
        return std::nullopt;
    }
    return EPGProgram{epgChannelId + "_" + *listing.start,
                      epgChannelId,
                      std::move(*title),
                      decodedText(listing.description),
                      *start,
                      *stop,
                      std::nullopt};
}

} // namespace

std::vector<EPGProgram> programsFromListings(std::span<const XtreamEPGListing> listings,
                                             const std::string& epgChannelId) {
    const DatePattern dates("yyyy-MM-dd HH:mm:ss");
    std::vector<EPGProgram> programs;
    std::unordered_set<std::string> ids;
    for (const auto& listing : listings) {
        auto program = programFromListing(listing, dates, epgChannelId);
        if (program && ids.insert(program->id).second) {
            programs.push_back(std::move(*program));
        }
    }
    return programs;
}

} // namespace ondavia
