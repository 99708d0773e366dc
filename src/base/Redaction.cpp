#include "base/Redaction.h"

#include "base/SecretFinder.h"

#include <algorithm>
#include <array>
#include <mutex>
#include <optional>

namespace ondavia {
namespace {

std::mutex secretsMutex;

/// Never destroyed: what is logged at the very end of the process is masked too.
std::vector<std::string>& secrets() {
    static auto* const list = new std::vector<std::string>;
    return *list;
}

std::vector<bool> secretBytes(std::string_view text, TextEnd end) {
    std::vector<bool> marks(text.size(), false);
    const std::lock_guard lock(secretsMutex);
    for (const std::string& secret : secrets()) {
        markSecret(text, secret, end, marks);
    }
    return marks;
}

bool isSchemeCharacter(char character) {
    return (character >= 'a' && character <= 'z') || (character >= 'A' && character <= 'Z') ||
           (character >= '0' && character <= '9') || character == '+' || character == '-' || character == '.';
}

bool isHostCharacter(char character) {
    return (isSchemeCharacter(character) && character != '+') || character == '_' || character == '~' ||
           static_cast<unsigned char>(character) >= 0x80;
}

/// What is neither is more likely a password with a slash in it.
bool isHostAndPort(std::string_view text) {
    constexpr std::size_t mostPortDigits = 5;
    const auto bracket = text.starts_with('[') ? text.find(']') : std::string_view::npos;
    const auto colon = text.find(':', bracket == std::string_view::npos ? 0 : bracket);
    const auto host = text.substr(0, colon);
    const auto port = colon == std::string_view::npos ? std::string_view() : text.substr(colon + 1);
    const bool isAddress = bracket != std::string_view::npos && bracket + 1 == host.size() &&
                           host.find_first_not_of("[]:.0123456789abcdefABCDEF") == std::string_view::npos;
    return (isAddress || std::ranges::all_of(host, isHostCharacter)) && port.size() <= mostPortDigits &&
           port.find_first_not_of("0123456789") == std::string_view::npos;
}

/// Goes through a text once and copies what may be seen. A delimiter within a registered secret does not
/// delimit: of a password with a blank in it, no half stays behind.
class Masker final {
public:
    Masker(std::string_view text, TextEnd end)
        : m_text(text)
        , m_isSecret(secretBytes(text, end)) {}

    std::string run() {
        while (m_at < m_text.size()) {
            const bool isMasked =
                maskURL() || maskMediaPath() || maskQueryValue() || maskMember() || maskSecret();
            if (isMasked) {
                m_isInWord = false;
            } else {
                m_isInWord = isSchemeCharacter(m_text[m_at]);
                copyTo(m_at + 1);
            }
        }
        return std::move(m_masked);
    }

private:
    [[nodiscard]] std::string_view rest() const { return m_text.substr(m_at); }

    /// Where `form` ends that begins at `at`, with or without JSON's backslash before each slash and
    /// quotation mark; absent where it does not.
    [[nodiscard]] std::optional<std::size_t> endOf(std::string_view form, std::size_t at) const {
        for (const char byte : form) {
            const bool isEscaped = (byte == '/' || byte == '"') && m_text.substr(at).starts_with('\\');
            at += isEscaped ? 1 : 0;
            if (at >= m_text.size() || m_text[at] != byte) {
                return std::nullopt;
            }
            ++at;
        }
        return at;
    }

    void copyTo(std::size_t end) {
        m_masked += m_text.substr(m_at, end - m_at);
        m_at = end;
    }

    void maskTo(std::size_t end) {
        m_masked += maskedText;
        m_at = end;
    }

    /// The first of `delimiters`, or control character, that delimits; the end of the text without one.
    [[nodiscard]] std::size_t findFrom(std::size_t at, std::string_view delimiters) const {
        while (at < m_text.size() &&
               (m_isSecret[at] || (static_cast<unsigned char>(m_text[at]) >= 0x20 &&
                                   delimiters.find(m_text[at]) == std::string_view::npos))) {
            ++at;
        }
        return at;
    }

    bool maskURL() {
        if (m_isInWord) {
            return false;
        }
        const auto scheme =
            static_cast<std::size_t>(std::ranges::find_if_not(rest(), isSchemeCharacter) - rest().begin());
        const auto authority = scheme == 0 ? std::nullopt : endOf("://", m_at + scheme);
        if (!authority) {
            return false;
        }
        copyTo(*authority);
        maskAuthority();
        // A password may hold most of what ends a URL in a text.
        const auto end = findFrom(m_at, " \"'<>");
        if (end > m_at && std::string_view("/?#\\").find(m_text[m_at]) != std::string_view::npos) {
            copyTo(endOf("/", m_at).value_or(m_at + 1));
            if (end > m_at) {
                maskTo(end);
            }
        }
        return true;
    }

