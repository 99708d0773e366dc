#include "base/Redaction.h"

#include <algorithm>
#include <functional>
#include <mutex>
#include <vector>

namespace ondavia {
namespace {

constexpr std::size_t shortestSecret = 4;
/// Stands for a secret while the masks that go by the form of a text are at work: one that was cut in two
/// by them would not be known again. No character that any of them stops at.
constexpr char secretMark = '\x7F';

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

void replaceAll(std::string& text, std::string_view what, std::string_view replacement) {
    for (auto at = text.find(what); at != std::string::npos; at = text.find(what, at)) {
        text.replace(at, what.size(), replacement);
        at += replacement.size();
    }
}

std::string markRegistered(std::string text) {
    const std::lock_guard lock(secretsMutex);
    for (const auto& secret : secrets()) {
        replaceAll(text, secret, {&secretMark, 1});
    }
    return text;
}

std::string maskMarks(std::string text) {
    replaceAll(text, {&secretMark, 1}, maskedText);
    return text;
}

bool isUnreserved(char character) {
    return isSchemeCharacter(character) || character == '_' || character == '~';
}

/// What a URL keeps as it is when it is not told what its parts mean.
bool mayStandInURL(char character) {
    const auto byte = static_cast<unsigned char>(character);
    return byte > 0x20 && byte < 0x7F && std::string_view("\"<>\\^`{|}").find(character) == std::string::npos;
}

std::string percentEncoded(std::string_view text, bool (*isKept)(char)) {
    constexpr std::string_view digits = "0123456789ABCDEF";
    std::string encoded;
    for (const char character : text) {
        const auto byte = static_cast<unsigned char>(character);
        if (isKept(character)) {
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
    const std::string marked = markRegistered(std::string(text));
    return maskMarks(maskQueryValues(maskMediaPaths(maskURLs(marked))));
}

void registerSecret(std::string_view secret) {
    if (secret.size() < shortestSecret) {
        return;
    }
    const std::lock_guard lock(secretsMutex);
    for (std::string form :
         {std::string(secret), percentEncoded(secret, isUnreserved), percentEncoded(secret, mayStandInURL)}) {
        if (std::ranges::find(secrets(), form) == secrets().end()) {
            secrets().push_back(std::move(form));
        }
    }
    // One may stand in another: a user name at the beginning of its password.
    std::ranges::stable_sort(secrets(), std::greater(), &std::string::size);
}

} // namespace ondavia
