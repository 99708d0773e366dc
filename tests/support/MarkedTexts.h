#pragma once

#include "base/LocalizedText.h"

#include <initializer_list>
#include <string>

namespace ondavia::testing {

/// While it lives, each of `keys` has itself in angle brackets for its text: what shows "<tab.home>" has
/// asked for "tab.home".
class MarkedTexts final {
public:
    MarkedTexts(std::initializer_list<const char*> keys) {
        TextCatalogue catalogue;
        for (const std::string key : keys) {
            catalogue[key] = "<" + key + ">";
        }
        installTextCatalogue(std::move(catalogue));
    }
    ~MarkedTexts() { installTextCatalogue({}); }
    MarkedTexts(const MarkedTexts&) = delete;
    MarkedTexts& operator=(const MarkedTexts&) = delete;
};

} // namespace ondavia::testing
