#pragma once

#include "base/Date.h"
#include "cli/Command.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace ondavia::cli {

enum class OutputFormat { Text, Json };

/// A recording of a live channel.
struct Catchup final {
    Date start;
    std::int64_t minutes = 0;
};

/// The command line, checked.
struct Arguments final {
    Command command = nullptr;
    bool wantsPassword = false;
    OutputFormat format = OutputFormat::Text;
    std::string server;
    std::string username;
    /// "live", "movie" or "series".
    std::string type;
    std::optional<std::string> category;
    std::optional<std::int64_t> limit;
    /// What to search for.
    std::string text;
    std::optional<std::string> onlyType;
    std::string id;
    std::vector<std::string> ids;
    std::string file;
    std::optional<Catchup> catchup;
    /// A moment of the day in the device's time zone.
    std::optional<Date> day;
    /// Seconds.
    double playFrom = 0;
    /// Seconds.
    double playFor = 10;
};

/// Reads the command line. Where there is nothing to do but to end, `exitStatus` says with what: the help
/// or the fault has been printed then.
struct ParsedArguments final {
    Arguments arguments;
    std::optional<int> exitStatus;
};
[[nodiscard]] ParsedArguments parseArguments(int argc, char** argv);

} // namespace ondavia::cli
