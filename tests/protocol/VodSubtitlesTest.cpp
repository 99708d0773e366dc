#include "ClientSupport.h"

#include "protocol/wire/Decoding.h"
#include "support/HttpServer.h"
#include "support/TestSupport.h"

#include <gmock/gmock.h>
#include <mutex>

namespace ondavia {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using testing::LogCapture;
using ::testing::Not;
using testing::resultOf;
using ::testing::SizeIs;
using Texts = std::vector<std::string>;

class VodSubtitlesTest : public ::testing::Test {
protected:
    VodSubtitlesTest() {
        http.server.Get("/player_api.php",
                        [this](const httplib::Request& request, httplib::Response& response) {
                            const std::lock_guard lock(m_mutex);
                            m_request = request;
                            response.status = m_status;
                            // The server compresses JSON, at a pace that would be most of a test's time.
                            response.set_content(m_body, "application/octet-stream");
                        });
        http.start();
    }

    void answer(std::string body, int status = 200) {
        const std::lock_guard lock(m_mutex);
        m_body = std::move(body);
        m_status = status;
    }
    Texts found(const std::string& body) {
        answer(body);
        return found();
    }
    Texts found() { return resultOf(client()->getSubtitleURLsForVOD(42)); }
    /// Of a detail record whose subtitles are this list.
    Texts foundInList(const std::string& list) { return found(R"({"info":{"subtitles":[)" + list + "]}}"); }

    [[nodiscard]] std::shared_ptr<XtreamAPIClient> client() const {
        return testing::makeClient(http.url(), "some-user", "some-password");
    }
    [[nodiscard]] Texts debugLines() const { return log.messages(LogCategory::subtitle, LogLevel::Debug); }
    [[nodiscard]] Texts errorLines() const { return log.messages(LogCategory::subtitle, LogLevel::Error); }
    [[nodiscard]] static std::string fetchError(URLError::Kind kind) {
        return "VOD 42: fetch error code=" + std::to_string(static_cast<int>(kind)) + " domain=URLError";
    }
    [[nodiscard]] httplib::Request request() {
        const std::lock_guard lock(m_mutex);
        return m_request;
    }

