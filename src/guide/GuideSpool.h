#pragma once

#include "platform/URLSession.h"

#include <condition_variable>
#include <cstdint>
#include <filesystem>
#include <mutex>
#include <span>
#include <stop_token>

namespace ondavia {

/// A guide's document between its download and its parser: a file without a name that only this object can
/// read and that is gone with it. The parser follows the download as the file grows, and neither holds the
/// other up.
///
/// The reader's calls come from the transfer's thread, `read`, `waitForEnd` and `dropRest` from the
/// parser's, `fail` and `refuseRest` from any.
class GuideSpool final : public URLBodyReader {
public:
    /// `folder` is made when needed.
    explicit GuideSpool(std::filesystem::path folder)
        : m_folder(std::move(folder)) {}
    ~GuideSpool() override;
    GuideSpool(const GuideSpool&) = delete;
    GuideSpool& operator=(const GuideSpool&) = delete;

    /// A guide is read whatever the status says.
    void begin(std::optional<int>) override {}
    /// Raises std::system_error when the file cannot be written.
    void receive(std::string_view bytes) override;
    void finish() override;

    /// The transfer failed: there will be no whole document.
    void fail();

    /// Waits for the next bytes and puts them into `block`. Their number; 0 when there are no more, be it
    /// that the document is whole, that the transfer failed or that `stop` was requested. Raises
    /// std::system_error.
    [[nodiscard]] std::size_t read(std::span<char> block, const std::stop_token& stop);
    /// Waits for the end of the transfer. Whether the document arrived whole.
    [[nodiscard]] bool waitForEnd(const std::stop_token& stop);
    /// The rest of the document need not be kept.
    void dropRest();
    /// The rest of the document is not wanted: the transfer ends when it brings more.
    void refuseRest();

private:
    enum class Transfer { Running, Whole, Failed };
    enum class Rest { Kept, Dropped, Refused };

    void write(std::string_view bytes);

    std::filesystem::path m_folder;
    std::mutex m_mutex;
    std::condition_variable_any m_changed;
    // Under the mutex:
    int m_file = -1;
    std::uint64_t m_written = 0;
    Transfer m_transfer = Transfer::Running;
    Rest m_rest = Rest::Kept;
    // The parser's thread's:
    std::uint64_t m_read = 0;
};

} // namespace ondavia
