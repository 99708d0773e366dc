#pragma once

#include <QAbstractListModel>

#include <algorithm>
#include <functional>
#include <iterator>
#include <utility>
#include <vector>

namespace ondavia {

/// A list whose rows can become others without its views losing their place. Main thread.
class SteadyListModel : public QAbstractListModel {
    Q_OBJECT

public:
    using QAbstractListModel::QAbstractListModel;

    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const final {
        return parent.isValid() ? 0 : size();
    }

protected:
    [[nodiscard]] virtual int size() const = 0;

    void tellChanged(int first, int last, const QList<int>& roles = {}) {
        if (first <= last) {
            Q_EMIT dataChanged(index(first), index(last), roles);
        }
    }

    /// Rows without names of their own: each changes where it stands, and the list grows and shrinks at its
    /// end.
    template<class Row> void replaceRows(std::vector<Row>& rows, std::vector<Row> next) {
        cut(rows, next.size());
        const std::size_t kept = rows.size();
        const auto firstNew = next.begin() + static_cast<std::ptrdiff_t>(kept);
        std::move(next.begin(), firstNew, rows.begin());
        tellChanged(0, static_cast<int>(kept) - 1);
        if (firstNew != next.end()) {
            beginInsertRows({}, static_cast<int>(kept), static_cast<int>(next.size()) - 1);
            rows.insert(rows.end(), firstNew, next.end());
            endInsertRows();
        }
    }

    /// Rows that are known by `name`: one that stays goes to its new place, with what the views know of it.
    template<class Row, class Name> void mergeRows(std::vector<Row>& rows, std::vector<Row> next, Name name) {
        removeMissing(rows, next, name);
        for (std::size_t place = 0; place < next.size(); ++place) {
            const auto from = rows.begin() + static_cast<std::ptrdiff_t>(place);
            const auto found = std::find_if(from, rows.end(), [&](const Row& row) {
                return std::invoke(name, row) == std::invoke(name, next[place]);
            });
            bring(rows, place, found, next[place]);
        }
        cut(rows, next.size());
        const bool isSame = rows == next;
        rows = std::move(next);
        if (!isSame) {
            tellChanged(0, size() - 1);
        }
    }

private:
    template<class Row, class Name>
    void removeMissing(std::vector<Row>& rows, const std::vector<Row>& next, Name name) {
        for (std::size_t place = rows.size(); place-- > 0;) {
            const bool stays = std::any_of(next.begin(), next.end(), [&](const Row& row) {
                return std::invoke(name, row) == std::invoke(name, rows[place]);
            });
            if (!stays) {
                const int row = static_cast<int>(place);
                beginRemoveRows({}, row, row);
                rows.erase(rows.begin() + row);
                endRemoveRows();
            }
        }
    }
    template<class Row>
    void bring(std::vector<Row>& rows, std::size_t place, typename std::vector<Row>::iterator found,
               const Row& wanted) {
        const int to = static_cast<int>(place);
        if (found == rows.end()) {
            beginInsertRows({}, to, to);
            rows.insert(rows.begin() + to, wanted);
            endInsertRows();
        } else if (const int from = static_cast<int>(found - rows.begin()); from > to) {
            beginMoveRows({}, from, from, {}, to);
            std::rotate(rows.begin() + to, found, std::next(found));
            endMoveRows();
        }
    }
    template<class Row> void cut(std::vector<Row>& rows, std::size_t length) {
        if (rows.size() > length) {
            beginRemoveRows({}, static_cast<int>(length), static_cast<int>(rows.size()) - 1);
            rows.erase(rows.begin() + static_cast<std::ptrdiff_t>(length), rows.end());
            endRemoveRows();
        }
    }
};

} // namespace ondavia
