#include "DemoTestSupport.h"

#include <QDateTime>

#include <zlib.h>

#include <array>
#include <chrono>
#include <stdexcept>

namespace ondavia::demo {
namespace {

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

class DemoFault : public ::testing::Test {
protected:
    std::string spoiled(const std::string& fault, const std::string& action) {
        demo.provider().setFault(fault + (action.empty() ? ":login" : ":" + action));
        return demo.get(apiPath(action));
    }
    bool isJson(const std::string& text) {
        return !QJsonDocument::fromJson(QByteArray::fromStdString(text)).isNull();
    }
    QJsonValue userField(const char* key) {
        return demo.api({}).object().value(QLatin1String("user_info")).toObject().value(QLatin1String(key));
    }

    RunningProvider demo;
};

TEST_F(DemoFault, AnswersTheStatusOfTheActionItNamesOnly) {
    for (const int status : {401, 403, 404, 500, 503}) {
        demo.provider().setFault("status-" + std::to_string(status) + ":get_series");
        demo.get(apiPath("get_series"), status);
        demo.get(apiPath("get_vod_streams"), 200);
        demo.provider().clearFaults();
    }
    demo.get(apiPath("get_series"), 200);
}

TEST_F(DemoFault, MeetsEveryActionWithoutAName) {
    demo.provider().setFault("status-500");
    demo.get(apiPath("get_series"), 500);
    demo.get("/xmltv.php?username=demo&password=demo", 500);
    demo.get("/pictures/film/100001.jpg", 500);
    demo.get("/live/demo/demo/1001.ts", 500);
}

TEST_F(DemoFault, FailsTheFirstRequestsAndThenWorks) {
    demo.provider().setFault("fail-first-2:get_series");
    demo.get(apiPath("get_series"), 503);
    demo.get(apiPath("get_series"), 503);
    demo.get(apiPath("get_series"), 200);
}

TEST_F(DemoFault, ReplacesWholeBodies) {
    EXPECT_EQ(spoiled("html-200", "get_series").substr(0, 6), "<html>");
    EXPECT_EQ(spoiled("empty-list", "get_live_streams"), "[]");
    EXPECT_EQ(spoiled("empty-body", "get_vod_streams"), "");
    EXPECT_EQ(spoiled("null-body", "get_vod_categories"), "null");
    EXPECT_EQ(spoiled("deep-nesting", "get_live_categories"),
              std::string(100000, '[') + std::string(100000, ']'));
}

TEST_F(DemoFault, TruncatesWithAMatchingLength) {
    const std::string whole = demo.get(apiPath("get_series"));
    const std::string half = spoiled("truncated-body", "get_series");
    EXPECT_EQ(half, whole.substr(0, whole.size() / 2));
}

TEST_F(DemoFault, CutsTheConnectionHalfWay) {
    demo.provider().setFault("cut-connection");
    std::size_t received = 0;
    std::size_t declared = 0;
    const auto result = demo.client().Get(
        apiPath("get_series"),
        [&](const httplib::Response& response) {
            declared = response.get_header_value<std::size_t>("Content-Length");
            return true;
        },
        [&](const char*, std::size_t length) {
            received += length;
            return true;
        });
    EXPECT_FALSE(result);
    EXPECT_EQ(received, declared / 2);
    EXPECT_FALSE(demo.client().Get("/movie/demo/demo/100001.mp4"));
}

TEST_F(DemoFault, BreaksOffALiveStream) {
    demo.provider().setFault("cut-connection:live");
    const auto before = Clock::now();
    demo.client().Get("/live/demo/demo/1001.ts");
    EXPECT_LT(Clock::now() - before, 12s);
}

TEST_F(DemoFault, DelaysTheFirstByteAndTheBody) {
    const auto seconds = [&](const std::string& action) {
        const auto before = Clock::now();
        EXPECT_TRUE(isJson(demo.get(apiPath(action))));
        return std::chrono::duration<double>(Clock::now() - before).count();
    };
    demo.provider().setFault("slow-first-byte:get_live_categories,slow-body:get_vod_categories");
    EXPECT_NEAR(seconds("get_live_categories"), 3.0, 0.6);
    EXPECT_NEAR(seconds("get_vod_categories"), 3.9, 0.8);
}

TEST_F(DemoFault, KeepsSilentUntilTheFaultsChange) {
    demo.provider().setFault("never-answers:get_series");
    httplib::Client impatient(demo.url());
    impatient.set_read_timeout(0, 400000);
    EXPECT_FALSE(impatient.Get(apiPath("get_series")));
    demo.provider().clearFaults();
    demo.get(apiPath("get_series"), 200);
}

TEST_F(DemoFault, RedirectsOnceOrForEver) {
    demo.client().set_follow_location(true);
    EXPECT_TRUE(isJson(spoiled("redirect", "get_series")));
    demo.provider().setFault("endless-redirect:get_vod_streams");
    const auto result = demo.client().Get(apiPath("get_vod_streams"));
    EXPECT_EQ(result.error(), httplib::Error::ExceedRedirectCount);
}

TEST_F(DemoFault, CompressesTheBody) {
    const std::string plain = demo.get(apiPath("get_series"));
    demo.client().set_decompress(false);
    EXPECT_TRUE(spoiled("compressed", "get_series").starts_with("\x1F\x8B"));
    demo.client().set_decompress(true);
    EXPECT_EQ(demo.get(apiPath("get_series")), plain);
}

TEST_F(DemoFault, SendsAGzipBombOfAFewMegabytes) {
    demo.client().set_decompress(false);
    const std::string bomb = spoiled("gzip-bomb", "get_series");
    EXPECT_LT(bomb.size(), 8U << 20U);
    z_stream stream{};
    ASSERT_EQ(inflateInit2(&stream, 15 + 16), Z_OK);
    stream.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(bomb.data()));
    stream.avail_in = static_cast<uInt>(bomb.size());
    std::string block(4U << 20U, '\0');
    std::uint64_t total = 0;
    int state = Z_OK;
    while (state == Z_OK) {
        stream.next_out = reinterpret_cast<Bytef*>(block.data());
        stream.avail_out = static_cast<uInt>(block.size());
        state = inflate(&stream, Z_NO_FLUSH);
        total += block.size() - stream.avail_out;
    }
    inflateEnd(&stream);
    EXPECT_EQ(state, Z_STREAM_END);
    EXPECT_EQ(total, (4ULL << 30U) + 2);
}

TEST_F(DemoFault, SendsBodiesThatAreTooLong) {
    const auto receive = [&](const std::string& fault, std::uint64_t atLeast) {
        demo.provider().setFault(fault);
        std::uint64_t received = 0;
        std::uint64_t declared = 0;
        demo.client().Get(
            apiPath("get_series"),
            [&](const httplib::Response& response) {
                declared = response.get_header_value<std::uint64_t>("Content-Length");
                return true;
            },
            [&](const char*, std::size_t length) { return (received += length) < atLeast; });
        EXPECT_GE(received, atLeast);
        demo.provider().clearFaults();
        return declared;
    };
    EXPECT_EQ(receive("huge-body", 16U << 20U), 2ULL << 30U);
    EXPECT_EQ(receive("endless-body", 16U << 20U), 0U);
}

TEST_F(DemoFault, PutsForeignBytesIntoTheFirstText) {
    EXPECT_NE(spoiled("invalid-utf8", "get_live_categories").find("\"\xFF\xFE"), std::string::npos);
    EXPECT_NE(spoiled("nul-bytes", "get_vod_categories").find(std::string("\"\0\0", 3)), std::string::npos);
    const std::string big = spoiled("big-number", "get_live_streams");
    EXPECT_NE(big.find("123456789012345678901234567890"), std::string::npos);
    EXPECT_TRUE(isJson(big));
}

TEST_F(DemoFault, GivesOneRowAWrongType) {
    const auto wrong = [&](const std::string& action, const char* key, auto isRight) {
        int count = 0;
        demo.provider().setFault("wrong-type-row:" + action);
        for (const auto& row : demo.list(action)) {
            count += isRight(row.toObject().value(QLatin1String(key))) ? 0 : 1;
        }
        return count;
    };
    const auto isNumber = [](const QJsonValue& value) { return value.isDouble(); };
    const auto isText = [](const QJsonValue& value) { return value.isString(); };
    EXPECT_EQ(wrong("get_live_streams", "stream_id", isNumber), 1);
    EXPECT_EQ(wrong("get_vod_streams", "container_extension", isText), 1);
    EXPECT_EQ(wrong("get_series", "series_id", isNumber), 1);
    EXPECT_EQ(wrong("get_vod_categories", "category_name", isText), 1);
    demo.provider().setFault("wrong-type-row:login");
    EXPECT_TRUE(userField("auth").isString());
}

TEST_F(DemoFault, RepeatsACategoryUnderAnotherName) {
    const QJsonArray rows = QJsonDocument::fromJson(QByteArray::fromStdString(spoiled("duplicate-category-id",
                                                                                      "get_live_categories")))
                                .array();
    ASSERT_EQ(rows.size(), 10);
    const auto value = [&](int row, const char* key) {
        return rows.at(row).toObject().value(QLatin1String(key));
    };
    EXPECT_EQ(value(0, "category_id"), value(1, "category_id"));
    EXPECT_NE(value(0, "category_name"), value(1, "category_name"));
}

TEST_F(DemoFault, ChangesTheAccount) {
    demo.provider().setFault("number-exp-date:login");
    EXPECT_TRUE(userField("exp_date").isDouble());
    demo.provider().clearFaults();
    demo.provider().setFault("expired:login");
    EXPECT_LT(userField("exp_date").toString().toLongLong(), QDateTime::currentSecsSinceEpoch());
    EXPECT_EQ(userField("auth").toInt(), 1);
    demo.provider().setFault("auth-0:login");
    EXPECT_EQ(userField("auth").toInt(), 0);
}

TEST_F(DemoFault, SendsEpisodesAsAList) {
    demo.provider().setFault("episodes-array:get_series_info");
    EXPECT_TRUE(
        demo.api("get_series_info", "&series_id=2001").object().value(QLatin1String("episodes")).isArray());
}

TEST_F(DemoFault, IsSwitchedOverHttpAndRejectsUnknownNames) {
    EXPECT_EQ(
        demo.client().Post("/control/fault?set=status-500:get_series,empty-list:get_vod_streams")->status,
        200);
    demo.get(apiPath("get_series"), 500);
    EXPECT_EQ(demo.get(apiPath("get_vod_streams")), "[]");
    EXPECT_EQ(demo.client().Post("/control/fault?clear")->status, 200);
    demo.get(apiPath("get_series"), 200);
    for (const std::string name : {"no-such-fault", "status-500:no_such_action", "fail-first-x"}) {
        EXPECT_EQ(demo.client().Post("/control/fault?set=" + name)->status, 400);
        EXPECT_THROW(demo.provider().setFault(name), std::invalid_argument);
    }
}

} // namespace
} // namespace ondavia::demo
