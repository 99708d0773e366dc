#include "base/Redaction.h"

#include <algorithm>
#include <mutex>
#include <vector>

namespace ondavia {
namespace {

constexpr std::size_t shortestSecret = 4;

std::mutex secretsMutex;

std::vector<std::string>& secrets() {
    static std::vector<std::string> list;
    return list;
}

bool endsURL(char character) {
    return static_cast<unsigned char>(character) <= 0x20 || character == '"' || character == '\'' ||
           character == '<' || character == '>' || character == ',' || character == ')' || character == ']';
}

bool isSchemeCharacter(char character) {
    return (character >= 'a' && character <= 'z') || (character >= 'A' && character <= 'Z') ||
           (character >= '0' && character <= '9') || character == '+' || character == '-' || character == '.';
}

std::size_t endOfToken(std::string_view text, std::size_t from) {
    while (from < text.size() && !endsURL(text[from])) {
        ++from;
    }
    return from;
}

/// Keeps scheme, host and port of each URL; a user part before the host goes too. A password may hold
/// any character that a URL token ends at, blanks aside, so what follows the authority is masked up to
/// the next blank or quotation mark.
std::string maskURLs(std::string_view text) {
    std::string masked;
    while (true) {
        const auto mark = text.find("://");
        if (mark == std::string_view::npos || mark == 0 || !isSchemeCharacter(text[mark - 1])) {
            masked += text.substr(0, mark == std::string_view::npos ? mark : mark + 3);
            if (mark == std::string_view::npos) {
                return masked;
            }
            text.remove_prefix(mark + 3);
            continue;
        }
        masked += text.substr(0, mark + 3);
        text.remove_prefix(mark + 3);
        const auto authorityEnd = std::min(text.find_first_of("/?#"), endOfToken(text, 0));
        std::string_view authority = text.substr(0, authorityEnd);
        if (const auto at = authority.rfind('@'); at != std::string_view::npos) {
            masked += maskedText;
            authority.remove_prefix(at);
        }
        masked += authority;
        text.remove_prefix(authority.data() + authority.size() - text.data());
        const auto tokenEnd = text.find_first_of(" \t\r\n\"'<>");
        const auto rest = text.substr(0, tokenEnd);
        if (!rest.empty() && (rest.front() == '/' || rest.front() == '?' || rest.front() == '#')) {
            if (rest.size() > 1) {
                masked += rest.front();
                masked += maskedText;
            } else {
                masked += rest;
            }
            text.remove_prefix(rest.size());
        }
    }
}

std::string maskMediaPaths(std::string text) {
    for (const std::string_view root : {"/live/", "/movie/", "/series/", "/timeshift/"}) {
        for (auto at = text.find(root); at != std::string::npos; at = text.find(root, at)) {
            at += root.size();
            const auto userEnd = text.find_first_of("/ \"'", at);
            if (userEnd == std::string::npos || text[userEnd] != '/') {
                continue;
            }
            const auto passwordEnd = std::min(text.find_first_of("/ \"'", userEnd + 1), text.size());
            text.replace(at, passwordEnd - at, maskedText);
        }
    }
    return text;
}

std::string maskQueryValues(std::string text) {
    for (const std::string_view key : {"username=", "password="}) {
        for (auto at = text.find(key); at != std::string::npos; at = text.find(key, at)) {
            at += key.size();
            const auto end = std::min(text.find_first_of("& \"'\r\n", at), text.size());
            text.replace(at, end - at, maskedText);
        }
    }
    return text;
}

std::string maskRegistered(std::string text) {
    const std::lock_guard lock(secretsMutex);
    for (const auto& secret : secrets()) {
        for (auto at = text.find(secret); at != std::string::npos; at = text.find(secret, at)) {
            text.replace(at, secret.size(), maskedText);
            at += maskedText.size();
        }
    }
    return text;
}

std::string percentEncoded(std::string_view text) {
    constexpr std::string_view digits = "0123456789ABCDEF";
    std::string encoded;
    for (const char character : text) {
        const auto byte = static_cast<unsigned char>(character);
        if (isSchemeCharacter(character) || character == '_' || character == '~') {
            encoded += character;
        } else {
            encoded += '%';
            encoded += digits[byte >> 4];
            encoded += digits[byte & 15];
        }
    }
    return encoded;
}

} // namespace

std::string maskSecrets(std::string_view text) {
    return maskRegistered(maskQueryValues(maskMediaPaths(maskURLs(text))));
}

void registerSecret(std::string_view secret) {
    if (secret.size() < shortestSecret) {
        return;
    }
    const std::lock_guard lock(secretsMutex);
    for (std::string form : {std::string(secret), percentEncoded(secret)}) {
        if (std::find(secrets().begin(), secrets().end(), form) == secrets().end()) {
            secrets().push_back(std::move(form));
        }
    }
}

} // namespace ondavia
