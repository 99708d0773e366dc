#include "WireSupport.h"

#include "base/Redaction.h"
#include "base/Text.h"

namespace ondavia {
namespace {

using testing::decodingErrorOf;
using testing::refusal;

TEST(DecodingError, saysWhatWasExpectedAndWhere) {
    const auto error =
        refusal<std::vector<XtreamVodStream>>(R"([{},{"category_ids":[1,"x"]}])", "get_vod_streams");
    ASSERT_TRUE(error);
    EXPECT_EQ(error->action(), "get_vod_streams");
    EXPECT_EQ(error->row(), 1);
    EXPECT_EQ(error->keyPath(), "category_ids[1]");
    EXPECT_EQ(error->expected(), "integer");
    EXPECT_EQ(error->found(), R"(text "x")");
    EXPECT_STREQ(error->what(),
                 R"(get_vod_streams, row 1, key category_ids[1]: integer expected, text "x" found)");
}

TEST(DecodingError, namesEachKindOfValue) {
    const auto found = [](const std::string& json) {
        return refusal<XtreamAuthResponse>(R"({"server_info":{"url":)" + json + "}}")->found();
    };
    EXPECT_EQ(found("7"), "number 7");
    EXPECT_EQ(found("7.5"), "number 7.5");
    EXPECT_EQ(found("true"), "boolean");
    EXPECT_EQ(found("[]"), "list");
    EXPECT_EQ(found("{}"), "object");
    EXPECT_EQ(refusal<std::vector<XtreamCategory>>(R"([{"category_id":null,"category_name":""}])")->found(),
              "null");
    EXPECT_EQ(refusal<std::vector<XtreamCategory>>("[null]")->found(), "null");
}

TEST(DecodingError, showsNoCredential) {
    const auto error = refusal<XtreamAuthResponse>(R"({"user_info":{"password":123456}})");
    EXPECT_EQ(error->found(), "number");
    const auto list = refusal<XtreamAuthResponse>(R"({"user_info":{"username":["joao1984"]}})");
    EXPECT_EQ(std::string(list->what()).find("joao1984"), std::string::npos);
    const auto broken = refusal<XtreamAuthResponse>(R"({"user_info":{"username":"joao1984",}})");
    EXPECT_EQ(std::string(broken->what()).find("joao1984"), std::string::npos);
}

TEST(DecodingError, masksURLsAndRegisteredSecrets) {
    registerSecret("palavra-passe");
    const auto error = refusal<std::vector<XtreamLiveStream>>(
        R"([{"stream_id":"http://tv.example/live/u1/palavra-passe/1.ts"},{}])");
    EXPECT_EQ(error->found(), R"(text "http://tv.example/<redacted>")");
    EXPECT_EQ(excerpt("is palavra-passe"), R"("is <redacted>")");
}

TEST(DecodingError, masksAnExcerptBeforeItIsCut) {
    registerSecret("cut in two 4711");
    const std::string url = "http://h/" + std::string(4078, 'x');
    for (std::size_t shown = 1; shown < 15; ++shown) {
        // Behind a mask of few bytes stands what the excerpt's own bound on its source cuts in two.
        const std::string text = url.substr(0, url.size() + 8 - shown) + " cut in two 4711";
        EXPECT_EQ(excerpt(text).find("cut"), std::string::npos) << excerpt(text);
    }
    for (std::size_t size = 5; size < 15; ++size) {
        const std::string part = std::string("cut in two 4711").substr(0, size);
        const auto behind =
            decodingErrorOf([&] { testing::decodeInPieces<XtreamLiveStream>("[] is " + part, 64); });
        EXPECT_EQ(behind->found(), R"(text "is <redacted>" behind the list)");
        const auto before = decodingErrorOf(
            [&] { testing::decodeInPieces<XtreamLiveStream>("the account is " + part, 4096); });
        EXPECT_EQ(before->found(), R"(text "the account is <redacted>")");
    }
}

TEST(DecodingError, masksANumberThatIsASecret) {
    registerSecret("47114711");
    EXPECT_EQ(refusal<XtreamAuthResponse>(R"({"server_info":{"url":47114711}})")->found(),
              "number <redacted>");
}

TEST(DecodingError, staysOneShortLine) {
    const std::string longText(100'000, 'x');
    const auto error =
        refusal<std::vector<XtreamLiveStream>>(R"([{"stream_id":"a\n\u0007)" + longText + R"("}])");
    EXPECT_LT(std::string(error->what()).size(), 150U);
    EXPECT_EQ(std::string(error->what()).find('\n'), std::string::npos);
    // 39 bytes of letters, then one of two bytes: it is dropped whole.
    EXPECT_EQ(excerpt(std::string(39, 'a') + "\xC3\xA7" + "b"), '"' + std::string(39, 'a') + "\"...");
    EXPECT_TRUE(isValidUtf8(excerpt(std::string(39, 'a') + "\xF0\x9F\x98\x80")));
}

TEST(DecodingError, showsTheBeginningOfAPageThatIsNoJSON) {
    const auto error = refusal<XtreamAuthResponse>("<html><body>502 Bad Gateway</body></html>", "get_x");
    EXPECT_NE(error->found().find("<html><body>502"), std::string::npos);
    EXPECT_EQ(error->expected(), "JSON");
}

} // namespace
} // namespace ondavia
