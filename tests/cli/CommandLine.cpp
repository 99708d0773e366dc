#include "CommandLine.h"

#include <QFile>
#include <QJsonDocument>

#include <httplib.h>

#include <algorithm>
#include <sstream>

namespace ondavia::cli::testing {
namespace {

constexpr int longestRun = 120'000;

demo::DemoOptions optionsOfAccount() {
    demo::DemoOptions options;
    options.user = account;
    options.password = password;
    return options;
}

} // namespace

bool steersTerminal(const std::string& text) {
    const QString shown = QString::fromStdString(text);
    const bool isText = shown.toStdString() == text;
    return !isText || std::ranges::any_of(shown, [](QChar character) {
        const auto category = character.category();
        return character != QLatin1Char('\n') &&
               (category == QChar::Other_Control || category == QChar::Separator_Line ||
                category == QChar::Separator_Paragraph ||
                (character >= QChar(0x200E) && character <= QChar(0x200F)) ||
                (character >= QChar(0x202A) && character <= QChar(0x202E)) ||
                (character >= QChar(0x2066) && character <= QChar(0x2069)) || character == QChar(0x061C));
    });
}

std::string commandLineOf(qint64 process) {
    QFile file(QStringLiteral("/proc/%1/cmdline").arg(process));
    return file.open(QIODevice::ReadOnly) ? file.readAll().toStdString() : std::string();
}

bool isPasswordStored(const std::filesystem::path& folder) {
    for (const auto& entry : std::filesystem::recursive_directory_iterator(folder)) {
        if (entry.is_regular_file()) {
            std::ifstream file(entry.path(), std::ios::binary);
            const std::string bytes{std::istreambuf_iterator<char>(file), {}};
            if (holds(bytes, password)) {
                return true;
            }
        }
    }
    return false;
}

std::vector<std::string> linesOf(const std::string& text) {
    std::vector<std::string> lines;
    std::istringstream stream(text);
    for (std::string line; std::getline(stream, line);) {
        lines.push_back(line);
    }
    return lines;
}

std::vector<QJsonObject> objectsOf(const std::string& output) {
    std::vector<QJsonObject> objects;
    for (const auto& line : linesOf(output)) {
        QJsonParseError error{};
        const auto document = QJsonDocument::fromJson(QByteArray::fromStdString(line), &error);
        EXPECT_TRUE(document.isObject()) << line << ": " << error.errorString().toStdString();
        objects.push_back(document.object());
    }
    return objects;
}

std::vector<std::string> textsOf(const std::vector<QJsonObject>& objects, const char* key) {
    std::vector<std::string> texts;
    for (const auto& object : objects) {
        texts.push_back(object[QLatin1String(key)].toString().toStdString());
    }
    return texts;
}

CommandLine::CommandLine()
    : m_environment(QProcessEnvironment::systemEnvironment()) {
    setEnvironment("ONDAVIA_DATA_DIR", m_folder.path().c_str());
    setEnvironment("ONDAVIA_VAULT", "file");
    setEnvironment("ONDAVIA_LOG", "debug");
}

void CommandLine::setEnvironment(const char* name, const char* value) {
    m_environment.insert(QString::fromLatin1(name), QString::fromUtf8(value));
}

void CommandLine::prepare(QProcess& process, const QStringList& arguments) const {
    process.setProcessEnvironment(m_environment);
    process.setProgram(QStringLiteral(CLI_PROGRAM));
    process.setArguments(arguments);
}

RunResult CommandLine::runProcess(const QStringList& arguments, const std::string& input) {
    QProcess process;
    prepare(process, arguments);
    process.start();
    EXPECT_TRUE(process.waitForStarted());
    EXPECT_EQ(commandLineOf(process.processId()).find(password), std::string::npos);
    process.write(QByteArray::fromStdString(input));
    process.closeWriteChannel();
    EXPECT_TRUE(process.waitForFinished(longestRun));
    EXPECT_EQ(process.exitStatus(), QProcess::NormalExit) << arguments.join(QLatin1Char(' ')).toStdString();
    RunResult result{process.exitCode(), process.readAllStandardOutput().toStdString(),
                     process.readAllStandardError().toStdString()};
    EXPECT_EQ(result.errors.find(password), std::string::npos) << result.errors;
    EXPECT_FALSE(steersTerminal(result.output))
        << QByteArray::fromStdString(result.output).toHex(' ').toStdString();
    EXPECT_FALSE(steersTerminal(result.errors))
        << QByteArray::fromStdString(result.errors).toHex(' ').toStdString();
    return result;
}

RunResult CommandLine::run(const QStringList& arguments, const std::string& input) {
    RunResult result = runProcess(arguments, input);
    EXPECT_EQ(result.output.find(password), std::string::npos) << result.output;
    return result;
}

RunResult CommandLine::runWithAccountInOutput(const QStringList& arguments) {
    return runProcess(arguments, {});
}

void CommandLine::signIn(const std::string& server) {
    const auto result =
        run({QStringLiteral("signin"), QStringLiteral("--server"), QString::fromStdString(server),
             QStringLiteral("--username"), QString::fromLatin1(account)},
            std::string(password) + "\n");
    ASSERT_EQ(result.status, 0) << result.errors;
}

void CommandLine::fill(const std::string& server) {
    signIn(server);
    const auto result = run({QStringLiteral("sync")});
    ASSERT_EQ(result.status, 0) << result.errors;
}

CliTest::CliTest()
    : provider(optionsOfAccount())
    , m_url(provider.start()) {}

void CliTest::haveMade(const QString& id) {
    const auto address =
        linesOf(cli.runWithAccountInOutput({QStringLiteral("url"), id}).output).at(0).substr(url().size());
    httplib::Client client(url());
    client.set_read_timeout(100);
    client.Get(address, [](const char*, std::size_t) { return false; });
}

} // namespace ondavia::cli::testing
