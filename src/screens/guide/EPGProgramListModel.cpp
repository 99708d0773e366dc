#include "screens/guide/EPGProgramListModel.h"

#include "guide/DayTexts.h"
#include "style/ShownText.h"

#include <algorithm>

namespace ondavia {

EPGProgramListModel::EPGProgramListModel(const DayTexts& texts, std::function<Date()> now)
    : m_texts(texts)
    , m_now(std::move(now)) {}

void EPGProgramListModel::setPrograms(std::vector<EPGProgram> programs, Archive archive) {
    beginResetModel();
    m_programs = std::move(programs);
    m_archive = archive;
    const Date now = m_now();
    const auto current =
        std::ranges::find_if(m_programs, [now](const EPGProgram& program) { return program.isLive(now); });
    m_currentRow = current == m_programs.end() ? -1 : static_cast<int>(current - m_programs.begin());
    endResetModel();
    Q_EMIT currentRowChanged();
}

bool EPGProgramListModel::canCatchup(int row) const {
    const bool isThere = row >= 0 && row < rowCount();
    return isThere && m_archive == Archive::Kept && m_programs[static_cast<std::size_t>(row)].stop < m_now();
}

EPGProgramListModel::Moment EPGProgramListModel::momentOf(const EPGProgram& program) const {
    const Date now = m_now();
    if (program.isLive(now)) {
        return Moment::Current;
    }
    return program.stop <= now ? Moment::Past : Moment::Future;
}

int EPGProgramListModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(m_programs.size());
}

QVariant EPGProgramListModel::data(const QModelIndex& index, int role) const {
    if (!checkIndex(index, CheckIndexOption::IndexIsValid | CheckIndexOption::ParentIsInvalid)) {
        return {};
    }
    const EPGProgram& program = m_programs[static_cast<std::size_t>(index.row())];
    switch (role) {
    case TimeRole:
        return QString::fromStdString(m_texts.clockText(program.start));
    case Qt::DisplayRole:
    case TitleRole:
        return shownText(program.title);
    case DetailRole:
        return shownText(program.desc.value_or(std::string()));
    case MomentRole:
        return static_cast<int>(momentOf(program));
    case CanCatchupRole:
        return canCatchup(index.row());
    default:
        return {};
    }
}

QHash<int, QByteArray> EPGProgramListModel::roleNames() const {
    return {{TimeRole, "time"},
            {TitleRole, "title"},
            {DetailRole, "detail"},
            {MomentRole, "moment"},
            {CanCatchupRole, "canCatchup"}};
}

} // namespace ondavia
