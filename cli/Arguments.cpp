#include "cli/Arguments.h"

#include "base/VisibleText.h"

#include <QDateTime>
#include <QTimeZone>

#include <CLI/CLI.hpp>

#include <vector>

namespace ondavia::cli {
namespace {

constexpr int usageStatus = 2;

/// What CLI11 fills, before it is checked and converted.
struct RawArguments final {
    bool json = false;
    std::string onlyType;
    std::string category;
    std::int64_t limit = 0;
    std::vector<std::string> catchup;
    std::optional<std::string> day;
};

std::optional<Date> parseUtcTime(const std::string& text) {
    QDateTime time = QDateTime::fromString(QString::fromStdString(text), Qt::ISODate);
    if (!time.isValid()) {
        return std::nullopt;
    }
    if (time.timeSpec() == Qt::LocalTime) {
        time.setTimeZone(QTimeZone::utc());
    }
    return Date(std::chrono::milliseconds(time.toMSecsSinceEpoch()));
}

Catchup parseCatchup(const std::vector<std::string>& words) {
    const auto start = parseUtcTime(words.at(0));
    if (!start) {
        throw CLI::ValidationError("--catchup", "START is a time like 2026-03-01T21:05, in UTC");
    }
    std::int64_t minutes = 0;
    if (!CLI::detail::lexical_cast(words.at(1), minutes) || minutes < 1) {
        throw CLI::ValidationError("--catchup", "MINUTES is a whole number of 1 or more");
    }
    return {*start, minutes};
}

Date parseDay(const std::string& text) {
    constexpr std::size_t length = std::string_view("2026-03-01").size();
    const QDate day = QDate::fromString(QString::fromStdString(text), Qt::ISODate);
    if (text.size() != length || !day.isValid()) {
        throw CLI::ValidationError("YYYY-MM-DD", "a day is written like 2026-03-01");
    }
    return Date(std::chrono::milliseconds(day.startOfDay().toMSecsSinceEpoch()));
}

CLI::App* describe(CLI::App& app, Arguments& arguments, Command command, const char* name,
                   const char* explanation) {
    return app.add_subcommand(name, explanation)->callback([&arguments, command] {
        arguments.command = command;
    });
}

/// Takes "movies" and "movie" alike. The result is what is wrong, empty for nothing.
std::string normaliseType(std::string& type) {
    if (type == "movies") {
        type = "movie";
    }
    return type == "live" || type == "movie" || type == "series" ? std::string()
                                                                 : "live, movies or series, not " + type;
}

void addType(CLI::App& command, Arguments& arguments) {
    command.add_option("TYPE", arguments.type, "live, movies or series")
        ->required()
        ->transform(CLI::Validator(normaliseType, ""));
}

void addId(CLI::App& command, Arguments& arguments, const char* explanation) {
    command.add_option("ID", arguments.id, explanation)->required();
}

/// Also of what is no number, which no comparison holds of.
std::string checkSeconds(const std::string& text) {
    constexpr double day = 86'400;
    double seconds = 0;
    const bool isNumber = CLI::detail::lexical_cast(text, seconds);
    return isNumber && seconds > 0 && seconds <= day ? std::string()
                                                     : "wants seconds, more than 0 and at most a day";
}

void addDuration(CLI::App& command, Arguments& arguments, const char* explanation) {
    command.add_option("--for", arguments.playFor, explanation)
        ->check(CLI::Validator(checkSeconds, "SECONDS"))
        ->capture_default_str();
}

void describeAccount(CLI::App& app, Arguments& arguments) {
    auto* in = describe(app, arguments, &signIn, "signin",
                        "Check an account and keep it. The password is read from standard input: one line, "
                        "not shown on a terminal");
    in->add_option("--server", arguments.server, "address of the provider")->required();
    in->add_option("--username", arguments.username, "user name at the provider")->required();
    in->parse_complete_callback([&arguments] { arguments.wantsPassword = true; });
    describe(app, arguments, &signOut, "signout",
             "Forget the account, the catalogue, the guide, favourites and history");
    describe(app, arguments, &showAccount, "account", "Ask the provider what it knows of the account");
}

void describeCatalogue(CLI::App& app, Arguments& arguments, RawArguments& raw) {
    describe(app, arguments, &synchronise, "sync", "Download the provider's whole catalogue");
    addType(*describe(app, arguments, &listCategories, "categories", "List the categories of a type"),
            arguments);
    auto* list = describe(app, arguments, &listItems, "list", "List the items of a type");
    addType(*list, arguments);
    list->add_option("--category", raw.category, "only the items of this category");
    list->add_option("--limit", raw.limit, "no more than so many items")->check(CLI::PositiveNumber);
    auto* search = describe(app, arguments, &searchItems, "search",
                            "List the items whose name, category or series has TEXT in it");
    search->add_option("TEXT", arguments.text, "at least two characters")->required();
    search->add_option("--type", raw.onlyType, "only live, movies or series")
        ->transform(CLI::Validator(normaliseType, ""));
    addId(*describe(app, arguments, &showItem, "show", "Show all that is known of an item"), arguments,
          "id of an item or an episode");
}

void describeMedia(CLI::App& app, Arguments& arguments, RawArguments& raw) {
    addId(*describe(app, arguments, &showSeries, "series", "List the seasons and episodes of a series"),
          arguments, "id of a series, such as main_series_77 or 77");
    auto* url = describe(app, arguments, &printURL, "url",
                         "Print the address of an item's stream. It holds the account: keep it to yourself");
    addId(*url, arguments, "id of an item or an episode");
    url->add_option("--catchup", raw.catchup, "the recording of a live channel from START on, in UTC")
        ->expected(2)
        ->type_name("START MINUTES");
    auto* play = describe(app, arguments, &playItem, "play",
                          "Play an item without picture and sound, and tell what the player does");
    addId(*play, arguments, "id of an item or an episode");
    play->add_option("--from", arguments.playFrom, "start so many seconds into the item")
        ->check(CLI::NonNegativeNumber);
    addDuration(*play, arguments, "end after so many seconds");
    auto* zap =
        describe(app, arguments, &zapThrough, "zap",
                 "Play items one after another without picture and sound, and tell how long each takes "
                 "to its first frame");
    zap->add_option("ID", arguments.ids, "ids of items or episodes")->required();
    addDuration(*zap, arguments, "stay with each for so many seconds");
    addId(*describe(app, arguments, &showTracks, "tracks",
                    "Open an item, and list its sound and its subtitles by the names that the application "
                    "gives them"),
          arguments, "id of an item or an episode");
    auto* subtitles = app.add_subcommand("subtitles", "Subtitle files")->require_subcommand(1);
    describe(*subtitles, arguments, &parseSubtitles, "parse",
             "List what a file of this machine would show, and when, in seconds")
        ->add_option("FILE", arguments.file, "a file of SubRip, or of plain WebVTT")
        ->required();
    addId(*describe(*subtitles, arguments, &findSubtitles, "find",
                    "Ask the provider for a film's subtitle files, and print their addresses. They may hold "
                    "the account: keep them to yourself"),
          arguments, "id of a film");
    describe(app, arguments, &examineProvider, "doctor",
             "Ask the provider everything once, and say what is wrong with its answers");
}

std::string normaliseWatchedType(std::string& type) {
    const std::string fault = normaliseType(type);
    return fault.empty() && type != "live" ? fault : "movies or series, not " + type;
}

/// A command that has others below it, and does something by itself.
CLI::App* describeGroup(CLI::App& app, Arguments& arguments, Command command, const char* name,
                        const char* explanation) {
    auto* group = app.add_subcommand(name, explanation);
    // It runs after its subcommands' own.
    group->callback([&arguments, group, command] {
        if (group->get_subcommands().empty()) {
            arguments.command = command;
        }
    });
    return group;
}

void describeFavorites(CLI::App& app, Arguments& arguments) {
    auto* favorites =
        describeGroup(app, arguments, &listFavorites, "favorites", "List the favourites, the latest first");
    addId(*describe(*favorites, arguments, &toggleFavorite, "toggle",
                    "Make an item a favourite, or a favourite none, and say which"),
          arguments, "id of an item");
}

void describeHistory(CLI::App& app, Arguments& arguments) {
    auto* history =
        describeGroup(app, arguments, &listHistory, "history", "List what was watched, the latest first");
    addId(*describe(*history, arguments, &removeFromHistory, "remove", "Forget that an item was watched"),
          arguments, "id of a film or an episode");
    describe(*history, arguments, &clearHistory, "clear", "Forget all films, or all episodes")
        ->add_option("TYPE", arguments.type, "movies or series")
        ->required()
        ->transform(CLI::Validator(normaliseWatchedType, ""));
}

void describeGuide(CLI::App& app, Arguments& arguments, RawArguments& raw) {
    constexpr const char* channel = "id of a live channel";
    auto* guide = app.add_subcommand("guide", "The programme guide")->require_subcommand(1);
    describe(*guide, arguments, &loadGuide, "load", "Download the provider's whole guide");
    addId(*describe(*guide, arguments, &showCurrentProgram, "now", "Show what is on"), arguments, channel);
    auto* day = describe(*guide, arguments, &listPrograms, "day",
                         "List what begins on a day of this device's calendar");
    addId(*day, arguments, channel);
    day->add_option("YYYY-MM-DD", raw.day, "the day")->required();
    addId(*describe(*guide, arguments, &loadShortGuide, "short",
                    "Ask for the channel's short guide, add it to the guide and list it"),
          arguments, channel);
}

/// CLI11 would repeat arguments that it does not know, and one of them may be a password.
std::string failureMessage(const CLI::App* app, const CLI::Error& error) {
    const bool isUnknown = error.get_exit_code() == static_cast<int>(CLI::ExitCodes::ExtrasError);
    return "error: " + (isUnknown ? "an argument is not known here" : visibleText(error.what())) + "\nRun " +
           app->get_name() + " --help for more.\n";
}

} // namespace

ParsedArguments parseArguments(int argc, char** argv) {
    ParsedArguments result;
    Arguments& arguments = result.arguments;
    RawArguments raw;
    CLI::App app("Ondavia without a window", "ondavia-cli");
    app.require_subcommand(1);
    app.fallthrough();
    app.failure_message(failureMessage);
    app.add_flag("--json", raw.json, "print one JSON object a line");
    describeAccount(app, arguments);
    describeCatalogue(app, arguments, raw);
    describeMedia(app, arguments, raw);
    describeFavorites(app, arguments);
    describeHistory(app, arguments);
    describeGuide(app, arguments, raw);
    try {
        app.parse(argc, argv);
        if (!raw.catchup.empty()) {
            arguments.catchup = parseCatchup(raw.catchup);
        }
        if (raw.day) {
            arguments.day = parseDay(*raw.day);
        }
    } catch (const CLI::ParseError& error) {
        result.exitStatus = app.exit(error) == 0 ? 0 : usageStatus;
    }
    arguments.format = raw.json ? OutputFormat::Json : OutputFormat::Text;
    if (!raw.category.empty()) {
        arguments.category = raw.category;
    }
    if (!raw.onlyType.empty()) {
        arguments.onlyType = raw.onlyType;
    }
    if (raw.limit > 0) {
        arguments.limit = raw.limit;
    }
    return result;
}

} // namespace ondavia::cli