    void maskAuthority() {
        const bool isAddress = rest().starts_with('[');
        const auto end = findFrom(m_at, isAddress ? "/?#\\ \"'<>,)" : "/?#\\ \"'<>,)]");
        const auto user = m_text.substr(m_at, end - m_at).rfind('@');
        if (user != std::string_view::npos) {
            maskTo(m_at + user);
            copyTo(m_at + 1);
        }
        if (isHostAndPort(m_text.substr(m_at, end - m_at))) {
            copyTo(end);
        } else {
            maskTo(end);
        }
    }

    bool maskMediaPath() {
        constexpr std::array<std::string_view, 4> roots{"/live/", "/movie/", "/series/", "/timeshift/"};
        std::optional<std::size_t> rootEnd;
        for (const auto root : roots) {
            rootEnd = rootEnd ? rootEnd : endOf(root, m_at);
        }
        if (!rootEnd) {
            return false;
        }
        const auto userEnd = findFrom(*rootEnd, "/ \"'");
        if (userEnd == m_text.size() || m_text[userEnd] != '/') {
            return false;
        }
        const auto passwordEnd = findFrom(userEnd + 1, "/ \"'");
        copyTo(*rootEnd);
        maskTo(passwordEnd);
        return true;
    }

    bool maskQueryValue() {
        for (const std::string_view key : {"username=", "password="}) {
            if (rest().starts_with(key)) {
                copyTo(m_at + key.size());
                maskValue("& \"'");
                return true;
            }
        }
        return false;
    }

    bool maskMember() {
        for (const std::string_view key : {"\"username\"", "\"password\""}) {
            const auto keyEnd = endOf(key, m_at);
            if (!keyEnd) {
                continue;
            }
            const auto colon = m_text.find_first_not_of(" \t\r\n", *keyEnd);
            if (colon == std::string_view::npos || m_text[colon] != ':') {
                return false;
            }
            copyTo(std::min(m_text.find_first_not_of(" \t\r\n", colon + 1), m_text.size()));
            maskValue(",}] ");
            return true;
        }
        return false;
    }

    /// Up to one of `delimiters`; what stands in quotation marks, up to the closing one.
    void maskValue(std::string_view delimiters) {
        const auto opened = endOf("\"", m_at);
        if (!opened) {
            maskTo(findFrom(m_at, delimiters));
            return;
        }
        const std::size_t escapes = *opened - m_at - 1;
        copyTo(*opened);
        auto end = findFrom(m_at, "\"");
        while (backslashesBefore(end) > escapes) {
            end = findFrom(end + 1, "\"");
        }
        maskTo(end - backslashesBefore(end));
    }

    /// How many of the bytes from here on stand right before a quotation mark at `at`; none where there is
    /// none.
    [[nodiscard]] std::size_t backslashesBefore(std::size_t at) const {
        std::size_t count = 0;
        while (at < m_text.size() && m_text[at] == '"' && at - count > m_at &&
               m_text[at - count - 1] == '\\') {
            ++count;
        }
        return count;
    }

    bool maskSecret() {
        if (!m_isSecret[m_at]) {
            return false;
        }
        const auto end =
            std::find(m_isSecret.begin() + static_cast<std::ptrdiff_t>(m_at), m_isSecret.end(), false);
        maskTo(static_cast<std::size_t>(end - m_isSecret.begin()));
        return true;
    }

    std::string_view m_text;
    std::vector<bool> m_isSecret;
    std::string m_masked;
    std::size_t m_at = 0;
    /// Whether the byte before is one that a scheme may hold: then no scheme begins here.
    bool m_isInWord = false;
};

} // namespace

std::string maskSecrets(std::string_view text, TextEnd end) {
    return Masker(text, end).run();
}

void registerSecret(std::string_view secret) {
    const std::lock_guard lock(secretsMutex);
    if (std::ranges::find(secrets(), secret) == secrets().end()) {
        secrets().emplace_back(secret);
    }
}

bool standsIn(std::string_view text, std::string_view secret) {
    std::vector<bool> marks(text.size(), false);
    return markSecret(text, secret, TextEnd::Whole, marks);
}

} // namespace ondavia
