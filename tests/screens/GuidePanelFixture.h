#pragma once

#include "ScreensFixture.h"
#include "guide/GuideSamples.h"
#include "screens/guide/EPGPanelViewModel.h"
#include "support/HttpServer.h"

#include <QAbstractItemModelTester>

#include <gmock/gmock.h>
#include <unicode/timezone.h>

#include <atomic>
#include <condition_variable>
#include <mutex>

namespace ondavia::testing {

/// The device's time zone, as long as it lives.
class DeviceZone final {
public:
    explicit DeviceZone(const char* name)
        : m_before(icu::TimeZone::createDefault()) {
        icu::TimeZone::adoptDefault(icu::TimeZone::createTimeZone(icu::UnicodeString::fromUTF8(name)));
    }
    ~DeviceZone() { icu::TimeZone::adoptDefault(m_before); }
    DeviceZone(const DeviceZone&) = delete;
    DeviceZone& operator=(const DeviceZone&) = delete;

private:
    icu::TimeZone* m_before;
};

/// A guide panel over a real store and a provider of short guides, with a clock that stands still.
class GuidePanelFixture : public ScreensFixture {
protected:
    explicit GuidePanelFixture(const char* zoneName = "Europe/Lisbon")
        : zone(zoneName) {
        http.server.Get("/player_api.php", [this](const httplib::Request& request, httplib::Response& reply) {
            answer(request, reply);
        });
        http.start();
        panel.setSelectedDate(at(now));
        QObject::connect(&panel, &EPGPanelViewModel::playCatchupRequested, &panel,
                         [this](const EPGProgram& program) { played.push_back(program.id); });
        QObject::connect(&panel, &EPGPanelViewModel::contentChanged, &panel, [this] {
            if (contents.empty() || contents.back() != panel.content()) {
                contents.push_back(panel.content());
            }
        });
    }
    ~GuidePanelFixture() override { release(); }

    void TearDown() override { endRequests(); }

    static QDateTime at(Date date) {
        return QDateTime::fromMSecsSinceEpoch(
            std::chrono::floor<std::chrono::milliseconds>(date).time_since_epoch().count());
    }
    static Channel channel(bool hasArchive, std::int64_t days, std::optional<std::string> guideId = "c1") {
        Channel made = title(77, "live", "Generalistas", "Canal 1");
        made.tvArchive = hasArchive;
        made.tvArchiveDuration = days;
        made.epgChannelId = std::move(guideId);
        return made;
    }
    static EPGProgram program(const std::string& name, Date start, Date stop,
                              const std::string& guideId = "c1") {
        return {guideId + "_" + name, guideId, name, std::nullopt, start, stop, std::nullopt};
    }
    void add(const std::vector<EPGProgram>& programs) {
        for (const EPGProgram& one : programs) {
            store->mainContext().insert(one);
        }
        store->mainContext().save();
    }
    void signIn() {
        appState.setServer(http.url());
        appState.setUsername("some-user");
        appState.setPassword("some-password");
    }

    /// What the provider says of the stream from now on, as JSON list elements.
    void serveListings(std::string listings, int status = 200) {
        const std::lock_guard lock(m_mutex);
        m_listings = std::move(listings);
        m_status = status;
    }
    /// Lets every request wait until `release`.
    void hold() {
        const std::lock_guard lock(m_mutex);
        m_isHeld = true;
    }
    void release() {
        {
            const std::lock_guard lock(m_mutex);
            m_isHeld = false;
        }
        m_released.notify_all();
    }
    static std::string listing(const std::string& name, const std::string& start, const std::string& stop) {
        return R"({"title":")" + name + R"(","start":")" + start + R"(","end":")" + stop + R"("})";
    }

    using Content = EPGPanelViewModel::Content;
    [[nodiscard]] std::vector<std::string> titles() { return titlesOf(panel.programs()->programs()); }
    [[nodiscard]] QVariant shown(int row, EPGProgramListModel::Role role) {
        return panel.programs()->data(panel.programs()->index(row), role);
    }
    [[nodiscard]] std::string dayName(int row) {
        return panel.days()
            ->data(panel.days()->index(row), EPGDayListModel::NameRole)
            .toString()
            .toStdString();
    }
    /// Lets every request be answered and every answer take its effect. Each turn lets one go a step further.
    void endRequests() {
        constexpr int quietTurns = 10;
        constexpr std::chrono::seconds longest(10);
        release();
        for (int quiet = 0; quiet < quietTurns; ++quiet) {
            const bool isQuiet = waitForTransfers(std::chrono::milliseconds(0));
            waitForTransfers(longest);
            guideWorkers.wait(longest);
            drainEvents();
            quiet = isQuiet ? quiet : 0;
        }
    }
    bool waitForRequests(int count) {
        return waitUntil([this, count] { return requests.load() >= count; });
    }

    /// Before everything that asks for it.
    DeviceZone zone;
    HttpServer http;
    std::atomic_int requests = 0;
    Date now = utc(2024, 3, 15, 12, 30);
    EPGPanelViewModel panel{EPGService({*store, makeCurlURLSession, folder.path() / "cache", guideWorkers}),
                            appState, nullptr, [this] { return now; }};
    QAbstractItemModelTester programsTester{panel.programs()};
    QAbstractItemModelTester daysTester{panel.days()};
    std::vector<std::string> played;
    /// What the panel has shown so far.
    std::vector<Content> contents;

private:
    void answer(const httplib::Request& request, httplib::Response& reply) {
        std::unique_lock lock(m_mutex);
        EXPECT_EQ(request.get_param_value("action"), "get_simple_data_table");
        EXPECT_EQ(request.get_param_value("stream_id"), "77");
        ++requests;
        m_released.wait(lock, [this] { return !m_isHeld; });
        reply.status = m_status;
        reply.set_content(R"({"epg_listings":[)" + m_listings + "]}", "application/octet-stream");
    }

    std::mutex m_mutex;
    std::condition_variable m_released;
    std::string m_listings;
    int m_status = 200;
    bool m_isHeld = false;
};

} // namespace ondavia::testing
