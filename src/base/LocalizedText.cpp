#include "base/LocalizedText.h"

#include "base/Text.h"

#include <algorithm>
#include <atomic>
#include <memory>

namespace ondavia {

namespace {

/// Never destroyed: an error of a thread that outlasts the process's patience is made of these texts.
std::atomic<std::shared_ptr<const TextCatalogue>>& installedCatalogue() {
    static auto* const catalogue = new std::atomic<std::shared_ptr<const TextCatalogue>>;
    return *catalogue;
}

std::string lowercaseLanguageCode(std::string_view locale) {
    return asciiLowercase(std::string(locale.substr(0, locale.find_first_of("-_.@"))));
}

} // namespace

std::string localizedText(std::string_view key, std::string_view defaultText) {
    const std::shared_ptr<const TextCatalogue> catalogue = installedCatalogue().load();
    if (catalogue) {
        if (const auto entry = catalogue->find(key); entry != catalogue->end()) {
            return entry->second;
        }
    }
    return std::string(defaultText);
}

void installTextCatalogue(TextCatalogue catalogue) {
    installedCatalogue().store(std::make_shared<const TextCatalogue>(std::move(catalogue)));
}

std::string chooseLanguage(const std::vector<std::string>& preferred,
                           const std::vector<std::string>& available) {
    for (const std::string& locale : preferred) {
        const std::string code = lowercaseLanguageCode(locale);
        if (std::ranges::find(available, code) != available.end()) {
            return code;
        }
    }
    return {};
}

} // namespace ondavia
