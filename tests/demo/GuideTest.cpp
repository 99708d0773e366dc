#include "DemoTestSupport.h"

#include <QDateTime>
#include <QSet>
#include <QXmlStreamReader>

#include <algorithm>
#include <vector>

namespace ondavia::demo {
namespace {

struct Entry final {
    QString channel;
    QDateTime start;
    QDateTime stop;
    QString title;
    QString offset;
};

QDateTime guideTime(const QString& text) {
    const int sign = text.at(15) == QLatin1Char('-') ? -1 : 1;
    const int offset = sign * (text.mid(16, 2).toInt() * 60 + text.mid(18, 2).toInt());
    QDateTime time = QDateTime::fromString(text.left(14), QStringLiteral("yyyyMMddHHmmss"));
    time.setTimeSpec(Qt::UTC);
    return time.addSecs(-60 * offset);
}

std::vector<Entry> parse(const std::string& document) {
    QXmlStreamReader xml(QByteArray::fromStdString(document));
    std::vector<Entry> entries;
    while (!xml.atEnd()) {
        if (xml.readNext() != QXmlStreamReader::StartElement) {
            continue;
        }
        if (xml.name() == QLatin1String("programme")) {
            const auto attributes = xml.attributes();
            const QString start = attributes.value(QLatin1String("start")).toString();
            entries.push_back({attributes.value(QLatin1String("channel")).toString(),
                               guideTime(start),
                               guideTime(attributes.value(QLatin1String("stop")).toString()),
                               {},
                               start.mid(15)});
        } else if (xml.name() == QLatin1String("title")) {
            entries.back().title = xml.readElementText();
        }
    }
    EXPECT_FALSE(xml.hasError()) << xml.errorString().toStdString();
    return entries;
}

constexpr const char* guidePath = "/xmltv.php?username=demo&password=demo";

TEST(DemoGuide, CoversNowForEveryChannelWithAGuide) {
    RunningProvider demo;
    const auto entries = parse(demo.get(guidePath));
    QSet<QString> playing;
    QSet<QString> offsets;
    const QDateTime now = QDateTime::currentDateTimeUtc();
    for (const Entry& entry : entries) {
        EXPECT_LT(entry.start, entry.stop);
        EXPECT_FALSE(entry.title.isEmpty());
        offsets.insert(entry.offset);
        if (entry.start <= now && now < entry.stop) {
            EXPECT_FALSE(playing.contains(entry.channel)) << entry.channel.toStdString();
            playing.insert(entry.channel);
        }
    }
    EXPECT_EQ(offsets, QSet<QString>({QStringLiteral("+0000"), QStringLiteral("+0100")}));
    for (const auto& row : demo.list("get_live_streams")) {
        const QString id = row.toObject().value(QLatin1String("epg_channel_id")).toString();
        EXPECT_TRUE(id.isEmpty() || playing.contains(id)) << id.toStdString();
    }
    const auto first = std::ranges::min_element(entries, {}, &Entry::start)->start;
    EXPECT_NEAR(static_cast<double>(first.secsTo(now)), 2 * 86400.0, 4 * 3600.0);
}

TEST(DemoGuide, SaysTheSameInTheShortListings) {
    RunningProvider demo;
    const auto entries = parse(demo.get(guidePath));
    const QJsonArray listings = demo.api("get_simple_data_table", "&stream_id=1001")
                                    .object()
                                    .value(QLatin1String("epg_listings"))
                                    .toArray();
    ASSERT_GT(listings.size(), 50);
    const QJsonObject listing = listings.at(20).toObject();
    const auto text = [&](const char* key) { return listing.value(QLatin1String(key)).toString(); };
    const QDateTime start = QDateTime::fromString(text("start"), QStringLiteral("yyyy-MM-dd HH:mm:ss"));
    const auto found = std::ranges::find_if(entries, [&](const Entry& entry) {
        return entry.channel == QLatin1String("atlantico1.pt") && entry.start == start;
    });
    ASSERT_NE(found, entries.end());
    EXPECT_EQ(found->title, QString::fromUtf8(QByteArray::fromBase64(text("title").toLatin1())));
    EXPECT_EQ(found->stop, QDateTime::fromString(text("end"), QStringLiteral("yyyy-MM-dd HH:mm:ss")));
}

TEST(DemoGuide, ListsWhatComesNextForOneChannel) {
    RunningProvider demo;
    const QJsonArray next = demo.api("get_short_epg", "&stream_id=1001&limit=3")
                                .object()
                                .value(QLatin1String("epg_listings"))
                                .toArray();
    ASSERT_EQ(next.size(), 3);
    EXPECT_EQ(next.at(0).toObject().value(QLatin1String("now_playing")).toInt(), 1);
    EXPECT_EQ(demo.get(apiPath("get_simple_data_table", "&stream_id=5")), R"({"epg_listings":[]})");
}

TEST(DemoGuide, GeneratesExactlyTheProgrammesAskedFor) {
    const ondavia::testing::TemporaryFolder folder;
    DemoOptions options;
    options.guideProgrammes = 20123;
    options.scale = 9000;
    options.mediaFolder = folder.path();
    RunningProvider demo(options);
    const std::string document = demo.get(guidePath);
    const auto entries = parse(document);
    EXPECT_EQ(entries.size(), 20123U);
    EXPECT_NEAR(static_cast<double>(document.size()) / 20123.0, 362.0, 20.0);
    QSet<QString> ids;
    for (const auto& row : demo.list("get_live_streams")) {
        ids.insert(row.toObject().value(QLatin1String("epg_channel_id")).toString());
    }
    EXPECT_TRUE(ids.contains(entries.back().channel));
}

} // namespace
} // namespace ondavia::demo
