#pragma once

#include <cstddef>
#include <cstdint>

namespace ondavia::demo {

/// A well-spread 64-bit value of two inputs. Everything the catalogue "chooses" comes from here, so the
/// same seed gives the same catalogue on every machine.
constexpr std::uint64_t mix(std::uint64_t a, std::uint64_t b = 0) {
    std::uint64_t x = a * 0x9E3779B97F4A7C15ULL + b + 0x632BE59BD9B4E019ULL;
    x = (x ^ (x >> 30)) * 0xBF58476D1CE4E5B9ULL;
    x = (x ^ (x >> 27)) * 0x94D049BB133111EBULL;
    return x ^ (x >> 31);
}

/// One entry of a table, chosen by a mixed value.
template<typename Table> constexpr const auto& pick(const Table& table, std::uint64_t value) {
    return table[static_cast<std::size_t>(value % table.size())];
}

} // namespace ondavia::demo
