#pragma once

#include "protocol/wire/AccountRecords.h"
#include "protocol/wire/CatalogueRecords.h"
#include "protocol/wire/DecodingError.h"
#include "protocol/wire/GuideRecords.h"
#include "protocol/wire/SeriesRecords.h"

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace ondavia {

/// The longest text that `decodeReply` looks at, in bytes. The parser's own memory is up to some 14
/// bytes for each of them.
inline constexpr std::size_t maximumReplyBytes = std::size_t{32} << 20;

/// The most list elements that one reply may hold, over all its lists; for a list that is decoded while it
/// arrives, one batch.
inline constexpr std::size_t maximumReplyElements = 250'000;

/// Raises the DecodingError of `decodeReply` for a text of more bytes than it looks at, so that nobody
/// collects more. Any thread.
void requireReplyWithinBound(std::size_t bytes, std::string_view action);

/// Ends the process for a number of the kind that FlexibleString has no outcome for. Only after the whole
/// reply has been found to be well: anything else wrong with it comes first. Any thread.
[[noreturn]] void raiseFatalNumber();

/// Decodes one whole reply. Fields are strict: one value of the wrong JSON type raises DecodingError, as
/// do malformed JSON, invalid UTF-8, nesting beyond 1024 levels and what is beyond the bounds above.
/// Unknown keys are ignored. Of a key that occurs twice the last value counts, though each must be well, and
/// a number that `raiseFatalNumber` is for ends the process in any of them. `action` is for the error text.
/// Any thread.
///
/// There is one for XtreamAuthResponse, XtreamSeriesInfo, XtreamEPGResponse and the vectors of
/// XtreamCategory, XtreamLiveStream, XtreamVodStream and XtreamSeriesItem.
template<class Reply> [[nodiscard]] Reply decodeReply(std::string_view json, std::string_view action = {});

/// The JSON text of a reply, with the keys that decoding reads: an absent field is left out, an absent
/// flexible one is null. For the types of `decodeReply`. Any thread.
template<class Reply> [[nodiscard]] std::string encodeReply(const Reply& reply);

} // namespace ondavia
