#include "demo/Faults.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <stdexcept>

namespace ondavia::demo {
namespace {

constexpr std::string_view failFirst = "fail-first-";
constexpr std::string_view statusPrefix = "status-";

constexpr auto faultTable = std::to_array<FaultDescription>({
    {"status-401", "answers 401"},
    {"status-403", "answers 403"},
    {"status-404", "answers 404"},
    {"status-500", "answers 500"},
    {"status-503", "answers 503"},
    {"fail-first-N", "the first N requests answer 503, later ones work"},
    {"html-200", "an HTML error page with status 200"},
    {"empty-list", "the body []"},
    {"empty-body", "no body at all"},
    {"null-body", "the body null"},
    {"truncated-body", "half the body, with a matching Content-Length; streams end after two seconds' worth"},
    {"cut-connection", "the full Content-Length, and the connection closes half-way; streams break off"},
    {"slow-first-byte", "the reply starts after 3 seconds"},
    {"slow-body", "the body comes in 40 pieces, 100 ms apart; live streams at half the pace"},
    {"never-answers", "no byte until the faults change"},
    {"redirect", "one 302 to the same place"},
    {"endless-redirect", "a 302 to itself, for ever"},
    {"compressed", "the body gzipped, with Content-Encoding"},
    {"gzip-bomb", "4 MB that unpack to 4 GB of blanks in a JSON list"},
    {"endless-body", "a JSON list that never ends"},
    {"huge-body", "a JSON list of 2 GB, declared in Content-Length"},
    {"deep-nesting", "100,000 lists inside each other"},
    {"invalid-utf8", "the bytes FF FE inside the first text value"},
    {"nul-bytes", "two raw NUL bytes inside the first text value"},
    {"big-number", "an unknown key with a whole number beyond 64 bits in the first object"},
    {"wrong-type-row", "one row in the middle has the wrong JSON type in a strict field"},
    {"duplicate-category-id", "the first category comes twice, under two names (category lists)"},
    {"episodes-array", "episodes as a list, one entry a season (get_series_info)"},
    {"number-exp-date", "exp_date as a JSON number (login)"},
    {"expired", "exp_date in the past, auth still 1 (login)"},
    {"auth-0", "auth 0 for the right password (login)"},
});

constexpr auto actionTable = std::to_array<std::string_view>({"login",
                                                              "get_live_categories",
                                                              "get_vod_categories",
                                                              "get_series_categories",
                                                              "get_live_streams",
                                                              "get_vod_streams",
                                                              "get_series",
                                                              "get_series_info",
                                                              "get_vod_info",
                                                              "get_simple_data_table",
                                                              "get_short_epg",
                                                              "xmltv",
                                                              "live",
                                                              "movie",
                                                              "series",
                                                              "timeshift",
                                                              "subtitles",
                                                              "pictures",
                                                              "config",
                                                              "titles",
                                                              "images"});

bool isKnown(std::string_view name) {
    return std::ranges::find(faultTable, name, &FaultDescription::name) != faultTable.end();
}

} // namespace

bool ActiveFaults::has(std::string_view name) const {
    return std::ranges::find(m_names, name) != m_names.end();
}

int ActiveFaults::status() const {
    for (const std::string& name : m_names) {
        if (name.starts_with(failFirst)) {
            return 503;
        }
        if (name.starts_with(statusPrefix)) {
            return std::stoi(name.substr(statusPrefix.size()));
        }
    }
    return 0;
}

std::span<const FaultDescription> Faults::known() {
    return faultTable;
}
std::span<const std::string_view> Faults::actions() {
    return actionTable;
}

Faults::Entry Faults::parse(std::string_view text) {
    const std::size_t colon = text.find(':');
    Entry entry{.name = std::string(text.substr(0, colon)), .action = {}};
    if (colon != std::string_view::npos) {
        entry.action = text.substr(colon + 1);
        if (std::ranges::find(actionTable, entry.action) == actionTable.end()) {
            throw std::invalid_argument("unknown action: " + entry.action);
        }
    }
    if (entry.name.starts_with(failFirst)) {
        const std::string digits = entry.name.substr(failFirst.size());
        const auto [end, error] =
            std::from_chars(digits.data(), digits.data() + digits.size(), entry.failuresLeft);
        if (error == std::errc() && end == digits.data() + digits.size()) {
            return entry;
        }
    } else if (isKnown(entry.name)) {
        return entry;
    }
    throw std::invalid_argument("unknown fault: " + entry.name);
}

void Faults::set(std::string_view list) {
    std::vector<Entry> added;
    while (!list.empty()) {
        const std::size_t comma = list.find(',');
        added.push_back(parse(list.substr(0, comma)));
        list = comma == std::string_view::npos ? std::string_view() : list.substr(comma + 1);
    }
    const std::lock_guard lock(m_mutex);
    m_entries.insert(m_entries.end(), added.begin(), added.end());
    ++m_generation;
    m_changed.notify_all();
}

void Faults::clear() {
    const std::lock_guard lock(m_mutex);
    m_entries.clear();
    ++m_generation;
    m_changed.notify_all();
}

ActiveFaults Faults::take(std::string_view action) {
    const std::lock_guard lock(m_mutex);
    std::vector<std::string> names;
    for (Entry& entry : m_entries) {
        if (!entry.action.empty() && entry.action != action) {
            continue;
        }
        if (entry.name.starts_with(failFirst)) {
            if (entry.failuresLeft == 0) {
                continue;
            }
            --entry.failuresLeft;
        }
        names.push_back(entry.name);
    }
    return ActiveFaults(std::move(names));
}

void Faults::waitForChange(const std::stop_token& stop) {
    std::unique_lock lock(m_mutex);
    m_changed.wait(lock, stop, [this, seen = m_generation] { return m_generation != seen; });
}

} // namespace ondavia::demo
