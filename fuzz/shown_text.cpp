#include "FuzzSupport.h"

#include "base/Redaction.h"
#include "base/Text.h"
#include "base/VisibleText.h"

#include <algorithm>
#include <string>

namespace {

using namespace ondavia;

/// No host holds such a one, which is all that is shown of a URL.
constexpr std::string_view secret = "pa/ss wo:rd";

void checkMasking(std::string_view text, TextEnd end) {
    const std::string masked = maskSecrets(text, end);
    fuzzing::require(masked.find(secret) == std::string::npos, "a secret is masked");
    fuzzing::require(!masked.ends_with(secret.substr(0, secret.size() - 1)) || end == TextEnd::Whole,
                     "the beginning of a secret is masked where a text was cut");
}

void checkVisibleText(std::string_view text) {
    const std::string shown = visibleText(text);
    fuzzing::require(isValidUtf8(shown), "what is shown is text");
    fuzzing::require(
        std::ranges::none_of(shown, [](unsigned char byte) { return byte < 0x20 || byte == 0x7F; }),
        "what is shown has no control characters");
    fuzzing::require(visibleText(shown) == shown, "what is shown stays as it is");
    fuzzing::require(!isValidUtf8(text) || isValidUtf8(visibleJson(text)), "JSON stays text");
}

} // namespace

/// The first byte says whether the rest is a text or a piece of one.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    fuzzing::prepareOnce();
    registerSecret(secret);
    registerSecret("http");
    if (size > 0) {
        const std::string_view text = fuzzing::textOf(data + 1, size - 1);
        checkMasking(text, data[0] % 2 == 0 ? TextEnd::Whole : TextEnd::Cut);
        checkVisibleText(text);
    }
    return 0;
}
