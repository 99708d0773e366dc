#pragma once

#include "base/Date.h"
#include "base/Observable.h"
#include "entities/Channel.h"
#include "guide/DayTexts.h"
#include "guide/EPGService.h"
#include "screens/guide/EPGDayListModel.h"
#include "screens/guide/EPGProgramListModel.h"

#include <QDateTime>
#include <QObject>
#include <QString>
#include <qcoro/qcorotask.h>
#include <qqmlregistration.h>

#include <cstdint>
#include <functional>
#include <memory>
#include <vector>

namespace ondavia {

class AppState;
class XtreamAPIClient;

/// The guide of one channel: the programmes of one day, and the days of the channel's archive. Whoever shows
/// it owns the day and the list of days, and plays what was chosen. Reads the guide only while it is in
/// sight. Main thread.
class EPGPanelViewModel final : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the player")
    /// Any moment of the day that is shown.
    Q_PROPERTY(QDateTime selectedDate READ selectedDate WRITE setSelectedDate NOTIFY selectedDateChanged)
    /// The list of days is open.
    Q_PROPERTY(bool showDatePicker READ showDatePicker WRITE setShowDatePicker NOTIFY showDatePickerChanged)
    /// The channel has past days to choose from.
    Q_PROPERTY(bool hasDayHeader READ hasDayHeader NOTIFY channelChanged)
    /// The day that is shown, in words.
    Q_PROPERTY(QString dayText READ dayText NOTIFY selectedDateChanged)
    Q_PROPERTY(Content content READ content NOTIFY contentChanged)
    Q_PROPERTY(ondavia::EPGProgramListModel* programs READ programs CONSTANT)
    /// Filled while the list of days is open.
    Q_PROPERTY(ondavia::EPGDayListModel* days READ days CONSTANT)

    ONDAVIA_OBSERVABLE(Channel, channel, setChannel);
    ONDAVIA_OBSERVABLE(QDateTime, selectedDate, setSelectedDate, QDateTime::currentDateTime());
    ONDAVIA_OBSERVABLE(bool, showDatePicker, setShowDatePicker, false);

public:
    /// What the panel shows below its header.
    enum class Content { Days, Loading, Empty, Programs };
    Q_ENUM(Content)

    /// `appState` must outlive the object. `now` is the clock that days and programmes are compared with.
    EPGPanelViewModel(EPGService service, AppState& appState, QObject* parent = nullptr,
                      std::function<Date()> now = currentDate);

    [[nodiscard]] bool hasDayHeader() const;
    [[nodiscard]] QString dayText() const;
    [[nodiscard]] Content content() const;
    [[nodiscard]] EPGProgramListModel* programs() { return &m_programs; }
    [[nodiscard]] EPGDayListModel* days() { return &m_days; }
    /// Today, and before it the days of the archive: the first moments of each.
    [[nodiscard]] std::vector<Date> availableDates() const;

    /// The panel has come into sight: from now on it reads what it shows. Nothing for one in sight.
    Q_INVOKABLE void appear();
    /// It has gone: what is still on its way is dropped.
    Q_INVOKABLE void disappear();
    Q_INVOKABLE void toggleDatePicker() { setShowDatePicker(!m_showDatePicker); }
    /// Shows what is on now.
    void selectToday() { select(m_now()); }
    /// Shows the day at this row of `days`, and closes the list of days.
    Q_INVOKABLE void pickDay(int row);
    /// Asks for the recording of the programme at this row; nothing for one that has none.
    Q_INVOKABLE void playCatchup(int row);

    Q_SIGNAL void playCatchupRequested(const ondavia::EPGProgram& program);
    Q_SIGNAL void contentChanged();

private:
    void select(Date moment);
    void loadPrograms();
    QCoro::Task<void> loadShortGuide(std::shared_ptr<XtreamAPIClient> client, std::uint64_t generation);
    [[nodiscard]] bool hasGuide() const;
    [[nodiscard]] Date selectedMoment() const;
    void readPrograms();
    void setLoading(bool loading);
    void updateDays();

    EPGService m_service;
    AppState& m_appState;
    std::function<Date()> m_now;
    DayTexts m_texts;
    EPGProgramListModel m_programs;
    EPGDayListModel m_days;
    bool m_isInSight = false;
    bool m_isLoadingPrograms = false;
    /// Of the running load; a result of an earlier one is dropped.
    std::uint64_t m_generation = 0;
};

} // namespace ondavia
