#include "protocol/wire/DecodingError.h"

#include "base/VisibleText.h"

namespace ondavia {
namespace {

constexpr std::size_t excerptBytes = 40;
/// Of so much of the text an excerpt is made.
constexpr std::size_t sourceBytes = 4096;

std::string describe(const DecodingFailure& failure) {
    std::string line = failure.action.empty() ? std::string("reply") : failure.action;
    if (failure.row) {
        line += ", row " + std::to_string(*failure.row);
    }
    if (!failure.keyPath.empty()) {
        line += ", key " + failure.keyPath;
    }
    return line + ": " + failure.expected + " expected, " + failure.found + " found";
}

bool continuesCharacter(char byte) {
    return (static_cast<unsigned char>(byte) & 0xC0) == 0x80;
}

struct Beginning final {
    std::string text;
    bool isCut = false;
};

Beginning beginningOf(std::string_view text, TextEnd end) {
    if (text.size() > sourceBytes) {
        text = text.substr(0, sourceBytes);
        end = TextEnd::Cut;
    }
    // Masked before it is cut: half a secret would not be recognised.
    std::string shown = maskSecrets(text, end);
    if (shown.size() <= excerptBytes) {
        return {std::move(shown), false};
    }
    std::size_t size = excerptBytes;
    while (size > 0 && continuesCharacter(shown[size])) {
        --size;
    }
    shown.resize(size);
    return {std::move(shown), true};
}

} // namespace

DecodingError::DecodingError(DecodingFailure failure)
    : std::runtime_error(describe(failure))
    , m_failure(std::make_shared<const DecodingFailure>(std::move(failure))) {}

std::string beginning(std::string_view text) {
    const Beginning shown = beginningOf(text, TextEnd::Whole);
    return shown.text + (shown.isCut ? "..." : "");
}

std::string excerpt(std::string_view text, TextEnd end) {
    const Beginning shown = beginningOf(text, end);
    return '"' + visibleText(shown.text) + (shown.isCut ? "\"..." : "\"");
}

} // namespace ondavia
