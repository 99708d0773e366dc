#include "cli/PasswordInput.h"

#include "cli/Command.h"
#include "cli/Interruption.h"

#include <array>
#include <cstdio>
#include <optional>
#include <poll.h>
#include <termios.h>
#include <unistd.h>

namespace ondavia::cli {
namespace {

constexpr std::size_t longestLine = 4096;

/// Asks on the terminal, and hides what is typed while it lives.
class Prompt final {
public:
    Prompt() {
        std::fputs("Password: ", stderr);
        tcgetattr(STDIN_FILENO, &m_before);
        termios hidden = m_before;
        hidden.c_lflag &= ~static_cast<tcflag_t>(ECHO);
        tcsetattr(STDIN_FILENO, TCSAFLUSH, &hidden);
    }
    ~Prompt() {
        tcsetattr(STDIN_FILENO, TCSAFLUSH, &m_before);
        std::fputs("\n", stderr);
    }
    Prompt(const Prompt&) = delete;
    Prompt& operator=(const Prompt&) = delete;

private:
    termios m_before{};
};

/// The next byte; absent at the end of the input.
std::optional<char> readByte(const Interruption& interruption) {
    std::array<pollfd, 2> sources{{{STDIN_FILENO, POLLIN, 0}, {interruption.descriptor(), POLLIN, 0}}};
    poll(sources.data(), sources.size(), -1);
    if (sources[1].revents != 0) {
        throw Interrupted{interruption.take()};
    }
    char byte = 0;
    return read(STDIN_FILENO, &byte, 1) == 1 ? std::optional(byte) : std::nullopt;
}

std::string readLine(const Interruption& interruption) {
    std::string line;
    while (line.size() < longestLine) {
        const auto byte = readByte(interruption);
        if (!byte || *byte == '\n') {
            break;
        }
        line += *byte;
    }
    if (line.ends_with('\r')) {
        line.pop_back();
    }
    return line;
}

} // namespace

std::string readPassword(const Interruption& interruption) {
    std::optional<Prompt> prompt;
    if (isatty(STDIN_FILENO) != 0) {
        prompt.emplace();
    }
    std::string line = readLine(interruption);
    if (line.empty()) {
        throw CommandError("no password came on standard input");
    }
    return line;
}

} // namespace ondavia::cli
