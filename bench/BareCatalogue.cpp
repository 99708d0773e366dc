#include "BareCatalogue.h"
#include "support/Download.h"

#include <SQLiteCpp/SQLiteCpp.h>
#include <simdjson.h>

#include <stdexcept>
#include <unordered_map>

namespace ondavia::bench {
namespace {

constexpr const char* createTable =
    "CREATE TABLE channel (id TEXT, playlist_id TEXT, stream_id INTEGER, num INTEGER, name TEXT, type TEXT,"
    " group_title TEXT, logo TEXT, url TEXT, series_id INTEGER, series_name TEXT, season_num INTEGER,"
    " episode_num INTEGER, episode_title TEXT, plot TEXT, cast TEXT, director TEXT, genre TEXT, rating TEXT,"
    " year TEXT, backdrop TEXT, youtube_trailer TEXT, release_date TEXT, duration TEXT,"
    " container_extension TEXT, adult INTEGER, epg_channel_id TEXT, tvg_name TEXT, tvg_chno TEXT,"
    " tv_archive INTEGER, tv_archive_duration INTEGER, added_at INTEGER, last_accessed_at INTEGER)";

constexpr const char* insertRow =
    "INSERT INTO channel (id, playlist_id, stream_id, num, name, type, group_title, logo, url, series_id, "
    "plot,"
    " cast, director, genre, rating, year, backdrop, youtube_trailer, release_date, duration,"
    " container_extension, adult, epg_channel_id, tv_archive, tv_archive_duration, added_at)"
    " VALUES (?,?,?,?,?,?,?,?,?,?,?,?,?,?,?,?,?,?,?,?,?,?,?,?,?,?)";

using simdjson::dom::element;

class Inserter final {
public:
    Inserter(SQLite::Database& database, std::string type)
        : m_statement(database, insertRow)
        , m_type(std::move(type)) {}

    void insert(const element& row, const char* idKey,
                const std::unordered_map<std::string, std::string>& groups) {
        const std::int64_t id = number(row, idKey);
        int column = 0;
        const std::string key = (m_type == "series" ? "main_series_" : "main_") + std::to_string(id);
        m_statement.bind(++column, key);
        m_statement.bind(++column, "main");
        m_statement.bind(++column, id);
        m_statement.bind(++column, number(row, "num"));
        text(++column, row, "name");
        m_statement.bindNoCopy(++column, m_type);
        const auto group = groups.find(std::string(textOf(row, "category_id")));
        m_statement.bind(++column, group == groups.end() ? std::string("Sem Categoria") : group->second);
        text(++column, row, m_type == "series" ? "cover" : "stream_icon");
        m_statement.bind(++column, "http://server/" + m_type + "/demo/demo/" + std::to_string(id));
        m_statement.bind(++column, id);
        for (const char* name :
             {"plot", "cast", "director", "genre", "rating", "year", "backdrop_path", "youtube_trailer",
              "release_date", "episode_run_time", "container_extension"}) {
            text(++column, row, name);
        }
        m_statement.bind(++column, textOf(row, "is_adult") == "1" ? 1 : 0);
        text(++column, row, "epg_channel_id");
        m_statement.bind(++column, number(row, "tv_archive"));
        m_statement.bind(++column, number(row, "tv_archive_duration"));
        m_statement.bind(++column, 0);
        m_statement.exec();
        m_statement.reset();
    }

private:
    static std::string_view textOf(const element& row, const char* key) {
        std::string_view value;
        return row[key].get_string().get(value) == simdjson::SUCCESS ? value : std::string_view();
    }
    static std::int64_t number(const element& row, const char* key) {
        std::int64_t value = 0;
        return row[key].get_int64().get(value) == simdjson::SUCCESS ? value : 0;
    }
    void text(int column, const element& row, const char* key) {
        const std::string_view value = textOf(row, key);
        if (value.data() == nullptr) {
            m_statement.bind(column);
        } else {
            // simdjson ends its strings with a NUL.
            m_statement.bindNoCopy(column, value.data());
        }
    }

    SQLite::Statement m_statement;
    std::string m_type;
};

} // namespace

void runBareCatalogue(const std::string& serverUrl, const std::filesystem::path& file) {
    const std::string api = serverUrl + "/player_api.php?username=demo&password=demo&action=";
    SQLite::Database database(file.string(), SQLite::OPEN_READWRITE | SQLite::OPEN_CREATE);
    database.exec("PRAGMA journal_mode=OFF; PRAGMA synchronous=OFF");
    database.exec(createTable);
    SQLite::Transaction transaction(database);
    simdjson::dom::parser parser;
    struct List {
        const char* type;
        const char* categories;
        const char* streams;
        const char* idKey;
    };
    for (const List& list : {List{"live", "get_live_categories", "get_live_streams", "stream_id"},
                             List{"movie", "get_vod_categories", "get_vod_streams", "stream_id"},
                             List{"series", "get_series_categories", "get_series", "series_id"}}) {
        std::unordered_map<std::string, std::string> groups;
        const auto categoryText = download(api + list.categories);
        for (const element category : parser.parse(categoryText).get_array()) {
            groups.emplace(category["category_id"].get_string().value(),
                           category["category_name"].get_string().value());
        }
        const auto streamText = download(api + list.streams);
        Inserter inserter(database, list.type);
        for (const element row : parser.parse(streamText).get_array()) {
            inserter.insert(row, list.idKey, groups);
        }
    }
    database.exec("CREATE UNIQUE INDEX channel_id ON channel (id)");
    database.exec("CREATE INDEX channel_by_group ON channel (type, group_title, num)");
    database.exec("CREATE INDEX channel_by_num ON channel (type, num)");
    transaction.commit();
}

} // namespace ondavia::bench
