#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace ondavia {

/// The user-visible text under `key`: the entry of the user's language, or `defaultText` where that
/// language has none. Key and default always stand together at the place of use; there is no table of
/// defaults. Any thread.
[[nodiscard]] std::string localizedText(std::string_view key, std::string_view defaultText);

/// Lets a catalogue be asked with a `string_view`, without a copy.
struct TextKeyHash final {
    using is_transparent = void;
    std::size_t operator()(std::string_view key) const { return std::hash<std::string_view>()(key); }
};

/// The texts of one language under their keys.
using TextCatalogue = std::unordered_map<std::string, std::string, TextKeyHash, std::equal_to<>>;

/// Makes `catalogue` the one that `localizedText` asks from now on; an empty one leaves the defaults. Any
/// thread, though texts that were looked up before stay as they are on screen.
void installTextCatalogue(TextCatalogue catalogue);

/// The first of the `available` language codes ("en") that the user's `preferred` list names, be it as
/// "en", "en-GB" or "en_GB.UTF-8"; empty when none does. The language of the defaults belongs among
/// `available`, or a reader of it would get one further down the list.
[[nodiscard]] std::string chooseLanguage(const std::vector<std::string>& preferred,
                                         const std::vector<std::string>& available);

} // namespace ondavia
