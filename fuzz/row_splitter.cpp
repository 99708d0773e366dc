#include "FuzzSupport.h"
#include "protocol/wire/ListDecoder.h"

#include <iterator>
#include <vector>

namespace {

using namespace ondavia;
using Rows = std::vector<XtreamVodStream>;

/// The list decoded while it arrives, in pieces and batches of the given sizes.
Rows decodedInPieces(std::string_view json, std::size_t piece, std::size_t batchBytes) {
    Rows all;
    XtreamListDecoder<XtreamVodStream> decoder(
        "fuzz", [&](Rows&& rows) { std::move(rows.begin(), rows.end(), std::back_inserter(all)); },
        batchBytes);
    for (std::size_t at = 0; at < json.size(); at += piece) {
        decoder.feed(json.substr(at, piece));
    }
    decoder.finish();
    fuzzing::require(decoder.rowCount() == static_cast<std::int64_t>(all.size()), "rows are counted");
    return all;
}

Rows decodedWhole(std::string_view json) {
    return json.size() < RowSplitter::shortestText ? Rows() : decodeReply<Rows>(json, "fuzz");
}

} // namespace

/// The first two bytes choose the sizes; the rest is the list.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size < 2) {
        return 0;
    }
    fuzzing::prepareOnce();
    const std::string_view json = fuzzing::textOf(data + 2, size - 2);
    const std::size_t piece = data[0] + std::size_t{1};
    const std::size_t batchBytes = std::size_t{data[1]} * 4;
    const auto expected = fuzzing::outcomeOf([json] { return decodedWhole(json); });
    const auto actual = fuzzing::outcomeOf([&] { return decodedInPieces(json, piece, batchBytes); });
    fuzzing::require(actual == expected, "both give the same rows or refuse alike");
    return 0;
}
