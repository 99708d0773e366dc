#pragma once

#include <QImageReader>

#include <algorithm>
#include <array>
#include <string_view>

namespace ondavia {

/// Whether the bytes, a device that is open, are a picture of pixels and of a kind that the web has. A
/// drawing is none: whoever reads one carries out what it says, for as long as that takes, and it may name
/// files of this machine. Any thread.
[[nodiscard]] inline bool isRasterPicture(QIODevice& bytes) {
    constexpr std::array<std::string_view, 7> formats = {"png", "jpeg", "jpg", "gif", "webp", "bmp", "ico"};
    const QByteArray format = QImageReader::imageFormat(&bytes);
    return std::ranges::find(formats, std::string_view(format.constData())) != formats.end();
}

} // namespace ondavia
