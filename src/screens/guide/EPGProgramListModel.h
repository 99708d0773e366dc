#pragma once

#include "base/Date.h"
#include "entities/EPGProgram.h"

#include <QAbstractListModel>
#include <qqmlregistration.h>

#include <functional>
#include <vector>

namespace ondavia {

class DayTexts;

/// Whether what is listed can be played later.
enum class Archive { None, Kept };

/// The programmes of one day. Whether one is on now, over or still to come is told by the clock each time
/// that a row is drawn; time alone changes no row. Main thread.
class EPGProgramListModel final : public QAbstractListModel {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("belongs to a guide")
    /// Row of the first programme that was on when the rows were set; -1 for none.
    Q_PROPERTY(int currentRow READ currentRow NOTIFY currentRowChanged)

public:
    enum Role { TimeRole = Qt::UserRole, TitleRole, DetailRole, MomentRole, CanCatchupRole };
    enum class Moment { Past, Current, Future };
    Q_ENUM(Moment)

    /// `texts` must outlive the object.
    EPGProgramListModel(const DayTexts& texts, std::function<Date()> now);

    [[nodiscard]] const std::vector<EPGProgram>& programs() const { return m_programs; }
    void setPrograms(std::vector<EPGProgram> programs, Archive archive);
    [[nodiscard]] int currentRow() const { return m_currentRow; }
    /// Whether there is a recording of it: it is over, and there is an archive.
    [[nodiscard]] bool canCatchup(int row) const;

    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
    [[nodiscard]] QHash<int, QByteArray> roleNames() const override;

    Q_SIGNAL void currentRowChanged();

private:
    [[nodiscard]] Moment momentOf(const EPGProgram& program) const;

    const DayTexts& m_texts;
    std::function<Date()> m_now;
    std::vector<EPGProgram> m_programs;
    Archive m_archive = Archive::None;
    int m_currentRow = -1;
};

} // namespace ondavia
