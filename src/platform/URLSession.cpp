#include "platform/URLSession.h"

#include "base/Redaction.h"

#include <QUrl>

namespace ondavia {

std::optional<QUrl> makeURL(std::string_view text) {
    QUrl url(QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size())), QUrl::StrictMode);
    if (text.empty() || !url.isValid()) {
        return std::nullopt;
    }
    return url;
}

URLError::URLError(Kind kind, const std::string& description)
    : std::runtime_error(maskSecrets(description))
    , m_kind(kind) {}

} // namespace ondavia
