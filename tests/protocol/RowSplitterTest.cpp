#include "WireSupport.h"

#include "protocol/wire/RowSplitter.h"

namespace ondavia {
namespace {

using testing::decodingErrorOf;

struct Split final {
    std::string joined;
    std::size_t batches = 0;
};

/// The batches of `json`, fed in pieces of `chunk` bytes, joined by commas again.
Split split(std::string_view json, std::size_t chunk, std::size_t batchBytes = 0) {
    Split result;
    RowSplitter splitter(
        "get_rows",
        [&](std::string_view batch) {
            ASSERT_TRUE(batch.starts_with('[') && batch.ends_with(']'));
            result.joined +=
                (result.batches++ == 0 ? "" : ",") + std::string(batch.substr(1, batch.size() - 2));
        },
        batchBytes);
    for (std::size_t at = 0; at < json.size(); at += chunk) {
        splitter.feed(json.substr(at, chunk));
    }
    splitter.finish();
    return result;
}

constexpr std::size_t chunkSizes[] = {1, 3, 63, 64, 65, 1000, 100'000};

TEST(RowSplitter, cutsBetweenRowsOnly) {
    const std::string rows = R"({"a":"x,y]}[{\\","b":[1,[2,3],{"c":"\""}]},{"a":"\\\\\"],"},{},{"d":"\\"})";
    for (const std::size_t chunk : chunkSizes) {
        const Split result = split("[" + rows + "]", chunk);
        EXPECT_EQ(result.joined, rows) << chunk;
        EXPECT_EQ(result.batches, 4U) << chunk;
    }
}

TEST(RowSplitter, findsTheEndOfLongRunsOfBackslashes) {
    for (std::size_t run = 0; run < 200; ++run) {
        // An even run leaves the quotation mark its meaning, an odd one takes it.
        const std::string text = "\"" + std::string(run, '\\') + (run % 2 == 0 ? "\"" : "\"\"");
        const std::string rows = text + "," + text + ",1";
        for (const std::size_t chunk : {std::size_t{1}, std::size_t{64}, std::size_t{1000}}) {
            EXPECT_EQ(split("[" + rows + "]", chunk).batches, 3U) << run;
        }
    }
}

TEST(RowSplitter, makesBatchesOfTheGivenSize) {
    std::string rows;
    for (int row = 0; row < 10'000; ++row) {
        rows += (row == 0 ? "" : ",") + std::string(R"({"name":"abcdefghijklmnop"})");
    }
    for (const std::size_t chunk : {std::size_t{1000}, std::size_t{1'000'000}}) {
        const Split result = split("[" + rows + "]", chunk, 10'000);
        EXPECT_EQ(result.joined, rows);
        EXPECT_EQ(result.batches, (rows.size() + 10'021) / 10'022);
    }
}

TEST(RowSplitter, acceptsEmptyLists) {
    for (const char* json : {"[]   ", "  []  ", "[   ]", "\xEF\xBB\xBF[]", "[\n\n\n]"}) {
        for (const std::size_t chunk : chunkSizes) {
            EXPECT_EQ(split(json, chunk).batches, 0U) << json;
        }
    }
}

TEST(RowSplitter, takesAnyShortTextForAnEmptyList) {
    for (const std::string& text : {std::string(), std::string("[]"), std::string("{}"), std::string("null"),
                                    std::string("<a>"), std::string("\0\0\0\0", 4), std::string("[1,")}) {
        EXPECT_EQ(split(text, 1).batches, 0U) << text;
    }
}

TEST(RowSplitter, refusesWhatIsNotOneWholeList) {
    for (const std::string& text :
         {std::string("{\"a\":1}"), std::string("<html></html>"), std::string("null "),
          std::string("\"text\""), std::string("[1,2,3"), std::string("[1,2,3,"), std::string("[\"abc]"),
          std::string("[1,2]]"), std::string("[1,2] x"), std::string("[1,2],[3]"), std::string("[1,2,]"),
          std::string("[1,2, ]"), std::string("[,1,2]"), std::string("[    }"), std::string("     "),
          std::string("[1,2]\0", 6), std::string("\0[1,2]", 6), std::string(" \xEF\xBB\xBF[1]"),
          std::string("[{\"a\":1}")}) {
        for (const std::size_t chunk : {std::size_t{1}, std::size_t{1000}}) {
            EXPECT_TRUE(decodingErrorOf([&] {
                (void)testing::decodeInPieces<XtreamLiveStream>(text, chunk);
            })) << text;
        }
    }
}

TEST(RowSplitter, seesGarbageFarBehindTheList) {
    for (const std::size_t chunk : chunkSizes) {
        EXPECT_EQ(split("[1,2]" + std::string(1000, ' '), chunk).batches, 2U);
        EXPECT_TRUE(decodingErrorOf([&] { split("[1,2]" + std::string(1000, ' ') + "x", chunk); }));
        EXPECT_EQ(split(std::string(1000, ' ') + "[1,2]", chunk).batches, 2U);
    }
}

TEST(RowSplitter, boundsTheLengthOfARow) {
    const auto listWithRowOf = [](std::size_t bytes) {
        return "[1,\"" + std::string(bytes - 2, 'x') + "\",2]";
    };
    for (const std::size_t chunk : {std::size_t{1000}, std::size_t{10'000'000}}) {
        EXPECT_EQ(split(listWithRowOf(RowSplitter::maximumRowBytes), chunk).batches, 3U);
        const auto error =
            decodingErrorOf([&] { split(listWithRowOf(RowSplitter::maximumRowBytes + 1), chunk); });
        ASSERT_TRUE(error);
        EXPECT_EQ(error->expected(), "row of at most 4 MiB");
    }
}

TEST(RowSplitter, passesOnWhatTheHandlerThrows) {
    RowSplitter splitter("get_rows", [](std::string_view) { throw std::runtime_error("full"); });
    splitter.feed("[1,2,3]");
    EXPECT_THROW(splitter.finish(), std::runtime_error);
}

} // namespace
} // namespace ondavia
