#pragma once

#include "platform/linux/ByteSource.h"

#include <atomic>
#include <memory>
#include <string>

namespace ondavia::engine {

/// Bytes that may still be received; several files may share one.
using ByteAllowance = std::shared_ptr<std::atomic<std::int64_t>>;

/// A subtitle file over HTTP or HTTPS. It is there whole before the first byte of it is read: of a file that
/// breaks off mpv would make subtitles that end in the middle of the film.
///
/// What it logs holds no address.
class SubtitleFile final : public ByteSource {
public:
    /// `url`, encoded, may hold the account. A file that overdraws `allowance` is none.
    SubtitleFile(std::string url, ByteAllowance allowance)
        : m_url(std::move(url))
        , m_allowance(std::move(allowance)) {}

    /// Fetches it.
    [[nodiscard]] bool open() override;
    [[nodiscard]] std::int64_t read(char* to, std::size_t size) override;
    [[nodiscard]] bool seek(std::int64_t offset) override;
    [[nodiscard]] bool isSeekable() const override { return true; }
    [[nodiscard]] std::optional<std::int64_t> size() const override;
    /// A transfer ends within about a second.
    void cancel() override { m_isCancelled = true; }

private:
    const std::string m_url;
    const ByteAllowance m_allowance;
    std::string m_bytes;
    std::size_t m_position = 0;
    std::atomic_bool m_isCancelled = false;
};

} // namespace ondavia::engine
