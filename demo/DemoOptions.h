#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <string>

namespace ondavia::demo {

enum class MediaWarmUp {
    /// A file is made when it is first asked for.
    onDemand,
    /// All files are made in the background from the start.
    fromStart
};

struct DemoOptions final {
    /// 0 takes a free one. The server only ever listens on 127.0.0.1.
    int port = 0;
    std::string user = "demo";
    std::string password = "demo";
    std::uint64_t seed = 1;
    /// Catalogue rows in all (one ninth live, six ninths films, two ninths series); 0 is the believable
    /// catalogue of about 250 rows.
    std::size_t scale = 0;
    /// Programmes in the XMLTV guide; 0 is the believable guide.
    std::size_t guideProgrammes = 0;
    /// Streams that may be open at once; 0 is no limit.
    int maxConnections = 50;
    /// Where made media stay; empty takes defaultMediaFolder().
    std::filesystem::path mediaFolder = {};
    MediaWarmUp warmUp = MediaWarmUp::onDemand;
};

/// $ONDAVIA_DEMO_MEDIA_DIR, or ondavia-demo under the user's cache folder.
std::filesystem::path defaultMediaFolder();

} // namespace ondavia::demo
