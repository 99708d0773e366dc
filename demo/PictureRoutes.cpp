#include "demo/Delivery.h"

namespace ondavia::demo {
namespace {

using Shape = PictureRequest::Shape;

/// What a provider's picture path shows, or absent for an id that the catalogue does not hold.
std::optional<PictureRequest> providerPicture(const Service& service, const std::string& folder,
                                              std::int64_t id) {
    const auto key = static_cast<std::uint64_t>(id);
    const auto poster = [&](const TitleRecord& title) {
        return PictureRequest{Shape::poster, key, title.title, std::to_string(title.year)};
    };
    if (folder == "logo") {
        const auto index = service.catalogue.channelIndex(id);
        return index ? std::optional(
                           PictureRequest{Shape::logo, key, service.catalogue.channel(*index).name, {}})
                     : std::nullopt;
    }
    if (folder == "film") {
        const auto index = service.catalogue.filmIndex(id);
        return index ? std::optional(poster(service.catalogue.film(*index))) : std::nullopt;
    }
    if (folder == "series") {
        const auto index = service.catalogue.seriesIndex(id);
        return index ? std::optional(poster(service.catalogue.series(*index))) : std::nullopt;
    }
    return PictureRequest{folder == "still" ? Shape::still : Shape::backdrop, key, {}, {}};
}

/// What a path of the title database shows, such as "/m700003.jpg" or "/p12.jpg".
std::optional<PictureRequest> databasePicture(const Service& service, const std::string& width,
                                              const std::string& path) {
    if (path.starts_with("/p")) {
        return PictureRequest{Shape::portrait, static_cast<std::uint64_t>(number(path.substr(2))), {}, {}};
    }
    const auto artwork = service.titles.artwork(path);
    if (!artwork) {
        return std::nullopt;
    }
    const bool backdrop = width == "w780" || width == "w1280" || width == "original";
    return PictureRequest{backdrop ? Shape::backdrop : Shape::poster, static_cast<std::uint64_t>(artwork->id),
                          artwork->title, artwork->kind == TitleDatabase::Kind::film ? "Filme" : "Série"};
}

void sendPicture(Service& service, Delivery& delivery, const std::optional<PictureRequest>& picture) {
    if (!picture) {
        delivery.refuse(404, "no such picture");
        return;
    }
    delivery.send(service.pictures.get(*picture), picture->shape == Shape::logo ? "image/png" : "image/jpeg");
}

void titleList(Service& service, const httplib::Request& request, httplib::Response& response) {
    Delivery delivery(service, "titles", request, response);
    if (delivery.answeredByFault()) {
        return;
    }
    if (request.get_param_value("api_key") != TitleDatabase::key) {
        response.status = 401;
        response.set_content(R"({"success":false,"status_code":7})", "application/json");
        return;
    }
    const auto kind = request.matches[1] == "movie" ? TitleDatabase::Kind::film : TitleDatabase::Kind::series;
    const std::string which = request.matches[2];
    if (which == "popular") {
        const bool english = request.get_param_value("language").starts_with("en");
        delivery.send(service.titles.popular(kind, english ? TitleDatabase::Language::english
                                                           : TitleDatabase::Language::portuguese),
                      "application/json");
    } else if (auto details = service.titles.details(kind, number(which))) {
        delivery.send(std::move(*details), "application/json");
    } else {
        delivery.refuse(404, R"({"success":false,"status_code":34})");
    }
}

} // namespace

void addPictureRoutes(httplib::Server& server, Service& service) {
    server.Get(R"(/pictures/(logo|film|series|backdrop|still)/(\d+)\.(?:png|jpg))",
               [&](const httplib::Request& request, httplib::Response& response) {
                   Delivery delivery(service, "pictures", request, response);
                   if (!delivery.answeredByFault()) {
                       sendPicture(service, delivery,
                                   providerPicture(service, request.matches[1], number(request.matches[2])));
                   }
               });
    server.Get(R"(/t/p/(\w+)(/\w+\.jpg))", [&](const httplib::Request& request, httplib::Response& response) {
        Delivery delivery(service, "images", request, response);
        if (!delivery.answeredByFault()) {
            sendPicture(service, delivery, databasePicture(service, request.matches[1], request.matches[2]));
        }
    });
    server.Get(R"(/3/(movie|tv)/(popular|\d+))",
               [&](const auto& request, auto& response) { titleList(service, request, response); });
}

} // namespace ondavia::demo
