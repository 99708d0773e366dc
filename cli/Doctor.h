#pragma once

#include "platform/URLSession.h"
#include "protocol/wire/AccountRecords.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <qcoro/qcorotask.h>
#include <string>
#include <string_view>

namespace ondavia {
class XtreamAPIClient;
}

namespace ondavia::cli {

class Output;

/// Asks a provider each of its questions once, one after the other, and says of each answer whether it will
/// do. Main thread.
class Doctor final {
public:
    /// `output` outlives the object.
    Doctor(Output& output, std::shared_ptr<XtreamAPIClient> client, std::shared_ptr<URLSession> session);

    /// Raises CommandError when an answer is of no use, after all have been asked for. Where the log-in
    /// is refused or not answered, nothing more is asked.
    QCoro::Task<void> examine();

private:
    enum class Result { Good, Questionable, Useless, NotAsked };
    struct Verdict final {
        Result result;
        std::string detail;
    };
    struct Question final {
        std::string_view name;
        QCoro::Task<Verdict> (Doctor::*ask)(std::string action);
    };
    static const Question questions[];

    QCoro::Task<void> put(Question question);
    void report(const Question& question, const Verdict& verdict, double seconds);

    QCoro::Task<Verdict> askLogIn(std::string action);
    QCoro::Task<Verdict> askCategories(std::string action);
    template<class Row> QCoro::Task<Verdict> askRows(std::string action);
    QCoro::Task<Verdict> askSeriesInfo(std::string action);
    QCoro::Task<Verdict> askListings(std::string action);
    QCoro::Task<Verdict> askMovieInfo(std::string action);
    QCoro::Task<Verdict> askGuide(std::string action);
    QCoro::Task<Verdict> askStream(std::string action);
    [[nodiscard]] static Verdict judge(const XtreamUserInfo& account);

    Output& m_output;
    std::shared_ptr<XtreamAPIClient> m_client;
    std::shared_ptr<URLSession> m_session;
    /// The first usable row of each list, for the questions about one item.
    std::optional<std::int64_t> m_streamId;
    std::optional<std::int64_t> m_movieId;
    std::optional<std::int64_t> m_seriesId;
    bool m_hasGivenUp = false;
    int m_asked = 0;
    int m_useless = 0;
};

} // namespace ondavia::cli
