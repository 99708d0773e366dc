#include "BareGuide.h"
#include "support/Download.h"

#include <SQLiteCpp/SQLiteCpp.h>
#include <expat.h>

#include <chrono>
#include <cstdlib>
#include <cstring>
#include <stdexcept>

namespace ondavia::bench {
namespace {

int number(const char* digits, int count) {
    int value = 0;
    for (int index = 0; index < count; ++index) {
        value = value * 10 + (digits[index] - '0');
    }
    return value;
}

std::int64_t microseconds(const char* text) {
    if (std::strlen(text) < 20) {
        return 0;
    }
    const std::chrono::sys_days day =
        std::chrono::year(number(text, 4)) / number(text + 4, 2) / number(text + 6, 2);
    const std::int64_t offset = number(text + 16, 2) * 3600 + number(text + 18, 2) * 60;
    const std::int64_t seconds = number(text + 8, 2) * 3600 + number(text + 10, 2) * 60 +
                                 number(text + 12, 2) + (text[15] == '-' ? offset : -offset);
    return (day.time_since_epoch() / std::chrono::seconds(1) + seconds) * 1'000'000;
}

class Handlers final {
public:
    explicit Handlers(SQLite::Database& database)
        : m_insert(database, "INSERT INTO epg_program VALUES (?,?,?,?,?,?,?)") {}

    void start(const char* name, const char** attributes) {
        m_text = nullptr;
        if (std::strcmp(name, "programme") == 0) {
            m_title.clear();
            m_desc.clear();
            m_category.clear();
            for (; *attributes; attributes += 2) {
                if (std::strcmp(attributes[0], "channel") == 0) {
                    m_channel = attributes[1];
                } else if (std::strcmp(attributes[0], "start") == 0) {
                    m_start = microseconds(attributes[1]);
                } else if (std::strcmp(attributes[0], "stop") == 0) {
                    m_stop = microseconds(attributes[1]);
                }
            }
        } else if (std::strcmp(name, "title") == 0) {
            m_text = &m_title;
        } else if (std::strcmp(name, "desc") == 0) {
            m_text = &m_desc;
        } else if (std::strcmp(name, "category") == 0) {
            m_text = &m_category;
        }
    }
    void characters(const char* run, int length) {
        if (m_text) {
            m_text->append(run, static_cast<std::size_t>(length));
        }
    }
    void end(const char* name) {
        m_text = nullptr;
        if (std::strcmp(name, "programme") != 0) {
            return;
        }
        m_insert.bind(1, "00000000-0000-4000-8000-00000" + std::to_string(1'000'000 + ++m_count));
        m_insert.bindNoCopy(2, m_channel);
        m_insert.bindNoCopy(3, m_title);
        m_insert.bindNoCopy(4, m_desc);
        m_insert.bind(5, m_start);
        m_insert.bind(6, m_stop);
        m_insert.bindNoCopy(7, m_category);
        m_insert.exec();
        m_insert.reset();
    }

private:
    SQLite::Statement m_insert;
    std::string* m_text = nullptr;
    std::string m_channel;
    std::string m_title;
    std::string m_desc;
    std::string m_category;
    std::int64_t m_start = 0;
    std::int64_t m_stop = 0;
    int m_count = 0;
};

} // namespace

void runBareGuide(const std::string& url, const std::filesystem::path& file) {
    const std::string document = download(url);
    SQLite::Database database(file.string(), SQLite::OPEN_READWRITE | SQLite::OPEN_CREATE);
    database.exec("PRAGMA journal_mode=OFF; PRAGMA synchronous=OFF");
    database.exec("CREATE TABLE epg_program (id TEXT, channel_id TEXT, title TEXT, desc TEXT, start INTEGER,"
                  " stop INTEGER, category TEXT)");
    SQLite::Transaction transaction(database);
    Handlers handlers(database);
    XML_Parser parser = XML_ParserCreate(nullptr);
    XML_SetUserData(parser, &handlers);
    XML_SetElementHandler(
        parser,
        [](void* self, const char* name, const char** attributes) {
            static_cast<Handlers*>(self)->start(name, attributes);
        },
        [](void* self, const char* name) { static_cast<Handlers*>(self)->end(name); });
    XML_SetCharacterDataHandler(parser, [](void* self, const char* run, int length) {
        static_cast<Handlers*>(self)->characters(run, length);
    });
    const XML_Status status = XML_Parse(parser, document.data(), static_cast<int>(document.size()), 1);
    XML_ParserFree(parser);
    if (status != XML_STATUS_OK) {
        throw std::runtime_error("the guide is malformed");
    }
    database.exec("CREATE INDEX epg_program_by_channel ON epg_program(channel_id, start, stop)");
    transaction.commit();
}

} // namespace ondavia::bench
