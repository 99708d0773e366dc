#include "store/SqlText.h"

namespace ondavia {

std::string quotedName(std::string_view name) {
    return std::string("\"").append(name).append("\"");
}

} // namespace ondavia
