#pragma once

#include "store/EntityTraits.h"

#include <map>
#include <string>
#include <tuple>
#include <utility>

namespace ondavia {

/// The user's rows gathered from what is left of several files. Of two rows of one id the later wins: an old
/// copy never takes back what was written after it, and a file that lost its last writes does not hide the
/// newer row of a copy. What only one of them holds is kept, though it may have been deleted since: a
/// favourite too many is the smaller harm.
class UserRows final {
public:
    template<Entity T> void add(T row) {
        auto& rows = std::get<std::map<std::string, T>>(m_rows);
        const auto [found, isNew] = rows.try_emplace(row.id, row);
        if (!isNew && dateOf(found->second) < dateOf(row)) {
            found->second = std::move(row);
        }
    }

    void add(const UserRows& others) {
        others.forEach([this](const auto& row) { add(row); });
    }

    /// Drops the rows that `others` does not hold just so.
    void keepCommon(const UserRows& others) {
        const auto keep = [&others]<class T>(std::map<std::string, T>& rows) {
            const auto& theirs = std::get<std::map<std::string, T>>(others.m_rows);
            std::erase_if(rows, [&theirs](const auto& entry) {
                const auto found = theirs.find(entry.first);
                return found == theirs.end() || found->second != entry.second;
            });
        };
        std::apply([&keep](auto&... rows) { (keep(rows), ...); }, m_rows);
    }

    template<class Receive> void forEach(Receive&& receive) const {
        std::apply(
            [&receive](const auto&... rows) {
                const auto each = [&receive](const auto& map) {
                    for (const auto& entry : map) {
                        receive(entry.second);
                    }
                };
                (each(rows), ...);
            },
            m_rows);
    }

    [[nodiscard]] std::int64_t size() const {
        return std::apply([](const auto&... rows) { return static_cast<std::int64_t>((rows.size() + ...)); },
                          m_rows);
    }

private:
    static Date dateOf(const Favorite& row) { return row.addedAt; }
    static Date dateOf(const WatchHistory& row) { return row.lastWatchedAt; }
    static Date dateOf(const Playlist& row) { return row.lastUpdatedAt; }

    std::tuple<std::map<std::string, Favorite>, std::map<std::string, WatchHistory>,
               std::map<std::string, Playlist>>
        m_rows;
};

} // namespace ondavia
