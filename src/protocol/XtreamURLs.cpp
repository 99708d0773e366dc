#include "protocol/XtreamAPIClient.h"

#include <array>
#include <cstdio>

namespace ondavia {
namespace {

/// `date` in universal time as year-month-day:hour-minute.
std::string catchupStart(Date date) {
    const auto day = std::chrono::floor<std::chrono::days>(date);
    const std::chrono::year_month_day calendar(day);
    const std::chrono::hh_mm_ss clock(std::chrono::floor<std::chrono::minutes>(date - day));
    std::array<char, 64> text{};
    std::snprintf(text.data(), text.size(), "%04d-%02u-%02u:%02d-%02d", static_cast<int>(calendar.year()),
                  static_cast<unsigned>(calendar.month()), static_cast<unsigned>(calendar.day()),
                  static_cast<int>(clock.hours().count()), static_cast<int>(clock.minutes().count()));
    return text.data();
}

} // namespace

std::string XtreamAPIClient::apiURL(std::string_view action) const {
    std::string url = m_baseURL + "/player_api.php?username=" + m_username + "&password=" + m_password;
    if (!action.empty()) {
        url += "&action=";
        url += action;
    }
    return url;
}

std::string XtreamAPIClient::mediaURL(std::string_view kind) const {
    return m_baseURL + std::string(kind) + m_username + '/' + m_password + '/';
}

std::string XtreamAPIClient::getLiveStreamURL(std::int64_t streamId) const {
    return mediaURL("/live/") + std::to_string(streamId) + ".ts";
}

std::string XtreamAPIClient::getMovieStreamURL(std::int64_t streamId, std::string_view extension) const {
    return mediaURL("/movie/") + std::to_string(streamId) + '.' + std::string(extension);
}

std::string XtreamAPIClient::getSeriesStreamURL(std::string_view episodeId,
                                                std::string_view extension) const {
    return mediaURL("/series/") + std::string(episodeId) + '.' + std::string(extension);
}

std::string XtreamAPIClient::getCatchupURL(std::int64_t streamId, Date start,
                                           std::int64_t durationMinutes) const {
    return mediaURL("/timeshift/") + std::to_string(durationMinutes) + '/' + catchupStart(start) + '/' +
           std::to_string(streamId) + ".ts";
}

std::string XtreamAPIClient::getEpgXMLURL() const {
    return m_baseURL + "/xmltv.php?username=" + m_username + "&password=" + m_password;
}

} // namespace ondavia
