#include "demo/Delivery.h"

#include "demo/JsonWriter.h"

#include <fstream>
#include <iterator>
#include <stdexcept>

namespace ondavia::demo {
namespace {

constexpr const char* jsonType = "application/json";

std::int64_t numberParameter(const httplib::Request& request, const char* name) {
    return number(request.get_param_value(name));
}

std::string login(Service& service, const ActiveFaults& faults) {
    if (faults.has("auth-0")) {
        return Replies::refusal();
    }
    AccountState account{.user = service.options.user,
                         .password = service.options.password,
                         .port = service.port,
                         .openStreams = service.openStreams.count(),
                         .maxConnections = service.options.maxConnections,
                         .expires = unixNow() + 200 * daySeconds};
    if (faults.has("expired")) {
        account.expires = unixNow() - 3 * daySeconds;
    }
    if (faults.has("number-exp-date")) {
        account.expiry = AccountState::Expiry::asNumber;
    }
    return Replies::login(account);
}

/// Servers of this kind answer an unknown series with an empty list.
std::string seriesInfo(const Service& service, const httplib::Request& request, const ActiveFaults& faults) {
    const auto index = service.catalogue.seriesIndex(numberParameter(request, "series_id"));
    if (!index) {
        return "[]";
    }
    // One series always has the list shape, as some servers send it.
    const bool asArray = faults.has("episodes-array") || *index == 7;
    return service.replies.seriesInfo(*index, asArray ? EpisodesShape::array : EpisodesShape::object);
}

std::string listings(const Service& service, const httplib::Request& request, bool shortOnes) {
    const auto index = service.catalogue.channelIndex(numberParameter(request, "stream_id"));
    const UnixTime now = unixNow();
    if (!index) {
        return R"({"epg_listings":[]})";
    }
    if (shortOnes) {
        const std::int64_t limit = numberParameter(request, "limit");
        return service.replies.shortListings(*index, now, limit > 0 ? static_cast<std::size_t>(limit) : 4);
    }
    return service.replies.listings(*index, now - 2 * daySeconds, now + 2 * daySeconds);
}

Body answer(Service& service, const std::string& action, const httplib::Request& request,
            const ActiveFaults& faults) {
    if (const Body list = service.list(action)) {
        return list;
    }
    const auto made = [](std::string text) { return std::make_shared<const std::string>(std::move(text)); };
    if (action == "get_series_info") {
        return made(seriesInfo(service, request, faults));
    }
    if (action == "get_vod_info") {
        const auto index = service.catalogue.filmIndex(numberParameter(request, "vod_id"));
        return made(index ? service.replies.filmInfo(*index) : R"({"info":[]})");
    }
    if (action == "get_simple_data_table" || action == "get_short_epg") {
        return made(listings(service, request, action == "get_short_epg"));
    }
    return made(login(service, faults));
}

void playerApi(Service& service, const httplib::Request& request, httplib::Response& response) {
    const std::string action = request.get_param_value("action");
    Delivery delivery(service, action.empty() ? "login" : action, request, response);
    if (delivery.answeredByFault()) {
        return;
    }
    if (!service.accepts(request.get_param_value("username"), request.get_param_value("password"))) {
        delivery.send(Replies::refusal(), jsonType);
        return;
    }
    delivery.send(answer(service, action, request, delivery.faults()), jsonType);
}

void xmltv(Service& service, const httplib::Request& request, httplib::Response& response) {
    Delivery delivery(service, "xmltv", request, response);
    if (delivery.answeredByFault()) {
        return;
    }
    if (!service.accepts(request.get_param_value("username"), request.get_param_value("password"))) {
        delivery.refuse(403, "refused");
    } else if (service.generatedGuide().empty()) {
        delivery.send(service.guideDocument(), "application/xml");
    } else if (delivery.faults().has("compressed")) {
        std::string text;
        std::ifstream file(service.generatedGuide(), std::ios::binary);
        text.assign(std::istreambuf_iterator<char>(file), {});
        delivery.send(std::move(text), "application/xml");
    } else {
        delivery.sendFile(service.generatedGuide(), "application/xml");
    }
}

/// ?set=NAME[:ACTION][,...] adds faults, ?clear removes all; both in one request: clear first.
void controlFaults(Service& service, const httplib::Request& request, httplib::Response& response) {
    try {
        if (request.has_param("clear")) {
            service.faults.clear();
        }
        service.faults.set(request.get_param_value("set"));
        response.set_content("ok\n", "text/plain");
    } catch (const std::invalid_argument& error) {
        response.status = 400;
        response.set_content(std::string(error.what()) + "\n", "text/plain");
    }
}

} // namespace

void addApiRoutes(httplib::Server& server, Service& service) {
    server.Get("/player_api.php",
               [&](const auto& request, auto& response) { playerApi(service, request, response); });
    server.Get("/xmltv.php", [&](const auto& request, auto& response) { xmltv(service, request, response); });
    const auto control = [&](const auto& request, auto& response) {
        controlFaults(service, request, response);
    };
    server.Post("/control/fault", control);
    server.Get("/control/fault", control);
    server.Get("/api/config", [&](const auto& request, auto& response) {
        Delivery delivery(service, "config", request, response);
        if (!delivery.answeredByFault()) {
            std::string text;
            JsonWriter(text).beginObject().member("tmdb_key", TitleDatabase::key).endObject();
            delivery.send(std::move(text), jsonType);
        }
    });
}

} // namespace ondavia::demo
