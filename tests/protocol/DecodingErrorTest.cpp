#include "WireSupport.h"

#include "base/Redaction.h"
#include "base/Text.h"

namespace ondavia {
namespace {

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
