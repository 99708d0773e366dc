#include "screens/player/PlaybackChoices.h"

#include <array>
#include <charconv>

namespace ondavia {

QString speedLabel(float speed) {
    constexpr int digits = 2;
    std::array<char, 32> text{};
    // Rounds half to even, which Qt's numbers do not, and knows no locale.
    const auto end = std::to_chars(text.data(), text.data() + text.size(), static_cast<double>(speed),
                                   std::chars_format::general, digits);
    return QLatin1String(text.data(), end.ptr - text.data()) + QLatin1Char('x');
}

} // namespace ondavia
