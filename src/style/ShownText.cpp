#include "style/ShownText.h"

namespace ondavia {
namespace {

bool turnsDirection(QChar character) {
    const char16_t code = character.unicode();
    return (code >= 0x202A && code <= 0x202E) || (code >= 0x2066 && code <= 0x2069);
}

} // namespace

QString shownText(std::string_view text, qsizetype longest) {
    constexpr std::size_t longestCharacter = 4;
    const std::string_view seen = text.substr(0, static_cast<std::size_t>(longest) * longestCharacter);
    QString shown = QString::fromUtf8(seen.data(), static_cast<qsizetype>(seen.size())).left(longest);
    if (!shown.isEmpty() && shown.back().isHighSurrogate()) {
        shown.chop(1);
    }
    shown.removeIf(turnsDirection);
    for (QChar& character : shown) {
        if (character.category() == QChar::Other_Control) {
            character = u' ';
        }
    }
    return shown;
}

} // namespace ondavia
