#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace ondavia {

/// A text that some servers send as a number. Decoding it never fails: what is neither text nor number
/// is absent. A whole number beyond 64 bits has no outcome at all and is a fatal fault, once the rest of its
/// reply has been found to be well.
struct FlexibleString final {
    std::optional<std::string> value;

    bool operator==(const FlexibleString&) const = default;
};

/// An integer that some servers send as a text. Decoding it never fails: what holds no 64-bit integer
/// is absent.
struct FlexibleInt final {
    std::optional<std::int64_t> value;

    bool operator==(const FlexibleInt&) const = default;
};

} // namespace ondavia
