#include "DemoTestSupport.h"

#include <QProcess>

#include <chrono>

namespace ondavia::demo {
namespace {

/// The program itself, on a free port, until the object goes.
class Program final {
public:
    explicit Program(const QStringList& arguments) {
        m_process.start(QStringLiteral(DEMO_PROGRAM), arguments);
        while (!m_process.canReadLine() && m_process.waitForReadyRead(20000)) {
        }
        m_line = QString::fromUtf8(m_process.readLine()).trimmed();
    }
    ~Program() {
        m_process.kill();
        m_process.waitForFinished();
    }
    Program(const Program&) = delete;
    Program& operator=(const Program&) = delete;

    [[nodiscard]] const QString& line() const { return m_line; }
    [[nodiscard]] std::string url() const { return m_line.section(QLatin1Char(' '), 2).toStdString(); }
    QProcess& process() { return m_process; }

private:
    QProcess m_process;
    QString m_line;
};

TEST(DemoProgram, PrintsItsAddressServesTheAccountAndEndsOnASignal) {
    Program program({QStringLiteral("--lazy-media"), QStringLiteral("--user"), QStringLiteral("ana"),
                     QStringLiteral("--password"), QStringLiteral("segredo"), QStringLiteral("--fault"),
                     QStringLiteral("status-500:xmltv")});
    ASSERT_TRUE(program.line().startsWith(QLatin1String("listening on http://127.0.0.1:")))
        << program.line().toStdString();
    httplib::Client client(program.url());
    EXPECT_NE(client.Get("/player_api.php?username=ana&password=segredo")->body.find("\"auth\":1"),
              std::string::npos);
    EXPECT_EQ(client.Get("/xmltv.php?username=ana&password=segredo")->status, 500);
    program.process().terminate();
    EXPECT_TRUE(program.process().waitForFinished(5000));
    EXPECT_EQ(program.process().exitCode(), 0);
}

TEST(DemoProgram, DrawsPostersWithTheirTitleAndLogosWithInitials) {
    Program program({QStringLiteral("--lazy-media")});
    RunningProvider withoutFonts;
    httplib::Client client(program.url());
    for (const std::string path : {"/pictures/film/100001.jpg", "/pictures/logo/1001.png"}) {
        const auto picture = client.Get(path);
        ASSERT_EQ(picture->status, 200);
        EXPECT_NE(picture->body, withoutFonts.get(path)) << "the same picture has no text in it";
    }
    EXPECT_EQ(client.Get("/pictures/film/100001.jpg")->get_header_value("Content-Type"), "image/jpeg");
    EXPECT_TRUE(client.Get("/pictures/logo/1001.png")->body.starts_with("\x89PNG"));
    EXPECT_NE(client.Get("/pictures/film/100001.jpg")->body, client.Get("/pictures/film/100002.jpg")->body);
}

TEST(DemoProgram, RefusesAnUnknownFault) {
    QProcess process;
    process.start(QStringLiteral(DEMO_PROGRAM), {QStringLiteral("--fault"), QStringLiteral("nonsense")});
    ASSERT_TRUE(process.waitForFinished(10000));
    EXPECT_EQ(process.exitCode(), 1);
    EXPECT_TRUE(process.readAllStandardError().contains("unknown fault: nonsense"));
}

} // namespace
} // namespace ondavia::demo
