#pragma once

#include <qcoro/qcorotask.h>

#include <stdexcept>
#include <string>

namespace ondavia {
class Services;
}

namespace ondavia::cli {

struct Arguments;
class Output;

/// What a command works with; all of it outlives the command.
struct CommandContext final {
    Services& services;
    Output& output;
    const Arguments& arguments;
    /// As it was given on standard input; empty for commands that ask for none.
    const std::string& password;
};

/// One command of the program. Main thread. What it raises is told to the user, and ends the program with
/// status 1.
using Command = QCoro::Task<void> (*)(CommandContext);

/// A failure of the command's own, in words for the user and without secrets.
class CommandError final : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

QCoro::Task<void> signIn(CommandContext context);
QCoro::Task<void> signOut(CommandContext context);
/// What of a sign-out can be done where the library cannot be opened. May wait for the keyring.
void forgetAccount();
QCoro::Task<void> showAccount(CommandContext context);

QCoro::Task<void> synchronise(CommandContext context);
QCoro::Task<void> listCategories(CommandContext context);
QCoro::Task<void> listItems(CommandContext context);
QCoro::Task<void> searchItems(CommandContext context);
QCoro::Task<void> showItem(CommandContext context);

QCoro::Task<void> showSeries(CommandContext context);
QCoro::Task<void> printURL(CommandContext context);
QCoro::Task<void> playItem(CommandContext context);
QCoro::Task<void> zapThrough(CommandContext context);
QCoro::Task<void> showTracks(CommandContext context);
QCoro::Task<void> parseSubtitles(CommandContext context);
QCoro::Task<void> findSubtitles(CommandContext context);

QCoro::Task<void> listFavorites(CommandContext context);
QCoro::Task<void> toggleFavorite(CommandContext context);

QCoro::Task<void> listHistory(CommandContext context);
QCoro::Task<void> removeFromHistory(CommandContext context);
QCoro::Task<void> clearHistory(CommandContext context);

QCoro::Task<void> loadGuide(CommandContext context);
QCoro::Task<void> showCurrentProgram(CommandContext context);
QCoro::Task<void> listPrograms(CommandContext context);
QCoro::Task<void> loadShortGuide(CommandContext context);

QCoro::Task<void> examineProvider(CommandContext context);

} // namespace ondavia::cli
