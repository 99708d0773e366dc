#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace ondavia {

/// Title and description stand here as they came; the guide decides what they mean.
struct XtreamEPGListing final {
    std::optional<std::string> id;
    std::optional<std::string> title;
    std::optional<std::string> description;
    std::optional<std::string> channelId;
    std::optional<std::string> start;
    std::optional<std::string> end;
    std::optional<std::int64_t> hasArchive;

    bool operator==(const XtreamEPGListing&) const = default;
};

/// Reply of `get_simple_data_table`.
struct XtreamEPGResponse final {
    std::optional<std::vector<XtreamEPGListing>> epgListings;

    bool operator==(const XtreamEPGResponse&) const = default;
};

} // namespace ondavia