    testing::HttpServer http;
    LogCapture log;

private:
    std::mutex m_mutex;
    httplib::Request m_request;
    std::string m_body;
    int m_status = 200;
};

TEST_F(VodSubtitlesTest, asksForTheDetailsOnceAndAddsNoHeader) {
    EXPECT_THAT(foundInList(R"("http://cdn.example/a.srt")"), ElementsAre("http://cdn.example/a.srt"));
    EXPECT_EQ(request().target,
              "/player_api.php?username=some-user&password=some-password&action=get_vod_info&vod_id=42");
    EXPECT_FALSE(request().has_header("User-Agent") &&
                 request().get_header_value("User-Agent").starts_with("VLC"));
    EXPECT_THAT(debugLines(), ElementsAre("VOD 42: info.subtitles -> 1 raw, 1 valid URLs"));
    EXPECT_THAT(errorLines(), IsEmpty());
}

TEST_F(VodSubtitlesTest, triesEveryPlaceInItsOrder) {
    const std::string last = R"("subtitles":["/root.srt"])";
    const std::string third = R"("movie_data":{"subtitles":["/data.srt"]},)";
    const std::string second = R"("info":{"subs":["/subs.srt"]},)";
    const std::string first = R"("info":{"subs":["/subs.srt"],"subtitles":["/first.srt"]},)";
    EXPECT_THAT(found("{" + first + third + last + "}"), ElementsAre(http.url("/first.srt")));
    EXPECT_THAT(found("{" + second + third + last + "}"), ElementsAre(http.url("/subs.srt")));
    EXPECT_THAT(found("{" + third + last + "}"), ElementsAre(http.url("/data.srt")));
    EXPECT_THAT(found("{" + last + "}"), ElementsAre(http.url("/root.srt")));
    EXPECT_THAT(debugLines(), ElementsAre("VOD 42: info.subtitles -> 1 raw, 1 valid URLs",
                                          "VOD 42: info.subs -> 1 raw, 1 valid URLs",
                                          "VOD 42: movie_data.subtitles -> 1 raw, 1 valid URLs",
                                          "VOD 42: subtitles -> 1 raw, 1 valid URLs"));
}

TEST_F(VodSubtitlesTest, passesAnEmptyListOver) {
    EXPECT_THAT(found(R"({"info":{"subtitles":[]},"movie_data":{"subtitles":["/b.srt"]}})"),
                ElementsAre(http.url("/b.srt")));
    EXPECT_THAT(debugLines(), ElementsAre("VOD 42: movie_data.subtitles -> 1 raw, 1 valid URLs"));
}

TEST_F(VodSubtitlesTest, goesOnWhereNoElementGivesAUrl) {
    EXPECT_THAT(found(R"({"info":{"subtitles":[{"lang":"pt"},7,null," "],"subs":["/b.srt"]}})"),
                ElementsAre(http.url("/b.srt")));
    EXPECT_THAT(debugLines(), ElementsAre("VOD 42: info.subtitles -> 4 raw, 0 valid URLs",
                                          "VOD 42: info.subs -> 1 raw, 1 valid URLs"));
}

TEST_F(VodSubtitlesTest, passesOverWhatIsNoListAndNamesItsType) {
    const auto typeLine = [this](const std::string& value) {
        const std::size_t before = debugLines().size();
        EXPECT_THAT(found(R"({"info":{"subtitles":)" + value + R"(,"name":"x"},"movie_data":{}})"),
                    IsEmpty());
        Texts lines = debugLines();
        lines.erase(lines.begin(), lines.begin() + static_cast<std::ptrdiff_t>(before));
        EXPECT_THAT(lines, SizeIs(3));
        EXPECT_EQ(lines.at(0), "VOD 42: no subtitles found. Root keys: [info, movie_data]");
        EXPECT_EQ(lines.at(1), "VOD 42: info keys: [name, subtitles]");
        return lines.at(2);
    };
    EXPECT_EQ(typeLine(R"("http://cdn.example/a.srt")"), "VOD 42: info.subtitles type=text");
    EXPECT_EQ(typeLine(R"({"url":"/a.srt"})"), "VOD 42: info.subtitles type=object");
    EXPECT_EQ(typeLine("[]"), "VOD 42: info.subtitles type=list");
    EXPECT_EQ(typeLine("null"), "VOD 42: info.subtitles type=null");
    EXPECT_EQ(typeLine("true"), "VOD 42: info.subtitles type=boolean");
    EXPECT_EQ(typeLine("7"), "VOD 42: info.subtitles type=number");
    EXPECT_EQ(typeLine("7.5e3"), "VOD 42: info.subtitles type=number");
}

TEST_F(VodSubtitlesTest, tellsWhichKeysThereAreWhereNothingIsFound) {
    EXPECT_THAT(found(R"({"zeta":1,"info":[],"Alfa":2,"movie_data":{"subtitles":"x"}})"), IsEmpty());
    EXPECT_THAT(debugLines(),
                ElementsAre("VOD 42: no subtitles found. Root keys: [Alfa, info, movie_data, zeta]"));
    EXPECT_THAT(found("{}"), IsEmpty());
    EXPECT_EQ(debugLines().back(), "VOD 42: no subtitles found. Root keys: []");
    EXPECT_THAT(found(R"({"info":{}})"), IsEmpty());
    EXPECT_EQ(debugLines().back(), "VOD 42: info keys: []");
}

TEST_F(VodSubtitlesTest, tellsNoSecretAndNoEndOfKeys) {
    std::string keys = R"("http://tv.example/movie/some-user/some-password/1.mkv":1)";
    for (int number = 1000; number < 100'000; ++number) {
        keys += ",\"" + std::to_string(number) + "\":1";
    }
    keys += ",\"" + std::string(100'000, 'x') + "\":1";
    EXPECT_THAT(found("{" + keys + "}"), IsEmpty());
    ASSERT_THAT(debugLines(), SizeIs(1));
    EXPECT_LT(debugLines()[0].size(), 6000U);
    EXPECT_THAT(found(R"({"http://tv.example/movie/some-user/some-password/1.mkv":1})"), IsEmpty());
    EXPECT_THAT(log.text(), Not(HasSubstr("some-")));
    EXPECT_THAT(log.text(), Not(HasSubstr("1.mkv")));
}

TEST_F(VodSubtitlesTest, takesTheFirstKeyOfAnElementThatHoldsAText) {
    EXPECT_THAT(foundInList(R"({"file":"f","subtitle_url":"e","src":"d","href":"c","link":"b","url":"a"})"),
                ElementsAre(http.url("/a")));
    EXPECT_THAT(foundInList(R"({"file":"f","subtitle_url":"e","src":"d","href":"c","link":"b"})"),
                ElementsAre(http.url("/b")));
    EXPECT_THAT(foundInList(R"({"file":"f","subtitle_url":"e","src":"d","href":"c"})"),
                ElementsAre(http.url("/c")));
    EXPECT_THAT(foundInList(R"({"file":"f","subtitle_url":"e","src":"d"})"), ElementsAre(http.url("/d")));
    EXPECT_THAT(foundInList(R"({"file":"f","subtitle_url":"e"})"), ElementsAre(http.url("/e")));
    EXPECT_THAT(foundInList(R"({"file":"f"})"), ElementsAre(http.url("/f")));
    EXPECT_THAT(foundInList(R"({"url":"","file":"x.srt"})"), ElementsAre(http.url("/x.srt")));
    EXPECT_THAT(foundInList(R"({"url":7,"link":null,"href":["h"],"src":{"url":"s"},"file":"x.srt"})"),
                ElementsAre(http.url("/x.srt")));
}

TEST_F(VodSubtitlesTest, aKeyOfBlanksIsATextAndGivesNothing) {
    EXPECT_THAT(foundInList(R"({"url":" \n","file":"x.srt"},"a.srt")"), ElementsAre(http.url("/a.srt")));
}

TEST_F(VodSubtitlesTest, makesTheSameUrlOfAPathWithAndWithoutItsSlash) {
    EXPECT_THAT(foundInList(R"("subs/a.srt","/subs/a.srt")"),
                ElementsAre(http.url("/subs/a.srt"), http.url("/subs/a.srt")));
}

TEST_F(VodSubtitlesTest, trimsAndTellsAddressesFromPathsByTheirExactBeginning) {
    EXPECT_THAT(foundInList(R"("\t https://cdn.example/a.srt\r\n","HTTP://cdn.example/b.srt","ftp://c/d",)"
                            R"("//cdn.example/e.srt","\u00a0/f.srt ")"),
                ElementsAre("https://cdn.example/a.srt", http.url("/HTTP://cdn.example/b.srt"),
                            http.url("/ftp://c/d"), http.url("//cdn.example/e.srt"), http.url("/f.srt")));
}

TEST_F(VodSubtitlesTest, takesAMixedListElementByElementAndKeepsItsOrder) {
    EXPECT_THAT(
        foundInList(R"("b.srt",{"link":"http://cdn.example/a.vtt"},"",3,[ "no" ],{"url":"b.srt"},)"
                    R"({"name":"x"},true,"no url at all","http://[","http://cdn.example/%zz","c")"),
        ElementsAre(http.url("/b.srt"), "http://cdn.example/a.vtt", http.url("/b.srt"), http.url("/c")));
    EXPECT_THAT(debugLines(), ElementsAre("VOD 42: info.subtitles -> 12 raw, 4 valid URLs"));
}

TEST_F(VodSubtitlesTest, neverLogsAnAddress) {
    EXPECT_THAT(foundInList(R"("http://cdn.example/secret-path/a.srt","//%%")"), SizeIs(1));
    answer("no", 403);
    EXPECT_THAT(found(), IsEmpty());
    EXPECT_THAT(log.text(), Not(HasSubstr("cdn.example")));
    EXPECT_THAT(log.text(), Not(HasSubstr("some-")));
}

TEST_F(VodSubtitlesTest, anAccountThatMakesNoUrlFindsNothing) {
    const auto blank = testing::makeClient(http.url(), "some-user", "with a blank");
    EXPECT_THAT(resultOf(blank->getSubtitleURLsForVOD(-7)), IsEmpty());
    EXPECT_THAT(debugLines(), ElementsAre("VOD -7: invalid API URL"));
    EXPECT_EQ(request().target, "");
}

TEST_F(VodSubtitlesTest, aTransportThatFailsFindsNothing) {
    http.stop();
    EXPECT_THAT(found(), IsEmpty());
    EXPECT_THAT(errorLines(), ElementsAre(fetchError(URLError::Kind::Unreachable)));
    EXPECT_THAT(debugLines(), IsEmpty());
}

TEST_F(VodSubtitlesTest, anErrorOfTheServerFindsNothingWhateverItsBodySays) {
    const std::string body = R"({"subtitles":["/a.srt"]})";
    for (const int status : {404, 500, 304}) {
        answer(body, status);
        EXPECT_THAT(found(), IsEmpty());
        EXPECT_EQ(errorLines().back(), "VOD 42: HTTP " + std::to_string(status));
    }
    EXPECT_THAT(debugLines(), IsEmpty());
    for (const int status : {200, 299}) {
        answer(body, status);
        EXPECT_THAT(found(), SizeIs(1)) << status;
    }
}

TEST_F(VodSubtitlesTest, whatIsNoJsonObjectFindsNothing) {
    std::string nested = R"({"subtitles":["/a.srt"],"x":)";
    nested += std::string(100'000, '[') + std::string(100'000, ']') + "}";
    const Texts bodies{"",
                       "<html>blocked</html>",
                       "[]",
                       R"(["/a.srt"])",
                       "\"text\"",
                       "null",
                       R"({"subtitles":["/a.srt"])",
                       "{\"subtitles\":[\"/\xC3\x28.srt\"]}",
                       std::string("{\"subtitles\":[\"/a.srt\"]}\0", 25),
                       nested};
    for (const std::string& body : bodies) {
        EXPECT_THAT(found(body), IsEmpty()) << body.substr(0, 50);
    }
    EXPECT_EQ(debugLines(), Texts(bodies.size(), "VOD 42: response is not a JSON object"));
    EXPECT_THAT(errorLines(), IsEmpty());
}

TEST_F(VodSubtitlesTest, aNumberBeyondAllBoundsIsStillJson) {
    const std::string digits(400, '9');
    EXPECT_THAT(found(R"({"a":)" + digits + R"(,"b":1e999,"info":{"subtitles":[)" + digits + R"(]}})"),
                IsEmpty());
    EXPECT_EQ(debugLines().front(), "VOD 42: info.subtitles -> 1 raw, 0 valid URLs");
    EXPECT_THAT(found(R"({"a":18446744073709551616,"subtitles":["/a.srt"]})"),
                ElementsAre(http.url("/a.srt")));
}

TEST_F(VodSubtitlesTest, aByteOrderMarkStandsInNobodysWay) {
    EXPECT_THAT(found("\xEF\xBB\xBF{\"subtitles\":[\"/a.srt\"]}"), SizeIs(1));
}

TEST_F(VodSubtitlesTest, ofAKeyThatStandsTwiceTheLastCounts) {
    EXPECT_THAT(found(R"({"subtitles":["/a.srt"],"subtitles":["/b.srt"]})"), ElementsAre(http.url("/b.srt")));
}

TEST_F(VodSubtitlesTest, aReplyBeyondItsBoundsFindsNothing) {
    const std::string start = R"({"subtitles":["/a.srt"],"plot":")";
    answer(start + std::string(maximumReplyBytes, 'x') + "\"}");
    EXPECT_THAT(found(), IsEmpty());
    std::string list = R"({"subtitles":["/a.srt")";
    for (std::size_t count = 0; count < maximumReplyElements; ++count) {
        list += ",1";
    }
    EXPECT_THAT(found(list + "]}"), IsEmpty());
    EXPECT_THAT(errorLines(),
                ElementsAre(fetchError(URLError::Kind::TooLong), fetchError(URLError::Kind::TooLong)));
}

TEST_F(VodSubtitlesTest, theTaskOutlivesWhoeverMadeTheClient) {
    answer(R"({"subtitles":["/a.srt"]})");
    auto provider = client();
    auto task = provider->getSubtitleURLsForVOD(42);
    provider.reset();
    EXPECT_THAT(resultOf(std::move(task)), SizeIs(1));
}

} // namespace
} // namespace ondavia
