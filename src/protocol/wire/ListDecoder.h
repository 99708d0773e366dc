#pragma once

#include "protocol/wire/CatalogueRecords.h"
#include "protocol/wire/DecodingError.h"
#include "protocol/wire/RowSplitter.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace ondavia {

namespace wire {
class JSONParser;
}

/// Decodes a catalogue list while it arrives, with the outcomes of `decodeReply` over the whole text.
/// Memory: that of RowSplitter plus the parse of one batch, whatever the length of the list.
///
/// A reply is one whole: when an error is raised, whoever took the rows drops them. Any one thread; for
/// XtreamLiveStream, XtreamVodStream and XtreamSeriesItem.
template<class Row> class XtreamListDecoder final {
public:
    /// Takes rows in the order of the list, on the thread that feeds. What it throws leaves `feed` or
    /// `finish`.
    using RowsHandler = std::function<void(std::vector<Row>&& rows)>;

    /// `action` is for the error text.
    XtreamListDecoder(std::string action, RowsHandler onRows,
                      std::size_t batchBytes = RowSplitter::defaultBatchBytes);
    ~XtreamListDecoder();
    XtreamListDecoder(const XtreamListDecoder&) = delete;
    XtreamListDecoder& operator=(const XtreamListDecoder&) = delete;

    /// Raises DecodingError.
    void feed(std::string_view bytes) { m_splitter.feed(bytes); }
    /// After the last byte of a list that arrived whole. Raises DecodingError; a number of a kind that has no
    /// outcome ends the process here, and not while the list may still turn out to be none.
    void finish();

    /// Rows handed out so far.
    [[nodiscard]] std::int64_t rowCount() const { return m_rowCount; }

private:
    void decodeBatch(std::string_view batch);
    [[noreturn]] void failAtBrokenRow(std::string_view batch, std::string reason);

    std::string m_action;
    RowsHandler m_onRows;
    std::unique_ptr<wire::JSONParser> m_parser;
    RowSplitter m_splitter;
    std::int64_t m_rowCount = 0;
    bool m_hasFatalNumber = false;
};

} // namespace ondavia
