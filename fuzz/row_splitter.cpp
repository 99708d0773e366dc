#include "FuzzSupport.h"
#include "protocol/wire/ListDecoder.h"

#include <iterator>
#include <vector>

namespace {

using namespace ondavia;
using Rows = std::vector<XtreamLiveStream>;

/// The list decoded while it arrives, in pieces and batches of the given sizes.
std::optional<Rows> decodedInPieces(std::string_view json, std::size_t piece, std::size_t batchBytes) {
    Rows all;
    try {
        XtreamListDecoder<XtreamLiveStream> decoder(
            "fuzz", [&](Rows&& rows) { std::move(rows.begin(), rows.end(), std::back_inserter(all)); },
            batchBytes);
        for (std::size_t at = 0; at < json.size(); at += piece) {
            decoder.feed(json.substr(at, piece));
        }
        decoder.finish();
        fuzzing::require(decoder.rowCount() == static_cast<std::int64_t>(all.size()), "rows are counted");
    } catch (const DecodingError&) {
        return std::nullopt;
    }
    return all;
}

} // namespace

/// The first two bytes choose the sizes; the rest is the list.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size < 2) {
        return 0;
    }
    fuzzing::prepareOnce();
    const std::string_view json = fuzzing::textOf(data + 2, size - 2);
    const auto expected = json.size() < RowSplitter::shortestText ? Rows() : fuzzing::decoded<Rows>(json);
    const auto actual = decodedInPieces(json, data[0] + std::size_t{1}, std::size_t{data[1]} * 4);
    fuzzing::require(actual.has_value() == expected.has_value(), "both accept or refuse alike");
    fuzzing::require(actual == expected, "both give the same rows");
    return 0;
}
