#include "screens/guide/EPGPanelViewModel.h"

#include "guide/CalendarDay.h"
#include "state/AppState.h"

#include <QPointer>

#include <algorithm>

namespace ondavia {
namespace {

/// No provider keeps ten years: a larger number is none, and would make a list without an end.
constexpr std::int64_t deepestArchive = 3650;

} // namespace

EPGPanelViewModel::EPGPanelViewModel(EPGService service, AppState& appState, QObject* parent,
                                     std::function<Date()> now)
    : QObject(parent)
    , m_service(std::move(service))
    , m_appState(appState)
    , m_now(std::move(now))
    , m_programs(m_texts, m_now)
    , m_days(m_texts) {
    connect(this, &EPGPanelViewModel::channelChanged, this, &EPGPanelViewModel::loadPrograms);
    connect(this, &EPGPanelViewModel::selectedDateChanged, this, &EPGPanelViewModel::loadPrograms);
    for (const auto signal : {&EPGPanelViewModel::channelChanged, &EPGPanelViewModel::selectedDateChanged,
                              &EPGPanelViewModel::showDatePickerChanged}) {
        connect(this, signal, this, &EPGPanelViewModel::updateDays);
    }
    connect(this, &EPGPanelViewModel::showDatePickerChanged, this, &EPGPanelViewModel::contentChanged);
    connect(&m_programs, &EPGProgramListModel::modelReset, this, &EPGPanelViewModel::contentChanged);
}

bool EPGPanelViewModel::hasDayHeader() const {
    return m_channel.tvArchive && m_channel.tvArchiveDuration > 0;
}

QString EPGPanelViewModel::dayText() const {
    return QString::fromStdString(m_texts.dayText(selectedMoment(), m_now()));
}

EPGPanelViewModel::Content EPGPanelViewModel::content() const {
    if (m_showDatePicker) {
        return Content::Days;
    }
    if (m_isLoadingPrograms) {
        return Content::Loading;
    }
    return m_programs.programs().empty() ? Content::Empty : Content::Programs;
}

std::vector<Date> EPGPanelViewModel::availableDates() const {
    const auto depth = std::clamp<std::int64_t>(m_channel.tvArchiveDuration, 1, deepestArchive);
    return calendarDaysBack(m_now(), m_channel.tvArchive ? static_cast<int>(depth) : 0);
}

void EPGPanelViewModel::appear() {
    if (!m_isInSight) {
        m_isInSight = true;
        loadPrograms();
    }
}

void EPGPanelViewModel::disappear() {
    m_isInSight = false;
    ++m_generation;
    setLoading(false);
}

void EPGPanelViewModel::pickDay(int row) {
    if (const auto day = m_days.day(row)) {
        select(*day);
        setShowDatePicker(false);
    }
}

void EPGPanelViewModel::select(Date moment) {
    const auto whole = std::chrono::floor<std::chrono::milliseconds>(moment);
    setSelectedDate(QDateTime::fromMSecsSinceEpoch(whole.time_since_epoch().count()));
}

void EPGPanelViewModel::playCatchup(int row) {
    if (m_programs.canCatchup(row)) {
        // By value: the list may change under whoever plays it.
        const EPGProgram program = m_programs.programs()[static_cast<std::size_t>(row)];
        Q_EMIT playCatchupRequested(program);
    }
}

void EPGPanelViewModel::loadPrograms() {
    ++m_generation;
    if (!m_isInSight) {
        return;
    }
    readPrograms();
    const bool mayHaveShortGuide = hasGuide() && m_programs.programs().empty() && selectedMoment() <= m_now();
    const auto client = mayHaveShortGuide ? m_appState.makeXtreamClient() : nullptr;
    setLoading(client != nullptr);
    if (client != nullptr) {
        // In the next turn: who opens the panel sets its day too, and one question is enough.
        const auto ask = [this, client, generation = m_generation] {
            if (generation == m_generation) {
                // It ends by itself: it holds this object weakly.
                loadShortGuide(client, generation);
            }
        };
        QMetaObject::invokeMethod(this, ask, Qt::QueuedConnection);
    }
}

QCoro::Task<void> EPGPanelViewModel::loadShortGuide(std::shared_ptr<XtreamAPIClient> client,
                                                    std::uint64_t generation) {
    const QPointer<EPGPanelViewModel> self(this);
    EPGService service = m_service;
    co_await service.loadEPGFromAPI(std::move(client), m_channel.streamId, *m_channel.epgChannelId);
    if (self && generation == m_generation) {
        readPrograms();
        setLoading(false);
    }
}

bool EPGPanelViewModel::hasGuide() const {
    return m_channel.epgChannelId && !m_channel.epgChannelId->empty();
}

Date EPGPanelViewModel::selectedMoment() const {
    return Date(std::chrono::milliseconds(m_selectedDate.toMSecsSinceEpoch()));
}

void EPGPanelViewModel::readPrograms() {
    auto programs = hasGuide() ? m_service.getProgramsForChannel(*m_channel.epgChannelId, selectedMoment())
                               : std::vector<EPGProgram>();
    m_programs.setPrograms(std::move(programs), m_channel.tvArchive ? Archive::Kept : Archive::None);
}

void EPGPanelViewModel::setLoading(bool loading) {
    if (m_isLoadingPrograms != loading) {
        m_isLoadingPrograms = loading;
        Q_EMIT contentChanged();
    }
}

void EPGPanelViewModel::updateDays() {
    auto days = m_showDatePicker ? availableDates() : std::vector<Date>();
    m_days.setDays(std::move(days), calendarDayOf(selectedMoment()).begin, m_now());
}

} // namespace ondavia
