#include "CommandLine.h"

#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <termios.h>
#include <unistd.h>

namespace ondavia::cli::testing {
namespace {

/// A terminal to type on: the program has one end, the test the other.
class Terminal final {
public:
    Terminal()
        : m_keyboard(posix_openpt(O_RDWR | O_NOCTTY)) {
        grantpt(m_keyboard);
        unlockpt(m_keyboard);
        // Keeps the terminal's settings alive between the program's start and end.
        m_screen = open(ptsname(m_keyboard), O_RDWR | O_NOCTTY);
    }
    ~Terminal() {
        close(m_screen);
        close(m_keyboard);
    }
    Terminal(const Terminal&) = delete;
    Terminal& operator=(const Terminal&) = delete;

    [[nodiscard]] QString path() const { return QString::fromLocal8Bit(ptsname(m_keyboard)); }
    [[nodiscard]] bool echoes() const {
        termios settings{};
        tcgetattr(m_keyboard, &settings);
        return (settings.c_lflag & ECHO) != 0;
    }
    void type(const std::string& text) const {
        EXPECT_EQ(write(m_keyboard, text.data(), text.size()), static_cast<ssize_t>(text.size()));
    }

private:
    int m_keyboard;
    int m_screen;
};

class PasswordPrompt : public CliTest {
protected:
    PasswordPrompt() {
        cli.prepare(process,
                    {QStringLiteral("signin"), QStringLiteral("--server"), QString::fromStdString(url()),
                     QStringLiteral("--username"), QString::fromLatin1(account)});
        process.setStandardInputFile(terminal.path());
    }
    void startAndWaitForPrompt() {
        ASSERT_TRUE(terminal.echoes());
        process.start();
        ASSERT_TRUE(ondavia::testing::waitUntil([&] { return !terminal.echoes(); }));
    }

    Terminal terminal;
    QProcess process;
};

TEST_F(PasswordPrompt, HidesWhatIsTypedAndShowsTheNextLineAgain) {
    startAndWaitForPrompt();
    terminal.type(std::string(password) + "\n");
    ASSERT_TRUE(process.waitForFinished());
    EXPECT_EQ(process.exitCode(), 0);
    EXPECT_TRUE(process.readAllStandardError().startsWith("Password: \n"));
    EXPECT_TRUE(terminal.echoes());
}

TEST_F(PasswordPrompt, CtrlCLeavesTheTerminalAsItWas) {
    startAndWaitForPrompt();
    kill(static_cast<pid_t>(process.processId()), SIGINT);
    ASSERT_TRUE(process.waitForFinished());
    EXPECT_EQ(process.exitStatus(), QProcess::NormalExit);
    EXPECT_EQ(process.exitCode(), 128 + SIGINT);
    EXPECT_TRUE(terminal.echoes());
}

} // namespace
} // namespace ondavia::cli::testing
