#include "protocol/wire/DecodingError.h"

#include "base/Redaction.h"

namespace ondavia {
namespace {

constexpr std::size_t excerptBytes = 40;

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

} // namespace

DecodingError::DecodingError(DecodingFailure failure)
    : std::runtime_error(describe(failure))
    , m_failure(std::make_shared<const DecodingFailure>(std::move(failure))) {}

std::string excerpt(std::string_view text) {
    // Masked before it is cut: half a secret would not be recognised.
    std::string shown = maskSecrets(text);
    const bool isCut = shown.size() > excerptBytes;
    if (isCut) {
        std::size_t end = excerptBytes;
        while (end > 0 && continuesCharacter(shown[end])) {
            --end;
        }
        shown.resize(end);
    }
    for (char& character : shown) {
        if (static_cast<unsigned char>(character) < 0x20 || character == 0x7F) {
            character = ' ';
        }
    }
    return '"' + shown + (isCut ? "\"..." : "\"");
}

} // namespace ondavia
