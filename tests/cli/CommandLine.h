#pragma once

#include "demo/DemoProvider.h"
#include "support/TestSupport.h"

#include <QJsonObject>
#include <QProcess>
#include <QStringList>

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace ondavia::cli::testing {

inline constexpr const char* account = "ana";
/// Long and odd enough to be found wherever it leaks.
inline constexpr const char* password = "segredo-4711-Q";

/// How one run of the program ended.
struct RunResult final {
    int status = -1;
    std::string output;
    std::string errors;
};

inline bool holds(const std::string& text, const std::string& part) {
    return text.find(part) != std::string::npos;
}

/// The arguments of a command line without quotation marks.
inline QStringList words(const char* line) {
    return QString::fromUtf8(line).split(QLatin1Char(' '));
}

/// What the list of processes shows of one that runs; empty once it has ended.
std::string commandLineOf(qint64 process);

/// Whether a control character other than the line end, what turns the direction of writing, or what is no
/// UTF-8 stands in `text`.
bool steersTerminal(const std::string& text);

/// Whether any file under `folder` holds the password.
bool isPasswordStored(const std::filesystem::path& folder);

/// The lines of `text`, without their ends.
std::vector<std::string> linesOf(const std::string& text);

/// One JSON object a line; a line that is none fails the test.
std::vector<QJsonObject> objectsOf(const std::string& output);

/// The text under `key` of each object.
std::vector<std::string> textsOf(const std::vector<QJsonObject>& objects, const char* key);

/// The program, its data in a fresh folder, and everything it says at debug level. Whatever it prints, on
/// either stream, and its line in the list of processes are searched for the password, and the two streams
/// for what steers a terminal.
class CommandLine final {
public:
    CommandLine();

    RunResult run(const QStringList& arguments, const std::string& input = {});
    /// For `url`, which is asked for the account.
    RunResult runWithAccountInOutput(const QStringList& arguments);
    /// Signs in with the account above; the test fails where that does.
    void signIn(const std::string& server);
    /// Signs in and downloads the catalogue.
    void fill(const std::string& server);

    /// A process ready to be started, for a test that meets it while it runs.
    void prepare(QProcess& process, const QStringList& arguments) const;
    [[nodiscard]] std::filesystem::path folder() const { return m_folder.path(); }
    void setEnvironment(const char* name, const char* value);

private:
    RunResult runProcess(const QStringList& arguments, const std::string& input);

    ondavia::testing::TemporaryFolder m_folder;
    QProcessEnvironment m_environment;
};

/// A provider with the account above and a program that has its catalogue.
class CliTest : public ::testing::Test {
protected:
    CliTest();

    [[nodiscard]] const std::string& url() const { return m_url; }
    /// The provider makes the media of an item when they are first asked for, which may take a while.
    void haveMade(const QString& id);

    demo::DemoProvider provider;
    CommandLine cli;

private:
    std::string m_url;
};

} // namespace ondavia::cli::testing
