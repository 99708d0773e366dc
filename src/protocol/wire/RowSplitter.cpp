#include "protocol/wire/RowSplitter.h"

#include "protocol/wire/DecodingError.h"
#include "protocol/wire/JSONParser.h"

#include <algorithm>
#include <bit>
#include <cstring>
#ifdef __SSE2__
#include <emmintrin.h>
#endif

namespace ondavia {
namespace {

constexpr std::size_t sliceBytes = std::size_t{64} << 10;
constexpr std::size_t blockBytes = 64;
constexpr std::string_view whiteSpace = " \t\r\n";

/// One bit for each byte of a block, the lowest for the first byte.
struct BlockMasks final {
    std::uint64_t quotes = 0;
    std::uint64_t backslashes = 0;
    std::uint64_t commas = 0;
    /// Square and curly alike: they differ in one bit, and the parser minds that they match.
    std::uint64_t opening = 0;
    std::uint64_t closing = 0;
};

#ifdef __SSE2__
BlockMasks classify(const char* block) {
    const auto equal = [](__m128i bytes, char character) {
        return static_cast<std::uint64_t>(
            static_cast<std::uint16_t>(_mm_movemask_epi8(_mm_cmpeq_epi8(bytes, _mm_set1_epi8(character)))));
    };
    BlockMasks masks;
    for (unsigned at = 0; at < blockBytes; at += 16) {
        const __m128i bytes = _mm_loadu_si128(reinterpret_cast<const __m128i*>(block + at));
        const __m128i curled = _mm_or_si128(bytes, _mm_set1_epi8(0x20));
        masks.quotes |= equal(bytes, '"') << at;
        masks.backslashes |= equal(bytes, '\\') << at;
        masks.commas |= equal(bytes, ',') << at;
        masks.opening |= equal(curled, '{') << at;
        masks.closing |= equal(curled, '}') << at;
    }
    return masks;
}
#else
BlockMasks classify(const char* block) {
    BlockMasks masks;
    for (unsigned at = 0; at < blockBytes; ++at) {
        const auto bit = [&](char character, char wanted) {
            return static_cast<std::uint64_t>(character == wanted) << at;
        };
        const char curled = static_cast<char>(block[at] | 0x20);
        masks.quotes |= bit(block[at], '"');
        masks.backslashes |= bit(block[at], '\\');
        masks.commas |= bit(block[at], ',');
        masks.opening |= bit(curled, '{');
        masks.closing |= bit(curled, '}');
    }
    return masks;
}
#endif

/// The bytes that a backslash in front of them escapes. `carry` goes from block to block. A run of
/// backslashes escapes the byte behind it when the run is odd; adding the run to its first bit ripples
/// to that byte, and the parity of the position where the run began tells odd from even.
std::uint64_t escapedBytes(std::uint64_t backslashes, std::uint64_t& carry) {
    constexpr std::uint64_t evenBits = 0x5555555555555555U;
    backslashes &= ~carry;
    const std::uint64_t behindBackslash = (backslashes << 1U) | carry;
    const std::uint64_t oddStarts = backslashes & ~evenBits & ~behindBackslash;
    std::uint64_t evenEnds = 0;
    carry = __builtin_add_overflow(oddStarts, backslashes, &evenEnds) ? 1 : 0;
    return (evenBits ^ (evenEnds << 1U)) & behindBackslash;
}

/// Each bit becomes the parity of all bits up to it: between quotation marks it is 1.
std::uint64_t parityUpTo(std::uint64_t bits) {
    for (unsigned distance = 1; distance < blockBytes; distance *= 2) {
        bits ^= bits << distance;
    }
    return bits;
}

bool isBlank(std::string_view text) {
    return text.find_first_not_of(whiteSpace) == std::string_view::npos;
}

} // namespace

RowSplitter::RowSplitter(std::string action, BatchHandler onBatch, std::size_t batchBytes)
    : m_action(std::move(action))
    , m_onBatch(std::move(onBatch))
    , m_batchBytes(batchBytes) {}

void RowSplitter::feed(std::string_view bytes) {
    m_received += bytes.size();
    while (!bytes.empty()) {
        const auto slice = bytes.substr(0, sliceBytes);
        append(slice);
        scan(Ending::Open);
        dropConsumed();
        bytes.remove_prefix(slice.size());
    }
}

void RowSplitter::finish() {
    if (m_received < shortestText) {
        return;
    }
    scan(Ending::Final);
    if (m_phase != Phase::AfterList) {
        fail(m_phase == Phase::Rows ? "whole list" : "list", "end of the text");
    }
}

void RowSplitter::append(std::string_view slice) {
    if (m_buffer.size() < m_end + slice.size() + padding) {
        m_buffer.resize((m_end + slice.size()) * 3 / 2 + padding);
    }
    std::memcpy(m_buffer.data() + m_end, slice.data(), slice.size());
    m_end += slice.size();
}

void RowSplitter::scan(Ending ending) {
    if (m_phase == Phase::BeforeList) {
        scanBeforeList(ending);
    }
    if (m_phase == Phase::Rows) {
        scanRows(ending);
    }
    if (m_phase == Phase::AfterList) {
        scanAfterList();
    }
}

/// Waits for a block's worth of bytes, so that neither a short text nor half a byte-order mark is taken
/// for something else.
void RowSplitter::scanBeforeList(Ending ending) {
    if (ending == Ending::Open && m_received < blockBytes) {
        return;
    }
    const std::string_view text(m_buffer.data(), m_end);
    if (m_scanned == 0 && text.starts_with(wire::byteOrderMark)) {
        m_scanned = wire::byteOrderMark.size();
    }
    const auto bracket = text.find_first_not_of(whiteSpace, m_scanned);
    if (bracket == std::string_view::npos) {
        // One blank stays in front: a byte-order mark counts at the very start only.
        m_end = 1;
        m_scanned = 1;
        return;
    }
    if (text[bracket] != '[') {
        fail("list", text[bracket] == '{' ? "object" : "text " + excerpt(text.substr(bracket), TextEnd::Cut));
    }
    m_scanned = m_rowStart = m_batchStart = bracket + 1;
    m_depth = 1;
    m_phase = Phase::Rows;
}

void RowSplitter::scanRows(Ending ending) {
    while (m_phase == Phase::Rows && m_end - m_scanned >= blockBytes) {
        scanBlock(m_buffer.data() + m_scanned);
    }
    if (m_phase == Phase::Rows && ending == Ending::Final && m_scanned < m_end) {
        std::memset(m_buffer.data() + m_end, ' ', padding);
        scanBlock(m_buffer.data() + m_scanned);
    }
    if (m_phase == Phase::Rows) {
        requireRowWithin(m_scanned);
    }
}

void RowSplitter::scanBlock(const char* block) {
    const BlockMasks masks = classify(block);
    const std::size_t blockStart = m_scanned;
    m_scanned += blockBytes;

    const auto quotes = masks.quotes & ~escapedBytes(masks.backslashes, m_escapes);
    const auto inString = parityUpTo(quotes) ^ m_inString;
    m_inString = (inString >> 63U) != 0 ? ~std::uint64_t{0} : 0;
    const auto opening = masks.opening & ~inString;
    const auto closing = masks.closing & ~inString;

    if (m_depth > 1 + std::popcount(closing)) {
        m_depth += std::popcount(opening) - std::popcount(closing);
        return;
    }
    for (auto left = opening | closing | (masks.commas & ~inString); left != 0; left &= left - 1) {
        const auto bit = left & (~left + 1);
        const std::size_t position = blockStart + static_cast<std::size_t>(std::countr_zero(left));
        if ((opening & bit) != 0) {
            ++m_depth;
        } else if ((closing & bit) == 0) {
            if (m_depth == 1) {
                endRow(position);
            }
        } else if (--m_depth == 0) {
            endList(position);
            return;
        }
    }
}

void RowSplitter::scanAfterList() {
    const std::string_view rest(m_buffer.data() + m_scanned, m_end - m_scanned);
    if (const auto stray = rest.find_first_not_of(whiteSpace); stray != std::string_view::npos) {
        fail("end of the text", "text " + excerpt(rest.substr(stray), TextEnd::Cut) + " behind the list");
    }
    m_end = m_scanned = 0;
}

void RowSplitter::endRow(std::size_t comma) {
    requireRowWithin(comma);
    m_rowStart = comma + 1;
    if (comma - m_batchStart >= m_batchBytes) {
        emitBatch(comma);
    }
}

void RowSplitter::endList(std::size_t bracket) {
    requireRowWithin(bracket);
    if (m_buffer[bracket] != ']') {
        fail("end of the list", "\"}\"");
    }
    const bool isEmptyList =
        m_isFirstBatch && isBlank({m_buffer.data() + m_batchStart, bracket - m_batchStart});
    if (!isEmptyList) {
        emitBatch(bracket);
    }
    m_scanned = bracket + 1;
    m_phase = Phase::AfterList;
}

/// The batch is handed out where it stands: the commas around it become the brackets of an array.
void RowSplitter::emitBatch(std::size_t end) {
    if (isBlank({m_buffer.data() + m_batchStart, end - m_batchStart})) {
        fail("row", "nothing between the commas");
    }
    m_buffer[m_batchStart - 1] = '[';
    m_buffer[end] = ']';
    m_onBatch({m_buffer.data() + m_batchStart - 1, end - m_batchStart + 2});
    m_isFirstBatch = false;
    m_batchStart = end + 1;
}

void RowSplitter::requireRowWithin(std::size_t end) const {
    if (end > m_rowStart && end - m_rowStart > maximumRowBytes) {
        fail("row of at most 4 MiB", "a longer one");
    }
}

/// Moves what is still needed to the front, one byte before the batch included.
void RowSplitter::dropConsumed() {
    if (m_phase != Phase::Rows || m_batchStart <= 1) {
        return;
    }
    const std::size_t consumed = m_batchStart - 1;
    std::memmove(m_buffer.data(), m_buffer.data() + consumed, m_end - consumed);
    m_end -= consumed;
    m_scanned -= consumed;
    m_rowStart -= consumed;
    m_batchStart = 1;
}

void RowSplitter::fail(std::string_view expected, std::string found) const {
    throw DecodingError({m_action, {}, {}, std::string(expected), std::move(found)});
}

} // namespace ondavia
