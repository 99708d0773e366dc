#include "cli/Doctor.h"

#include "app/Services.h"
#include "base/Text.h"
#include "cli/Account.h"
#include "cli/Failures.h"
#include "cli/MediaHead.h"
#include "cli/Output.h"
#include "protocol/AccountExpiry.h"
#include "protocol/XtreamAPIClient.h"
#include "protocol/wire/DecodingError.h"

#include <QJsonDocument>

#include <set>

namespace ondavia::cli {
namespace {

/// Seconds. The application waits longer; whoever sits before this one wants to know.
constexpr double patience = 60;
constexpr std::size_t guideHeadBytes = 4096;
constexpr std::size_t transportPacket = 188;
constexpr std::size_t streamHeadBytes = 8 * transportPacket;

/// What a list is worth, gathered on the pool one call at a time.
struct ListFacts final {
    std::optional<std::int64_t> firstId;
    std::int64_t unusable = 0;
};

std::optional<std::int64_t> idOf(const XtreamLiveStream& row) {
    return row.streamId;
}
std::optional<std::int64_t> idOf(const XtreamVodStream& row) {
    return row.streamId;
}
std::optional<std::int64_t> idOf(const XtreamSeriesItem& row) {
    return row.seriesId;
}

std::string counted(std::int64_t count, const std::string& noun) {
    return std::to_string(count) + " " + noun + (count == 1 ? "" : "s");
}

bool isTransportStream(std::string_view bytes) {
    return bytes.size() > transportPacket && bytes[0] == 'G' && bytes[transportPacket] == 'G';
}

bool isAnAnswer(const std::exception& error) {
    const auto* protocol = dynamic_cast<const XtreamError*>(&error);
    return dynamic_cast<const DecodingError*>(&error) != nullptr ||
           (protocol != nullptr && protocol->kind() == XtreamError::Case::httpError);
}

} // namespace

const Doctor::Question Doctor::questions[] = {
    {"log-in", &Doctor::askLogIn},
    {"get_live_categories", &Doctor::askCategories},
    {"get_vod_categories", &Doctor::askCategories},
    {"get_series_categories", &Doctor::askCategories},
    {listAction<XtreamLiveStream>, &Doctor::askRows<XtreamLiveStream>},
    {listAction<XtreamVodStream>, &Doctor::askRows<XtreamVodStream>},
    {listAction<XtreamSeriesItem>, &Doctor::askRows<XtreamSeriesItem>},
    {"get_series_info", &Doctor::askSeriesInfo},
    {"get_simple_data_table", &Doctor::askListings},
    {"get_vod_info", &Doctor::askMovieInfo},
    {"xmltv.php", &Doctor::askGuide},
    {"live stream", &Doctor::askStream},
};

Doctor::Doctor(Output& output, std::shared_ptr<XtreamAPIClient> client, std::shared_ptr<URLSession> session)
    : m_output(output)
    , m_client(std::move(client))
    , m_session(std::move(session)) {}

QCoro::Task<void> Doctor::examine() {
    for (const Question& question : questions) {
        if (!m_hasGivenUp) {
            co_await put(question);
        }
    }
    if (m_useless > 0) {
        throw CommandError(counted(m_useless, "answer") + " of " + std::to_string(m_asked) +
                           " cannot be used" + (m_hasGivenUp ? "; the rest was not asked for" : ""));
    }
}

QCoro::Task<void> Doctor::put(Question question) {
    const Date begin = currentDate();
    Verdict verdict{Result::Useless, {}};
    try {
        const std::string action(question.name);
        verdict = co_await (this->*question.ask)(action);
    } catch (const std::exception& error) {
        verdict.detail = explain(error);
        // What the provider answers the log-in with says nothing of the rest; no answer and a refusal do.
        m_hasGivenUp = m_asked == 0 && !isAnAnswer(error);
    }
    report(question, verdict, secondsSince1970(currentDate()) - secondsSince1970(begin));
}

void Doctor::report(const Question& question, const Verdict& verdict, double seconds) {
    static constexpr const char* words[] = {"ok", "warning", "wrong", "not asked"};
    m_asked += verdict.result == Result::NotAsked ? 0 : 1;
    m_useless += verdict.result == Result::Useless ? 1 : 0;
    const Record record{{"question", std::string(question.name)},
                        {"result", std::string(words[static_cast<int>(verdict.result)])},
                        {"seconds", seconds},
                        {"detail", verdict.detail}};
    m_output.printLine(record, {22, 9, 4});
}

QCoro::Task<Doctor::Verdict> Doctor::askLogIn(std::string) {
    const XtreamUserInfo account = co_await logIn(m_client);
    co_return judge(account);
}

Doctor::Verdict Doctor::judge(const XtreamUserInfo& account) {
    const auto expiry = expiryOf(account);
    if (expiry && *expiry < currentDate()) {
        return {Result::Questionable,
                "the account has expired on " + isoText(*expiry) + ", though the provider accepts it"};
    }
    const auto active = parseDecimalInteger(account.activeCons.value_or(std::string()));
    const auto most = parseDecimalInteger(account.maxConnections.value_or(std::string()));
    if (active && most && *most > 0 && *active >= *most) {
        return {Result::Questionable, "all " + counted(*most, "connection") + " of the account are in use"};
    }
    return {Result::Good, expiry ? "the account is good until " + isoText(*expiry)
                                 : std::string("the account is good, and has no end")};
}

QCoro::Task<Doctor::Verdict> Doctor::askCategories(std::string action) {
    const auto categories = co_await m_client->getCategories(action);
    std::set<std::string> ids;
    for (const auto& category : categories) {
        if (!ids.insert(category.categoryId).second) {
            co_return Verdict{Result::Useless, "the category id " + excerpt(category.categoryId) +
                                                   " stands twice: no catalogue can be made of that"};
        }
    }
    co_return Verdict{categories.empty() ? Result::Questionable : Result::Good,
                      categories.empty() ? std::string("an empty list")
                                         : std::to_string(categories.size()) +
                                               (categories.size() == 1 ? " category" : " categories")};
}

template<class Row> QCoro::Task<Doctor::Verdict> Doctor::askRows(std::string) {
    const auto facts = std::make_shared<ListFacts>();
    const std::function<void(std::vector<Row> &&)> take = [facts](std::vector<Row>&& rows) {
        for (const Row& row : rows) {
            const bool isUsable = idOf(row) && row.name;
            facts->unusable += isUsable ? 0 : 1;
            if (isUsable && !facts->firstId) {
                facts->firstId = idOf(row);
            }
        }
    };
    const std::int64_t count = co_await m_client->template fetchRows<Row>(take);
    if constexpr (std::is_same_v<Row, XtreamLiveStream>) {
        m_streamId = facts->firstId;
    } else if constexpr (std::is_same_v<Row, XtreamVodStream>) {
        m_movieId = facts->firstId;
    } else {
        m_seriesId = facts->firstId;
    }
    if (count == 0) {
        co_return Verdict{Result::Questionable, "an empty list"};
    }
    if (facts->unusable > 0) {
        co_return Verdict{Result::Questionable, counted(count, "row") + ", of which " +
                                                    std::to_string(facts->unusable) +
                                                    " have no id or no name and are left out"};
    }
    co_return Verdict{Result::Good, counted(count, "row")};
}

QCoro::Task<Doctor::Verdict> Doctor::askSeriesInfo(std::string) {
    if (!m_seriesId) {
        co_return Verdict{Result::NotAsked, "no series is known to ask about"};
    }
    const XtreamSeriesInfo info = co_await m_client->getSeriesInfo(*m_seriesId);
    const std::string series = "series " + std::to_string(*m_seriesId);
    if (!info.episodes) {
        co_return Verdict{Result::Useless, series + ": its list of episodes is missing or cannot be read"};
    }
    std::int64_t episodes = 0;
    for (const auto& [season, list] : *info.episodes) {
        episodes += static_cast<std::int64_t>(list.size());
    }
    const auto seasons = static_cast<std::int64_t>(info.episodes->size());
    co_return Verdict{episodes == 0 ? Result::Questionable : Result::Good,
                      series + ": " + counted(seasons, "season") + ", " + counted(episodes, "episode")};
}

QCoro::Task<Doctor::Verdict> Doctor::askListings(std::string) {
    if (!m_streamId) {
        co_return Verdict{Result::NotAsked, "no channel is known to ask about"};
    }
    const auto listings = co_await m_client->getEPGForStream(*m_streamId);
    const auto count = static_cast<std::int64_t>(listings.size());
    co_return Verdict{count == 0 ? Result::Questionable : Result::Good,
                      "channel " + std::to_string(*m_streamId) + ": " + counted(count, "programme")};
}

QCoro::Task<Doctor::Verdict> Doctor::askMovieInfo(std::string) {
    if (!m_movieId) {
        co_return Verdict{Result::NotAsked, "no film is known to ask about"};
    }
    const std::string reply = co_await m_client->getVodInfo(*m_movieId);
    const bool isObject = QJsonDocument::fromJson(QByteArray::fromStdString(reply)).isObject();
    const std::string film = "film " + std::to_string(*m_movieId) + ": ";
    co_return Verdict{isObject ? Result::Good : Result::Useless,
                      isObject ? film + counted(static_cast<std::int64_t>(reply.size()), "byte")
                               : film + "no JSON object: " + excerpt(reply)};
}

QCoro::Task<Doctor::Verdict> Doctor::askGuide(std::string) {
    const std::string url = m_client->getEpgXMLURL();
    const std::string head = co_await fetchHead(m_session, url, guideHeadBytes);
    if (head.find("<tv") != std::string::npos) {
        co_return Verdict{Result::Good, "an XMLTV document"};
    }
    const bool isEmpty = head.empty();
    co_return Verdict{isEmpty ? Result::Questionable : Result::Useless,
                      isEmpty ? std::string("nothing at all")
                              : "no XMLTV document: " + excerpt(head, TextEnd::Cut)};
}

QCoro::Task<Doctor::Verdict> Doctor::askStream(std::string) {
    if (!m_streamId) {
        co_return Verdict{Result::NotAsked, "no channel is known to ask for"};
    }
    const std::string url = m_client->getLiveStreamURL(*m_streamId);
    const std::string head = co_await fetchHead(m_session, url, streamHeadBytes);
    const std::string channel = "channel " + std::to_string(*m_streamId) + ": ";
    if (isTransportStream(head)) {
        co_return Verdict{Result::Good, channel + "an MPEG transport stream"};
    }
    if (head.starts_with("#EXTM3U")) {
        co_return Verdict{Result::Good, channel + "an HLS playlist"};
    }
    co_return Verdict{Result::Useless, channel + (head.empty() ? "nothing at all"
                                                               : "no video: " + excerpt(head, TextEnd::Cut))};
}

QCoro::Task<void> examineProvider(CommandContext context) {
    const Services& services = context.services;
    const auto known = requireClient(services.appState);
    const URLSessionFactory makeSession = [&services](URLSessionConfiguration configuration) {
        configuration.requestTimeout = patience;
        return services.makeSession(configuration);
    };
    const auto client =
        std::make_shared<XtreamAPIClient>(known->server(), known->username(), known->password(), makeSession);
    const auto session = makeSession(URLSessionConfiguration());
    Doctor doctor(context.output, client, session);
    co_await doctor.examine();
}

} // namespace ondavia::cli
