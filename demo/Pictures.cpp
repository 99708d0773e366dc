#include "demo/Pictures.h"

#include "demo/Mix.h"
#include "demo/Scenery.h"

#include <QBuffer>
#include <QFontMetricsF>
#include <QGuiApplication>
#include <QImage>
#include <QPainter>

#include <algorithm>
#include <array>

namespace ondavia::demo {
namespace {

using Shape = PictureRequest::Shape;

constexpr std::size_t keptPictures = 800;

QSize sizeOf(Shape shape) {
    switch (shape) {
    case Shape::poster:
        return {400, 600};
    case Shape::backdrop:
        return {1280, 720};
    case Shape::still:
        return {480, 270};
    case Shape::portrait:
        return {185, 278};
    case Shape::logo:
        break;
    }
    return {256, 256};
}

bool hasFonts() {
    return qobject_cast<QGuiApplication*>(QCoreApplication::instance()) != nullptr;
}

/// Wraps a title into the frame at the largest size that fits, standing on the frame's lower edge.
void paintTitle(QPainter& painter, const QRectF& frame, const QString& text, QFont font, int largest) {
    constexpr int flags = Qt::AlignLeft | Qt::AlignBottom | Qt::TextWordWrap;
    for (int pixels = largest; pixels > 12; pixels -= 2) {
        font.setPixelSize(pixels);
        const QRectF needed = QFontMetricsF(font).boundingRect(frame, flags, text);
        if (needed.height() <= frame.height() && needed.width() <= frame.width()) {
            break;
        }
    }
    painter.setFont(font);
    painter.drawText(frame, flags, text);
}

QFont titleFont(std::uint64_t key) {
    static constexpr auto families =
        std::to_array<const char*>({"Inter Display", "Noto Serif Display", "Inter Display", "Noto Serif"});
    QFont font(QString::fromLatin1(pick(families, mix(key, 31))));
    font.setWeight(mix(key, 32) % 2 == 0 ? QFont::Black : QFont::Bold);
    if (mix(key, 33) % 3 == 0) {
        font.setCapitalization(QFont::AllUppercase);
    }
    return font;
}

void paintPoster(QPainter& painter, const PictureRequest& request, QSize size) {
    const Palette palette = Palette::of(request.key);
    paintScenery(painter, size, request.key, palette);
    QLinearGradient shade(0, size.height() * 0.38, 0, size.height() * 0.95);
    shade.setColorAt(0, QColor(0, 0, 0, 0));
    shade.setColorAt(1, QColor(0, 0, 0, 225));
    painter.fillRect(QRect(QPoint(), size), shade);
    if (!hasFonts()) {
        return;
    }
    painter.setPen(Qt::white);
    paintTitle(painter, QRectF(28, 280, size.width() - 56, 250), QString::fromStdString(request.title),
               titleFont(request.key), 52);
    painter.fillRect(QRectF(28, 542, 44, 4), palette.glow.lighter(130));
    QFont small(QStringLiteral("Inter"));
    small.setPixelSize(16);
    small.setLetterSpacing(QFont::AbsoluteSpacing, 1.2);
    painter.setFont(small);
    painter.setPen(QColor(255, 255, 255, 190));
    painter.drawText(QRectF(28, 552, size.width() - 56, 24), Qt::AlignLeft | Qt::AlignVCenter,
                     QString::fromStdString(request.subtitle));
}

/// Up to three letters or digits: "Atlântico 1 FHD" gives "A1".
QString initials(const QString& name) {
    QString letters;
    for (const QString& word : name.split(QLatin1Char(' '), Qt::SkipEmptyParts)) {
        if (word.startsWith(QLatin1Char('[')) || word.endsWith(QStringLiteral("HD"))) {
            continue;
        }
        if (letters.size() < 3 && word.front().isLetterOrNumber()) {
            letters += word.front().toUpper();
        }
    }
    return letters;
}

void paintLogo(QPainter& painter, const PictureRequest& request, QSize size) {
    const Palette palette = Palette::of(request.key);
    painter.setRenderHint(QPainter::Antialiasing);
    const QRectF frame(8, 8, size.width() - 16, size.height() - 16);
    QLinearGradient fill(frame.topLeft(), frame.bottomRight());
    fill.setColorAt(0, palette.glow);
    fill.setColorAt(1, palette.sky);
    painter.setPen(Qt::NoPen);
    painter.setBrush(fill);
    switch (mix(request.key, 40) % 3) {
    case 0:
        painter.drawEllipse(frame);
        break;
    case 1:
        painter.drawRoundedRect(frame, 52, 52);
        break;
    default:
        painter.drawRoundedRect(frame.adjusted(0, 34, 0, -34), 30, 30);
    }
    painter.setBrush(QColor(255, 255, 255, 60));
    painter.drawRoundedRect(QRectF(64, 180, 128, 10), 5, 5);
    if (hasFonts()) {
        QFont font(QStringLiteral("Inter Display"));
        font.setWeight(QFont::Black);
        const QString text = initials(QString::fromStdString(request.title));
        font.setPixelSize(text.size() > 2 ? 84 : 108);
        painter.setFont(font);
        painter.setPen(Qt::white);
        painter.drawText(QRectF(0, 52, 256, 130), Qt::AlignCenter, text);
    }
}

QImage draw(const PictureRequest& request) {
    const QSize size = sizeOf(request.shape);
    QImage image(size, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    switch (request.shape) {
    case Shape::poster:
        paintPoster(painter, request, size);
        break;
    case Shape::logo:
        paintLogo(painter, request, size);
        break;
    case Shape::portrait:
        paintPortrait(painter, size, request.key, Palette::of(request.key));
        break;
    case Shape::backdrop:
    case Shape::still:
        paintScenery(painter, size, request.key, Palette::of(request.key));
        break;
    }
    return image;
}

std::shared_ptr<const std::string> encode(const QImage& image, Shape shape) {
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    if (shape == Shape::logo) {
        image.save(&buffer, "PNG");
    } else {
        image.convertToFormat(QImage::Format_RGB32).save(&buffer, "JPG", 88);
    }
    return std::make_shared<const std::string>(bytes.toStdString());
}

} // namespace

std::shared_ptr<const std::string> Pictures::get(const PictureRequest& request) {
    const std::uint64_t slot = mix(request.key, static_cast<std::uint64_t>(request.shape));
    {
        const std::lock_guard lock(m_mutex);
        if (const auto found = m_drawn.find(slot); found != m_drawn.end()) {
            return found->second;
        }
    }
    auto bytes = encode(draw(request), request.shape);
    const std::lock_guard lock(m_mutex);
    if (m_drawn.size() >= keptPictures) {
        m_drawn.clear();
    }
    m_drawn[slot] = bytes;
    return bytes;
}

} // namespace ondavia::demo
