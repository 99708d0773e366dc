#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>

namespace ondavia {

/// Bytes for one reader, who may wait for them; any thread, one at a time.
class ByteSource {
public:
    virtual ~ByteSource() = default;
    /// Once, before all else. False when there is nothing to be had.
    [[nodiscard]] virtual bool open() = 0;
    /// Up to `size` bytes, at least one; 0 at the end, -1 for a failure.
    [[nodiscard]] virtual std::int64_t read(char* to, std::size_t size) = 0;
    /// The next read begins there. False where that cannot be.
    [[nodiscard]] virtual bool seek(std::int64_t offset) = 0;
    [[nodiscard]] virtual bool isSeekable() const = 0;
    /// Whole length in bytes, if it is known.
    [[nodiscard]] virtual std::optional<std::int64_t> size() const = 0;
    /// For good, and never waits: a waiting reader is let go. Any thread, at any time.
    virtual void cancel() = 0;
};

} // namespace ondavia
