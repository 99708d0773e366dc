#pragma once

#include <random>
#include <string>

namespace ondavia {

/// Makes random UUIDs (version 4) by the million. Seeded once from the system; nothing secret may hang on
/// them. One thread at a time.
class UUIDSource final {
public:
    UUIDSource();

    /// The upper-case text form of a new UUID.
    [[nodiscard]] std::string next();

private:
    std::mt19937_64 m_bits;
};

} // namespace ondavia
