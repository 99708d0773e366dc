#include "guide/EPGService.h"

#include "guide/CalendarDay.h"
#include "guide/GuideSpool.h"
#include "guide/GuideStoring.h"
#include "guide/ShortGuide.h"
#include "protocol/XtreamAPIClient.h"
#include "store/LibraryStore.h"

#include <QUrl>
#include <qcoro/qcorofuture.h>

namespace ondavia {
namespace {

using Program = EPGProgram;

QCoro::Task<void> replaceGuide(GuideEnvironment environment, std::string xmlURL) {
    const auto url = makeURL(xmlURL);
    if (!url) {
        co_return;
    }
    const auto spool = std::make_shared<GuideSpool>(environment.cacheFolder);
    const auto session = environment.makeSession({});
    const auto job = [spool, store = &environment.store, owner = environment.owner](
                         const std::stop_token& stop) { storeGuide(*store, owner, *spool, stop); };
    const std::stop_callback unwanted(environment.account, [spool] {
        spool->fail();
        spool->refuseRest();
    });
    const QFuture<void> stored = environment.workers.run(job);
    std::exception_ptr transportFailure;
    try {
        const std::shared_ptr<URLBodyReader> reader = spool;
        co_await session->stream(*url, reader);
    } catch (...) {
        // Raised below, when the storing has let go of the store.
        transportFailure = std::current_exception();
        spool->fail();
    }
    // A failure to store ends the transfer too, and is the cause to tell.
    co_await stored;
    if (transportFailure) {
        std::rethrow_exception(transportFailure);
    }
}

/// Inserts the programmes whose ids are not there yet, in one save.
void addMissing(LibraryStore& store, const std::string& owner, const std::vector<Program>& programs) {
    const auto context = store.makeContext();
    for (const Program& program : programs) {
        const auto sameRow =
            field(&Program::id) == program.id && field(&Program::channelId) == program.channelId;
        std::int64_t present = 0;
        try {
            present = context->count(sameRow);
        } catch (const StoreError&) {
            // A row that cannot be looked up counts as missing; the insert replaces it if it is there.
        }
        if (present == 0) {
            context->insert(program);
        }
    }
    context->saveFor(owner);
}

QCoro::Task<void> addShortGuide(GuideEnvironment environment, std::shared_ptr<XtreamAPIClient> client,
                                std::int64_t streamId, std::string epgChannelId) {
    try {
        const auto listings = co_await client->getEPGForStream(streamId);
        const auto job = [&](const std::stop_token&) {
            addMissing(environment.store, client->accountMark(),
                       programsFromListings(listings, epgChannelId));
        };
        const QFuture<void> added = environment.workers.run(job);
        co_await added;
    } catch (const std::exception&) {
        // The panel shows what the store has; a short guide that cannot be had or kept adds nothing.
    }
}

/// The rows of a query, none when the store cannot be read.
template<class Result, class Read> Result readOrEmpty(Read&& read) {
    try {
        return read();
    } catch (const StoreError&) {
        // The screens show such a channel like one without a guide.
        return {};
    }
}

} // namespace

QCoro::Task<void> EPGService::loadEPG(std::string xmlURL) {
    return replaceGuide(m_environment, std::move(xmlURL));
}

QCoro::Task<void> EPGService::loadEPGFromAPI(std::shared_ptr<XtreamAPIClient> client, std::int64_t streamId,
                                             std::string epgChannelId) {
    return addShortGuide(m_environment, std::move(client), streamId, std::move(epgChannelId));
}

std::optional<EPGProgram> EPGService::getCurrentProgram(std::string_view channelId, Date now) const {
    return readOrEmpty<std::optional<Program>>([&] {
        return m_environment.store.mainContext().fetchFirst<Program>(
            {.where = field(&Program::channelId) == channelId && field(&Program::start) <= now &&
                      field(&Program::stop) > now});
    });
}

std::vector<EPGProgram> EPGService::getProgramsForChannel(std::string_view channelId, Date date) const {
    const CalendarDay day = calendarDayOf(date);
    return readOrEmpty<std::vector<Program>>([&] {
        return m_environment.store.mainContext().fetch<Program>(
            {.where = field(&Program::channelId) == channelId && field(&Program::start) >= day.begin &&
                      field(&Program::start) < day.end,
             .sort = {ascending(&Program::start)}});
    });
}

CurrentTitles EPGService::getCurrentTitles(Date now) const {
    return fetchCurrentTitles(m_environment.store.mainContext(), now);
}

CurrentTitles fetchCurrentTitles(StoreContext& guide, Date now) {
    return readOrEmpty<CurrentTitles>([&] {
        CurrentTitles titles;
        const auto add = [&](const Predicate<Program>& startedThen) {
            const Query<Program> isOn{.where = startedThen && field(&Program::start) <= now &&
                                               field(&Program::stop) > now,
                                      .sort = {ascending(&Program::start)}};
            for (auto& row : guide.fetchMembers(isOn, &Program::channelId, &Program::title)) {
                titles.insert_or_assign(std::move(std::get<0>(row.members)),
                                        std::move(std::get<1>(row.members)));
            }
        };
        // What has just begun says more than what has been on all day.
        add(isLongProgram());
        add(field(&Program::start) > now - longProgram);
        return titles;
    });
}

} // namespace ondavia
