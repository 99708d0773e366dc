#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

namespace ondavia {

/// Cuts the text of one JSON array into batches of whole rows while the text arrives.
///
/// It knows brackets, commas and strings; the grammar within the rows is for whoever parses a batch.
/// Together the two accept exactly what a parse of the whole text accepts, under the bounds below. A
/// text of fewer than 5 bytes, whatever it holds, counts as an empty list.
///
/// Memory: at most one row, one batch and one slice of input (64 KiB). Each byte is looked at once. Any
/// one thread; calls in order.
class RowSplitter final {
public:
    /// The longest row, in bytes with the white space around it; a longer one is a DecodingError.
    static constexpr std::size_t maximumRowBytes = std::size_t{4} << 20;
    /// A batch ends with the first row that makes it this long, in bytes.
    static constexpr std::size_t defaultBatchBytes = std::size_t{256} << 10;
    /// Texts of fewer bytes are empty lists.
    static constexpr std::size_t shortestText = 5;
    /// Bytes that may be read behind a batch; they hold no part of it.
    static constexpr std::size_t padding = 64;

    /// Takes one batch, a JSON array of at least one row, valid during the call only. What it throws
    /// leaves `feed` or `finish`.
    using BatchHandler = std::function<void(std::string_view batch)>;

    /// `action` is for the error text.
    RowSplitter(std::string action, BatchHandler onBatch, std::size_t batchBytes = defaultBatchBytes);

    /// Raises DecodingError, after which the splitter is of no further use.
    void feed(std::string_view bytes);
    /// After the last byte; raises DecodingError for a text that ends too soon.
    void finish();

private:
    enum class Phase { BeforeList, Rows, AfterList };
    enum class Ending { Open, Final };

    void append(std::string_view slice);
    void scan(Ending ending);
    void scanBeforeList(Ending ending);
    void scanRows(Ending ending);
    void scanBlock(const char* block);
    void scanAfterList();
    void endRow(std::size_t comma);
    void endList(std::size_t bracket);
    void emitBatch(std::size_t end);
    void requireRowWithin(std::size_t end) const;
    void dropConsumed();
    [[noreturn]] void fail(std::string_view expected, std::string found) const;

    std::string m_action;
    BatchHandler m_onBatch;
    std::size_t m_batchBytes;

    /// Bytes up to `m_end`, then room and padding.
    std::string m_buffer;
    std::size_t m_end = 0;
    std::size_t m_scanned = 0;
    /// Behind the bracket or comma in front of the batch's, and of the row's first byte.
    std::size_t m_batchStart = 0;
    std::size_t m_rowStart = 0;

    std::uint64_t m_received = 0;
    Phase m_phase = Phase::BeforeList;
    bool m_isFirstBatch = true;
    std::int64_t m_depth = 0;
    /// All ones while the last byte scanned is within a string.
    std::uint64_t m_inString = 0;
    /// Whether the last byte scanned escapes the next.
    std::uint64_t m_escapes = 0;
};

} // namespace ondavia
