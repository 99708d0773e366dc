#include "base/LocalizedText.h"

namespace ondavia {

std::string localizedText(std::string_view /*key*/, std::string_view defaultText) {
    return std::string(defaultText);
}

} // namespace ondavia
