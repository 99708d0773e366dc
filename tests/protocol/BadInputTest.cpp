#include "WireSupport.h"

#include <sys/resource.h>

namespace ondavia {
namespace {

using testing::decodingErrorOf;
using testing::refusal;

/// Peak memory of the process so far, in bytes.
long peakMemory() {
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return usage.ru_maxrss * 1024;
}

std::optional<DecodingError> listRefusal(std::string_view json) {
    return decodingErrorOf([&] { (void)testing::decodeInPieces<XtreamLiveStream>(json, 64 << 10); });
}

std::string nested(int depth, char opening, char closing) {
    return std::string(static_cast<std::size_t>(depth), opening) +
           std::string(static_cast<std::size_t>(depth), closing);
}

TEST(BadInput, nestingOfAHundredThousandLevelsIsRefused) {
    constexpr int levels = 100'000;
    const std::string brackets = nested(levels, '[', ']');
    EXPECT_TRUE(refusal<XtreamAuthResponse>(brackets));
    EXPECT_TRUE(refusal<XtreamAuthResponse>(R"({"user_info":{"x":)" + brackets + "}}"));
    EXPECT_TRUE(listRefusal(brackets));
    EXPECT_TRUE(listRefusal(R"([{"name":"a"},{"x":)" + brackets + "}]"));
    EXPECT_TRUE(listRefusal(std::string(levels, '[')));
    std::string objects = "[";
    for (int level = 0; level < levels; ++level) {
        objects += R"({"a":)";
    }
    EXPECT_TRUE(listRefusal(objects));
    EXPECT_TRUE(refusal<std::vector<XtreamLiveStream>>(objects + "1" + std::string(levels, '}') + "]"));
}

TEST(BadInput, nestingWithinTheLimitIsAccepted) {
    EXPECT_FALSE(listRefusal(R"([{"x":)" + nested(1000, '[', ']') + "}]"));
}

TEST(BadInput, invalidUTF8IsRefused) {
    for (const char* bytes : {"\xFF", "\xC3", "\xC0\x80", "\xED\xA0\x80", "\xF5\x80\x80\x80", "\xE7\x61"}) {
        const std::string text(bytes);
        EXPECT_TRUE(refusal<XtreamAuthResponse>(R"({"user_info":{"message":")" + text + R"("}})"));
        EXPECT_TRUE(listRefusal(R"([{"name":"a"},{"name":")" + text + R"("}])"));
        EXPECT_TRUE(listRefusal(R"([{"unknown)" + text + R"(":"b"}])"));
    }
    EXPECT_TRUE(listRefusal(R"([{"name":"\ud800"}])"));
}

TEST(BadInput, nulBytesAreRefused) {
    const std::string nul(1, '\0');
    EXPECT_TRUE(refusal<XtreamAuthResponse>("{}" + nul));
    EXPECT_TRUE(refusal<XtreamAuthResponse>(R"({"user_info":{"message":")" + nul + R"("}})"));
    EXPECT_TRUE(listRefusal(R"([{"name":"a"}])" + nul));
    EXPECT_TRUE(listRefusal(R"([{"name":"a"},)" + nul + "{}]"));
    EXPECT_TRUE(listRefusal(R"([{"name":"a)" + nul + R"("}])"));
}

TEST(BadInput, aReplyBeyondItsBoundIsRefusedUnread) {
    const std::string text = R"({"user_info":{"message":")" + std::string(maximumReplyBytes, 'x') + R"("}})";
    EXPECT_EQ(refusal<XtreamAuthResponse>(text)->expected(), "reply of at most 32 MiB");
}

TEST(BadInput, aReplyOfCountlessTinyRecordsIsRefused) {
    std::string rows = "{}";
    for (std::size_t row = 0; row < maximumReplyElements; ++row) {
        rows += ",{}";
    }
    const auto error = refusal<XtreamEPGResponse>(R"({"epg_listings":[)" + rows + "]}");
    ASSERT_TRUE(error);
    EXPECT_EQ(error->keyPath(), "epg_listings");
}

#ifdef __SANITIZE_ADDRESS__
/// The sanitizer keeps freed memory for a while.
constexpr long memoryFactor = 4;
#else
constexpr long memoryFactor = 1;
#endif

/// `bytes` of `piece` behind `start`, or as much of it as is taken.
std::optional<DecodingError> feedRepeatedly(std::string_view start, const std::string& piece,
                                            std::size_t bytes) {
    return decodingErrorOf([&] {
        XtreamListDecoder<XtreamLiveStream> decoder("get_live_streams", [](auto&&) {});
        decoder.feed(start);
        for (std::size_t fed = 0; fed < bytes; fed += piece.size()) {
            decoder.feed(piece);
        }
        decoder.finish();
    });
}

TEST(BadInput, anEndlessBodyEndsInBoundedMemory) {
    constexpr long allowance = memoryFactor * (64L << 20);
    constexpr std::size_t endless = std::size_t{2} << 30;
    const std::string zeros(1 << 20, '0');
    const std::string blanks(1 << 20, ' ');
    const std::string brackets(1 << 20, '[');
    const long before = peakMemory();
    EXPECT_TRUE(feedRepeatedly("[\"", zeros, endless));
    EXPECT_TRUE(feedRepeatedly("[", zeros, endless));
    EXPECT_TRUE(feedRepeatedly("[", brackets, endless));
    EXPECT_TRUE(feedRepeatedly("[1", blanks, endless));
    EXPECT_TRUE(feedRepeatedly("[]", brackets, endless));
    EXPECT_LT(peakMemory() - before, allowance);
}

TEST(BadInput, blanksBeforeAListCostNoMemory) {
    constexpr long allowance = memoryFactor * (16L << 20);
    const std::string blanks(1 << 20, ' ');
    const long before = peakMemory();
    EXPECT_TRUE(feedRepeatedly("", blanks, std::size_t{256} << 20));
    EXPECT_LT(peakMemory() - before, allowance);
}

} // namespace
} // namespace ondavia
