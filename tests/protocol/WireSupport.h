#pragma once

#include "base/FatalFault.h"
#include "protocol/wire/Decoding.h"
#include "protocol/wire/ListDecoder.h"

#include <gtest/gtest.h>
#include <iterator>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace ondavia::testing {

/// The error that `work` raises; absent when it raises none.
template<class Work> std::optional<DecodingError> decodingErrorOf(Work work) {
    try {
        work();
    } catch (const DecodingError& error) {
        return error;
    }
    return std::nullopt;
}

template<class Reply>
std::optional<DecodingError> refusal(std::string_view json, std::string_view action = {}) {
    return decodingErrorOf([&] { (void)decodeReply<Reply>(json, action); });
}

struct FatalFaultRaised final {};

/// Turns a fatal fault into an exception while it lives.
class FatalFaultTrap final {
public:
    FatalFaultTrap() {
        setFatalFaultHandler([](std::string_view) { throw FatalFaultRaised(); });
    }
    ~FatalFaultTrap() { setFatalFaultHandler(nullptr); }
    FatalFaultTrap(const FatalFaultTrap&) = delete;
    FatalFaultTrap& operator=(const FatalFaultTrap&) = delete;
};

/// `json` through the list decoder in pieces of `chunk` bytes.
template<class Row>
std::vector<Row> decodeInPieces(std::string_view json, std::size_t chunk,
                                std::size_t batchBytes = RowSplitter::defaultBatchBytes) {
    std::vector<Row> all;
    XtreamListDecoder<Row> decoder(
        "get_rows",
        [&](std::vector<Row>&& rows) { std::move(rows.begin(), rows.end(), std::back_inserter(all)); },
        batchBytes);
    for (std::size_t at = 0; at < json.size(); at += chunk) {
        decoder.feed(json.substr(at, chunk));
    }
    decoder.finish();
    EXPECT_EQ(decoder.rowCount(), static_cast<std::int64_t>(all.size()));
    return all;
}

} // namespace ondavia::testing
