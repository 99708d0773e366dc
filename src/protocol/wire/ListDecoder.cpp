#include "protocol/wire/ListDecoder.h"

#include "protocol/wire/WireDecoder.h"

namespace ondavia {

static_assert(RowSplitter::padding >= wire::JSONParser::padding);

template<class Row>
XtreamListDecoder<Row>::XtreamListDecoder(std::string action, RowsHandler onRows, std::size_t batchBytes)
    : m_action(std::move(action))
    , m_onRows(std::move(onRows))
    , m_parser(std::make_unique<wire::JSONParser>())
    , m_splitter(
          m_action, [this](std::string_view batch) { decodeBatch(batch); }, batchBytes) {}

template<class Row> XtreamListDecoder<Row>::~XtreamListDecoder() = default;

template<class Row> void XtreamListDecoder<Row>::decodeBatch(std::string_view batch) {
    wire::Element list;
    if (const auto error = m_parser->parsePadded(batch).get(list)) {
        failAtBrokenRow(batch, simdjson::error_message(error));
    }
    auto rows = wire::decodeExactly(*m_parser, list, batch, [this](wire::Element element) {
        wire::WireDecoder decoder(m_action, *m_parser);
        auto decoded = decoder.rows<Row>(element, m_rowCount);
        m_hasFatalNumber = m_hasFatalNumber || decoder.hasFatalNumber();
        return decoded;
    });
    m_rowCount += static_cast<std::int64_t>(rows.size());
    m_onRows(std::move(rows));
}

template<class Row> void XtreamListDecoder<Row>::finish() {
    m_splitter.finish();
    if (m_hasFatalNumber) {
        raiseFatalNumber();
    }
}

/// The parser doesn't say where it stopped, so the rows of the batch are tried one by one.
template<class Row> void XtreamListDecoder<Row>::failAtBrokenRow(std::string_view batch, std::string reason) {
    std::int64_t row = m_rowCount;
    RowSplitter oneByOne(
        m_action,
        [&](std::string_view single) {
            if (m_parser->parsePadded(single).error() != simdjson::SUCCESS) {
                throw DecodingError({m_action, row, {}, "JSON", reason});
            }
            ++row;
        },
        0);
    oneByOne.feed(batch);
    oneByOne.finish();
    throw DecodingError({m_action, {}, {}, "JSON", std::move(reason)});
}

template class XtreamListDecoder<XtreamLiveStream>;
template class XtreamListDecoder<XtreamVodStream>;
template class XtreamListDecoder<XtreamSeriesItem>;

} // namespace ondavia
