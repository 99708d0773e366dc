#pragma once

#include "demo/BodyFaults.h"
#include "demo/Catalogue.h"
#include "demo/DemoOptions.h"
#include "demo/Faults.h"
#include "demo/Guide.h"
#include "demo/MediaFactory.h"
#include "demo/OpenStreams.h"
#include "demo/Pictures.h"
#include "demo/Replies.h"
#include "demo/TitleDatabase.h"

#include <httplib.h>

#include <charconv>
#include <cstdint>
#include <memory>
#include <mutex>
#include <stop_token>
#include <string>

namespace ondavia::demo {

/// The number that a part of an address starts with, or -1.
inline std::int64_t number(const std::string& text) {
    std::int64_t value = -1;
    std::from_chars(text.data(), text.data() + text.size(), value);
    return value;
}

/// Everything that the routes answer from. Lives as long as the server; used by all its threads.
class Service final {
public:
    /// Renders the catalogue's lists at once, so that serving them costs nothing but the sending.
    Service(const DemoOptions& options, int port, Faults& faults, MediaFactory& media, Pictures& pictures);

    const DemoOptions options;
    const int port;
    const std::string baseUrl;
    const Catalogue catalogue;
    const Guide guide;
    const Replies replies;
    const TitleDatabase titles;
    Faults& faults;
    MediaFactory& media;
    Pictures& pictures;
    std::stop_source stopping;
    OpenStreams openStreams;

    /// The pre-rendered list of a catalogue action; null for any other.
    [[nodiscard]] Body list(std::string_view action) const;
    /// The believable guide, no older than an hour.
    [[nodiscard]] Body guideDocument();
    /// The generated guide's file, made at construction; empty without one.
    [[nodiscard]] const std::filesystem::path& generatedGuide() const { return m_generatedGuide; }

    [[nodiscard]] bool accepts(const std::string& user, const std::string& password) const {
        return user == options.user && password == options.password;
    }

private:
    void makeGeneratedGuide();

    Body m_live;
    Body m_films;
    Body m_series;
    std::filesystem::path m_generatedGuide;
    std::mutex m_mutex;
    Body m_guide;
    UnixTime m_guideMade = 0;
};

void addApiRoutes(httplib::Server& server, Service& service);
void addMediaRoutes(httplib::Server& server, Service& service);
void addPictureRoutes(httplib::Server& server, Service& service);

} // namespace ondavia::demo
