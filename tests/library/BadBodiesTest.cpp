#include "SyncFixture.h"
#include "library/SyncError.h"

#include <fstream>

namespace ondavia::testing {
namespace {

using ::testing::ElementsAre;

constexpr std::int64_t megabyte = 1 << 20;

/// A line of /proc/self/status, in bytes.
std::int64_t memoryLine(const std::string& name) {
    std::ifstream status("/proc/self/status");
    for (std::string line; std::getline(status, line);) {
        if (line.starts_with(name + ":")) {
            return std::stoll(line.substr(name.size() + 1)) * 1024;
        }
    }
    return 0;
}

/// How far the memory in use rises above its present amount.
class MemoryPeak final {
public:
    MemoryPeak() {
        // Makes the present amount the peak.
        std::ofstream("/proc/self/clear_refs") << "5";
        m_before = memoryLine("VmRSS");
    }
    [[nodiscard]] std::int64_t growth() const { return memoryLine("VmHWM") - m_before - quarantine; }

private:
#ifdef __SANITIZE_ADDRESS__
    /// What the address sanitizer keeps of freed memory, to see it used.
    static constexpr std::int64_t quarantine = std::int64_t{256} << 20;
#else
    static constexpr std::int64_t quarantine = 0;
#endif
    std::int64_t m_before = 0;
};

std::string nested(int depth) {
    return R"([{"x":)" + std::string(static_cast<std::size_t>(depth), '[') +
           std::string(static_cast<std::size_t>(depth), ']') + "}]";
}

struct BadBody final {
    const char* name;
    std::function<Reply()> make;
};

void PrintTo(const BadBody& bad, std::ostream* stream) {
    *stream << bad.name;
}

class BadBodiesTest : public SyncFixture, public ::testing::WithParamInterface<BadBody> {};

TEST_P(BadBodiesTest, AListOfThemFailsForGoodAndNothingElseDoes) {
    scriptSmallCatalogue();
    provider.script("get_vod_streams", {GetParam().make()});
    const MemoryPeak peak;
    sync();
    EXPECT_LT(peak.growth(), 150 * megabyte);
    RecordProperty("growthMegabytes", static_cast<int>(peak.growth() / megabyte));
    EXPECT_EQ(provider.requestCount("get_vod_streams"), 4);
    EXPECT_THAT(storedNames(), ElementsAre("Live 1", "Live 2", "Series 20"));
    EXPECT_EQ(appState.totalMovies(), 0);
    EXPECT_EQ(appState.toastMessage(), "Nao foi possivel carregar filmes");
}

TEST_P(BadBodiesTest, ACategoryListOfThemFailsForGoodAndNothingElseDoes) {
    scriptSmallCatalogue();
    provider.script("get_vod_categories", {GetParam().make()});
    const MemoryPeak peak;
    sync();
    EXPECT_LT(peak.growth(), 150 * megabyte);
    RecordProperty("growthMegabytes", static_cast<int>(peak.growth() / megabyte));
    EXPECT_EQ(provider.requestCount("get_vod_categories"), 4);
    EXPECT_EQ(store->mainContext().count<Channel>(), 5);
    EXPECT_TRUE(appState.vodCategories().empty());
    EXPECT_EQ(appState.liveCategories().size(), 2U);
}

TEST_P(BadBodiesTest, AServerThatHasNothingElseLeavesTheOldCatalogue) {
    storeEarlierCatalogue();
    const Reply bad = GetParam().make();
    for (const char* action : {"get_live_categories", "get_vod_categories", "get_series_categories",
                               "get_live_streams", "get_vod_streams", "get_series"}) {
        provider.script(action, {bad});
    }
    const MemoryPeak peak;
    EXPECT_THROW(sync(), SyncError);
    EXPECT_LT(peak.growth(), 400 * megabyte) << "three replies are collected whole at the same time";
    RecordProperty("growthMegabytes", static_cast<int>(peak.growth() / megabyte));
    EXPECT_THAT(storedNames(), ElementsAre("Old A", "Old B"));
}

/// A device with no room for a catalogue.
class FullDeviceBodiesTest : public SyncFixture {
protected:
    FullDeviceBodiesTest()
        : SyncFixture(StoreOptions{.maximumDownloadBytes = 256 << 10}) {}
};

TEST_F(FullDeviceBodiesTest, KeepNoRowsThatCannotBeWritten) {
    const std::string row = R"({"stream_id":1,"name":")" + std::string(1000, 'x') + R"("},)";
    std::string rows;
    for (int count = 0; count < 1000; ++count) {
        rows += row;
    }
    provider.script("get_vod_streams", {longBody("[", rows, 100 * megabyte), body("[]")});
    const MemoryPeak peak;
    // The list ends with a comma, so that one is fetched again.
    EXPECT_THROW(sync(), SyncError);
    EXPECT_LT(peak.growth(), 60 * megabyte);
}

/// `head` and 300 MB of one byte in 300 KB, which take seconds to make.
template<char filler> Reply bomb(const std::string& head) {
    static const std::string packed = packedBomb(head, filler, 300 * megabyte);
    return gzipped(packed);
}

const BadBody badBodies[] = {
    {"HTML", [] { return body("<!DOCTYPE html><html><body>Bad gateway</body></html>"); }},
    {"Truncated", [] { return cutShort(listJSON(ListKind::Movies, {.count = 2000})); }},
    {"WholeButUnfinished", [] { return body(R"([{"stream_id":1,"name":"a"},{"stream_id":2)"); }},
    {"GzipBombOfBlanks", [] { return bomb<' '>("["); }},
    {"GzipBombInAText", [] { return bomb<'x'>(R"([{"stream_id":1,"name":")"); }},
    {"GzipThatIsNone", [] { return gzipped("[]this is no gzip at all"); }},
    {"EndlessText",
     [] { return longBody(R"([{"stream_id":1,"name":")", std::string(1 << 16, 'x'), SIZE_MAX); }},
    {"TwoGigabytesOfNesting", [] { return longBody("[", std::string(1 << 16, '['), 2048UL * megabyte); }},
    {"NestingOfAHundredThousandLevels", [] { return body(nested(100'000)); }},
    {"InvalidUTF8", [] { return body("[{\"stream_id\":1,\"name\":\"\xC0\x80\xFF\"}]"); }},
    {"NulBytes", [] { return body(std::string("[{\"stream_id\":1,\"name\":\"a\0b\"}]", 30)); }},
};

INSTANTIATE_TEST_SUITE_P(Bodies, BadBodiesTest, ::testing::ValuesIn(badBodies),
                         [](const auto& test) { return std::string(test.param.name); });

} // namespace
} // namespace ondavia::testing
