#pragma once

#include <QObject>
#include <QString>
#include <qqmlregistration.h>

#include <span>
#include <string_view>

namespace ondavia {

/// One symbol name of the screens and the code point of the icon font that draws it.
struct IconEntry final {
    std::string_view symbol;
    char16_t codePoint;
};

/// Every symbol there is.
[[nodiscard]] std::span<const IconEntry> iconTable();

/// The symbols for QML.
class Icons final : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON

public:
    /// The text that draws `symbol` in the icon font; empty for a name that is not in the table.
    Q_INVOKABLE [[nodiscard]] QString glyph(const QString& symbol) const;
};

} // namespace ondavia
