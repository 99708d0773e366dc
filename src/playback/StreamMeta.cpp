#include "playback/StreamMeta.h"

#include "base/Text.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace ondavia {
namespace {

constexpr auto largest = std::numeric_limits<std::int64_t>::max();
constexpr auto smallest = std::numeric_limits<std::int64_t>::min();

std::int64_t wholePart(double number) {
    if (std::isnan(number)) {
        return 0;
    }
    // As a double, `largest` is the first number beyond the range.
    if (number >= static_cast<double>(largest)) {
        return largest;
    }
    return number <= static_cast<double>(smallest) ? smallest : static_cast<std::int64_t>(number);
}

} // namespace

bool isInteger(const QVariant& value) {
    switch (value.typeId()) {
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::Long:
    case QMetaType::ULong:
    case QMetaType::LongLong:
    case QMetaType::ULongLong:
    case QMetaType::Short:
    case QMetaType::UShort:
    case QMetaType::Char:
    case QMetaType::SChar:
    case QMetaType::UChar:
        return true;
    default:
        return false;
    }
}

std::optional<std::int64_t> parseMetaInt(const QVariant& value) {
    switch (value.typeId()) {
    case QMetaType::QString:
        return parseDecimalInteger(value.toString().toStdString());
    case QMetaType::Double:
    case QMetaType::Float:
        return wholePart(value.toDouble());
    case QMetaType::ULong:
    case QMetaType::ULongLong:
        return static_cast<std::int64_t>(std::min(value.toULongLong(), static_cast<qulonglong>(largest)));
    case QMetaType::Bool:
        return value.toLongLong();
    default:
        return isInteger(value) ? std::optional(value.toLongLong()) : std::nullopt;
    }
}

std::optional<std::int64_t> metaInt(const QVariantMap& stream, const char* key) {
    return parseMetaInt(stream.value(QString::fromLatin1(key)));
}

std::optional<std::string> metaText(const QVariantMap& stream, const char* key) {
    const QVariant value = stream.value(QString::fromLatin1(key));
    return value.typeId() == QMetaType::QString ? std::optional(value.toString().toStdString())
                                                : std::nullopt;
}

std::vector<QVariantMap> streamsOf(const QVariantMap& mediaMeta) {
    const QVariant value = mediaMeta.value(QStringLiteral("streams"));
    if (value.typeId() != QMetaType::QVariantList) {
        return {};
    }
    std::vector<QVariantMap> streams;
    for (const QVariant& stream : value.toList()) {
        if (stream.typeId() != QMetaType::QVariantMap) {
            return {};
        }
        streams.push_back(stream.toMap());
    }
    return streams;
}

} // namespace ondavia
