#include "demo/Delivery.h"

#include "demo/SubtitleText.h"

#include <algorithm>
#include <chrono>
#include <stdexcept>

namespace ondavia::demo {
namespace {

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

constexpr const char* streamType = "video/mp2t";
/// What a viewer gets at once, so that switching channels is quick.
constexpr double burstSeconds = 3.0;
constexpr std::size_t packetsAtOnce = 160;
constexpr std::uint64_t longestRecording = 24 * 60;

/// One viewer of one channel.
class LiveSession final {
public:
    LiveSession(std::shared_ptr<const TransportLoop> loop, std::shared_ptr<void> ticket,
                const ActiveFaults& faults, std::stop_token stop)
        : m_loop(std::move(loop))
        , m_ticket(std::move(ticket))
        , m_stop(std::move(stop))
        , m_pace(faults.has("slow-body") ? 0.5 : 1.0)
        , m_ends(faults.has("cut-connection") || faults.has("truncated-body")) {
        // All viewers of a channel see the same moment of it.
        const double wallClock =
            std::chrono::duration<double>(std::chrono::system_clock::now().time_since_epoch()).count();
        m_next = m_first = m_loop->keyPacket(wallClock);
    }

    /// Sends what is due. False ends the stream.
    bool send(httplib::DataSink& sink) {
        std::string bytes;
        if (m_next == m_first) {
            m_loop->appendTables(bytes);
        }
        const double elapsed = std::chrono::duration<double>(Clock::now() - m_start).count();
        const double due = m_loop->dueTime(m_first) + burstSeconds + elapsed * m_pace;
        std::size_t count = 0;
        while (count < packetsAtOnce && m_loop->dueTime(m_next + count) <= due) {
            ++count;
        }
        if (count == 0) {
            interruptibleSleep(20ms, m_stop);
            return !m_stop.stop_requested();
        }
        m_loop->append(bytes, m_next, count);
        m_next += count;
        const bool over = m_ends && elapsed > 2.0;
        return !over && !m_stop.stop_requested() && sink.write(bytes.data(), bytes.size());
    }

private:
    std::shared_ptr<const TransportLoop> m_loop;
    std::shared_ptr<void> m_ticket;
    std::stop_token m_stop;
    double m_pace;
    bool m_ends;
    std::uint64_t m_first = 0;
    std::uint64_t m_next = 0;
    Clock::time_point m_start = Clock::now();
};

/// Checks that every media route shares. Null: the request is answered.
std::shared_ptr<void> admit(Service& service, Delivery& delivery, const httplib::Request& request) {
    if (delivery.answeredByFault()) {
        return nullptr;
    }
    const int limit = service.options.maxConnections;
    auto ticket = service.openStreams.open(service.port, request.remote_port, request.path);
    if (!service.accepts(request.matches[1], request.matches[2]) ||
        (limit > 0 && service.openStreams.count() > limit)) {
        delivery.refuse(403, "refused");
        return nullptr;
    }
    return ticket;
}

void live(Service& service, const httplib::Request& request, httplib::Response& response) {
    Delivery delivery(service, "live", request, response);
    auto ticket = admit(service, delivery, request);
    if (!ticket) {
        return;
    }
    const auto index = service.catalogue.channelIndex(number(request.matches[3]));
    if (!index) {
        delivery.refuse(404, "no such channel");
        return;
    }
    const auto session = std::make_shared<LiveSession>(service.media.loop(*index), std::move(ticket),
                                                       delivery.faults(), service.stopping.get_token());
    // A player that asks for a range of an endless stream gets the stream.
    response.status = 200;
    response.set_content_provider(
        streamType, [session](std::size_t, httplib::DataSink& sink) { return session->send(sink); });
}

void film(Service& service, const httplib::Request& request, httplib::Response& response) {
    Delivery delivery(service, "movie", request, response);
    const auto ticket = admit(service, delivery, request);
    if (!ticket) {
        return;
    }
    const auto index = service.catalogue.filmIndex(number(request.matches[3]));
    if (!index) {
        delivery.refuse(404, "no such film");
        return;
    }
    const bool isLong = number(request.matches[3]) == Catalogue::longFilmId;
    const std::string extension = isLong ? "mp4" : request.matches[4].str();
    delivery.sendFile(isLong ? service.media.longFilm() : service.media.film(*index, extension),
                      extension == "mkv" ? "video/x-matroska" : "video/mp4", ticket);
}

void episode(Service& service, const httplib::Request& request, httplib::Response& response) {
    Delivery delivery(service, "series", request, response);
    const auto ticket = admit(service, delivery, request);
    if (!ticket) {
        return;
    }
    if (service.catalogue.seriesOfEpisode(request.matches[3])) {
        delivery.sendFile(service.media.episode(Catalogue::episodeNumber(number(request.matches[3]))),
                          "video/mp4", ticket);
    } else {
        delivery.refuse(404, "no such episode");
    }
}

/// A recording is the channel's loop, repeated for the minutes asked for, readable at any place.
void timeshift(Service& service, const httplib::Request& request, httplib::Response& response) {
    Delivery delivery(service, "timeshift", request, response);
    const auto ticket = admit(service, delivery, request);
    if (!ticket) {
        return;
    }
    const auto index = service.catalogue.channelIndex(number(request.matches[5]));
    const auto minutes = static_cast<std::uint64_t>(number(request.matches[3]));
    if (!index || service.catalogue.channel(*index).archiveDays == 0 || minutes == 0 ||
        minutes > longestRecording) {
        delivery.refuse(404, "no such recording");
        return;
    }
    const auto loop = service.media.loop(*index);
    const auto rounds = static_cast<std::uint64_t>(static_cast<double>(minutes * 60) / loop->seconds()) + 1;
    delivery.sendReadable(rounds * loop->packets() * TransportLoop::packetSize, streamType,
                          [loop, ticket](std::string& out, std::uint64_t offset, std::size_t atMost) {
                              const std::uint64_t first = offset / TransportLoop::packetSize;
                              const std::uint64_t last = (offset + atMost - 1) / TransportLoop::packetSize;
                              std::string packets;
                              loop->append(packets, first, last - first + 1);
                              out.append(packets, offset - first * TransportLoop::packetSize, atMost);
                          });
}

void subtitles(Service& service, const httplib::Request& request, httplib::Response& response) {
    Delivery delivery(service, "subtitles", request, response);
    if (delivery.answeredByFault()) {
        return;
    }
    const bool portuguese = request.matches[2] == "por";
    const bool srt = request.matches[3] == "srt";
    const bool isLong = number(request.matches[1]) == Catalogue::longFilmId;
    delivery.send(subtitleText(srt ? SubtitleFormat::srt : SubtitleFormat::webVtt,
                               portuguese ? SubtitleLanguage::portuguese : SubtitleLanguage::english,
                               isLong ? MediaFactory::longFilmSeconds : MediaFactory::filmSeconds),
                  srt ? "application/x-subrip" : "text/vtt");
}

/// Media that cannot be made are the server's trouble, not the end of it.
template<typename Handler> auto guarded(Service& service, Handler handler) {
    return [&service, handler](const httplib::Request& request, httplib::Response& response) {
        try {
            handler(service, request, response);
        } catch (const std::runtime_error& error) {
            response.status = 503;
            response.set_content(std::string(error.what()) + "\n", "text/plain");
        }
    };
}

} // namespace

void addMediaRoutes(httplib::Server& server, Service& service) {
    server.Get(R"(/live/([^/]+)/([^/]+)/(\d+)\.ts)", guarded(service, live));
    server.Get(R"(/movie/([^/]+)/([^/]+)/(\d+)\.(mp4|mkv))", guarded(service, film));
    server.Get(R"(/series/([^/]+)/([^/]+)/(\d+)\.mp4)", guarded(service, episode));
    server.Get(R"(/timeshift/([^/]+)/([^/]+)/(\d+)/([^/]+)/(\d+)\.ts)", guarded(service, timeshift));
    server.Get(R"(/subtitles/(\d+)\.(por|eng)\.(srt|vtt))", guarded(service, subtitles));
}

} // namespace ondavia::demo
