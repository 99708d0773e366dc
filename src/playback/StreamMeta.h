#pragma once

#include <QVariantMap>

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace ondavia {

/// Whether it is a number without a fraction, of any width and sign. Flags are none.
[[nodiscard]] bool isInteger(const QVariant& value);

/// An integer out of stream metadata, where numbers come as numbers and as text: an integer, a text that
/// is a decimal integer and nothing else, or a fraction cut to its whole part and to 64 bits. Absent for
/// everything else.
[[nodiscard]] std::optional<std::int64_t> parseMetaInt(const QVariant& value);

/// The integer under `key` of a stream's dictionary.
[[nodiscard]] std::optional<std::int64_t> metaInt(const QVariantMap& stream, const char* key);

/// The text under `key` of a stream's dictionary; absent when it is missing or no text.
[[nodiscard]] std::optional<std::string> metaText(const QVariantMap& stream, const char* key);

/// The dictionaries of a file's streams; none when "streams" is anything but a list of dictionaries.
[[nodiscard]] std::vector<QVariantMap> streamsOf(const QVariantMap& mediaMeta);

} // namespace ondavia
