#include "demo/Scenery.h"

#include "demo/Mix.h"

#include <QLinearGradient>
#include <QPainterPath>
#include <QRadialGradient>

#include <array>
#include <cmath>
#include <numbers>

namespace ondavia::demo {
namespace {

/// A number from 0 to 1 for the n-th decision of one picture.
double chance(std::uint64_t key, std::uint64_t n) {
    return static_cast<double>(mix(key, n) % 10000) / 10000.0;
}

QColor mixed(const QColor& a, const QColor& b, double share) {
    const auto blend = [share](double x, double y) { return static_cast<float>(x + (y - x) * share); };
    return QColor::fromRgbF(blend(a.redF(), b.redF()), blend(a.greenF(), b.greenF()),
                            blend(a.blueF(), b.blueF()));
}

void paintSky(QPainter& painter, QSize size, const Palette& palette) {
    QLinearGradient gradient(0, 0, 0, size.height());
    gradient.setColorAt(0, palette.sky);
    gradient.setColorAt(0.75, palette.glow);
    gradient.setColorAt(1, mixed(palette.glow, palette.ink, 0.4));
    painter.fillRect(QRect(QPoint(), size), gradient);
}

void paintDisc(QPainter& painter, QPointF centre, double radius, const QColor& colour) {
    QRadialGradient halo(centre, radius * 3.2);
    QColor edge = colour;
    edge.setAlpha(110);
    halo.setColorAt(0.25, edge);
    edge.setAlpha(0);
    halo.setColorAt(1, edge);
    painter.setPen(Qt::NoPen);
    painter.setBrush(halo);
    painter.drawEllipse(centre, radius * 3.2, radius * 3.2);
    painter.setBrush(colour);
    painter.drawEllipse(centre, radius, radius);
}

void paintStars(QPainter& painter, QSize size, std::uint64_t key) {
    painter.setPen(Qt::NoPen);
    for (std::uint64_t i = 0; i < 90; ++i) {
        painter.setBrush(QColor(255, 255, 255, 40 + static_cast<int>(chance(key, i + 500) * 160)));
        const double radius = size.width() * (0.0008 + 0.0022 * chance(key, i + 700));
        painter.drawEllipse(
            QPointF(chance(key, i + 100) * size.width(), chance(key, i + 300) * size.height() * 0.6), radius,
            radius);
    }
}

/// A ridge of sines, filled down to the lower edge.
QPainterPath ridge(QSize size, double level, double height, std::uint64_t key) {
    QPainterPath path(QPointF(0, size.height()));
    constexpr int steps = 120;
    for (int i = 0; i <= steps; ++i) {
        const double x = static_cast<double>(i) / steps;
        double y = 0;
        for (int octave = 1; octave <= 5; ++octave) {
            const double frequency =
                std::pow(1.9, octave) * (0.6 + chance(key, static_cast<std::uint64_t>(octave)));
            const double phase = chance(key, static_cast<std::uint64_t>(octave) + 20) * 2 * std::numbers::pi;
            y += std::sin(x * frequency * 2.2 + phase) / std::pow(1.7, octave);
        }
        path.lineTo(x * size.width(), (level - y * height) * size.height());
    }
    path.lineTo(size.width(), size.height());
    path.closeSubpath();
    return path;
}

void paintMountains(QPainter& painter, QSize size, std::uint64_t key, const Palette& palette) {
    paintStars(painter, size, key);
    paintDisc(painter, QPointF(size.width() * (0.25 + 0.5 * chance(key, 1)), size.height() * 0.36),
              size.height() * 0.075, palette.glow.lighter(150));
    for (int layer = 0; layer < 4; ++layer) {
        painter.setBrush(mixed(palette.glow, palette.ink, 0.35 + 0.2 * layer));
        painter.drawPath(ridge(size, 0.48 + 0.1 * layer, 0.10, mix(key, static_cast<std::uint64_t>(layer))));
    }
}

void paintSkyline(QPainter& painter, QSize size, std::uint64_t key, const Palette& palette) {
    paintDisc(painter, QPointF(size.width() * 0.7, size.height() * 0.3), size.height() * 0.09,
              palette.glow.lighter(140));
    for (std::uint64_t layer = 0; layer < 3; ++layer) {
        const QColor wall = mixed(palette.glow, palette.ink, 0.45 + 0.25 * static_cast<double>(layer));
        std::uint64_t n = layer * 1000;
        for (double x = -0.02; x < 1; ++n) {
            const double width = 0.05 + 0.06 * chance(key, n);
            const double top = 0.36 + 0.12 * static_cast<double>(layer) + 0.2 * chance(key, n + 300);
            const QRectF house(x * size.width(), top * size.height(), width * size.width() + 1,
                               size.height());
            painter.fillRect(house, wall);
            const double pane = size.height() * 0.006;
            for (std::uint64_t w = 0; w < 26; ++w) {
                if (chance(key, n * 31 + w) > 0.55) {
                    painter.fillRect(
                        QRectF(house.left() + house.width() * (0.15 + 0.18 * static_cast<double>(w % 4)),
                               house.top() + pane * (2.0 + 3.2 * static_cast<double>(w / 4)), pane * 1.4,
                               pane * 1.7),
                        QColor(255, 226, 160, 150));
                }
            }
            x += width + 0.004;
        }
    }
}

void paintSea(QPainter& painter, QSize size, std::uint64_t key, const Palette& palette) {
    const QPointF moon(size.width() * (0.3 + 0.4 * chance(key, 1)), size.height() * 0.33);
    paintDisc(painter, moon, size.height() * 0.065, QColor(255, 244, 220));
    painter.fillRect(QRectF(0, size.height() * 0.55, size.width(), size.height()),
                     mixed(palette.sky, palette.ink, 0.4));
    for (std::uint64_t i = 0; i < 46; ++i) {
        const double depth = static_cast<double>(i) / 46;
        const double length = size.width() * (0.03 + 0.22 * depth) * (0.5 + chance(key, i + 40));
        const double x =
            moon.x() + (chance(key, i + 90) - 0.5) * size.width() * (0.1 + 0.7 * depth) - length / 2;
        painter.fillRect(QRectF(x, size.height() * (0.56 + 0.42 * depth), length, size.height() * 0.004),
                         QColor(255, 244, 220, 150 - static_cast<int>(110 * depth)));
    }
    const double boat = size.width() * (0.15 + 0.6 * chance(key, 7));
    const double water = size.height() * 0.56;
    const double unit = size.height() * 0.03;
    painter.setBrush(palette.ink);
    painter.drawPolygon(QPolygonF({{boat, water - unit * 0.5},
                                   {boat + unit * 3, water - unit * 0.5},
                                   {boat + unit * 2.4, water + unit * 0.4},
                                   {boat + unit * 0.5, water + unit * 0.4}}));
    painter.drawPolygon(QPolygonF({{boat + unit * 1.4, water - unit * 4},
                                   {boat + unit * 1.4, water - unit * 0.7},
                                   {boat + unit * 3, water - unit * 0.7}}));
}

void paintOrbit(QPainter& painter, QSize size, std::uint64_t key, const Palette& palette) {
    painter.fillRect(QRect(QPoint(), size), palette.ink);
    paintStars(painter, size, key);
    paintStars(painter, size, key + 1);
    const QPointF centre(size.width() * (0.35 + 0.3 * chance(key, 1)), size.height() * 0.42);
    const double radius = size.height() * (0.14 + 0.08 * chance(key, 2));
    QRadialGradient body(centre - QPointF(radius * 0.5, radius * 0.5), radius * 1.7);
    body.setColorAt(0, palette.glow.lighter(135));
    body.setColorAt(0.6, palette.sky);
    body.setColorAt(1, palette.ink);
    painter.setBrush(body);
    painter.drawEllipse(centre, radius, radius);
    painter.save();
    painter.translate(centre);
    painter.rotate(-25 + 50 * chance(key, 3));
    painter.setBrush(Qt::NoBrush);
    for (int i = 0; i < 5; ++i) {
        QColor ring = palette.glow.lighter(140);
        ring.setAlpha(170 - 30 * i);
        painter.setPen(QPen(ring, size.height() * 0.004));
        const double reach = radius * (1.5 + 0.16 * i);
        painter.drawArc(QRectF(-reach, -reach * 0.25, reach * 2, reach * 0.5), 150 * 16, 240 * 16);
    }
    painter.restore();
}

void paintForest(QPainter& painter, QSize size, std::uint64_t key, const Palette& palette) {
    for (std::uint64_t layer = 0; layer < 4; ++layer) {
        painter.setBrush(mixed(palette.glow, palette.ink, 0.25 + 0.22 * static_cast<double>(layer)));
        const double base = size.height() * (0.68 + 0.12 * static_cast<double>(layer));
        for (std::uint64_t i = 0; i < 26; ++i) {
            const double x = (static_cast<double>(i) + chance(key, layer * 100 + i)) / 25 * size.width();
            const double tall = size.height() * (0.16 + 0.16 * chance(key, layer * 200 + i)) *
                                (0.7 + 0.2 * static_cast<double>(layer));
            for (int tier = 0; tier < 3; ++tier) {
                const double top = base - tall + tall * 0.25 * tier;
                const double half = tall * (0.1 + 0.05 * tier);
                painter.drawPolygon(
                    QPolygonF({{x, top}, {x + half, top + tall * 0.4}, {x - half, top + tall * 0.4}}));
            }
        }
        painter.fillRect(QRectF(0, base - size.height() * 0.12, size.width(), size.height()),
                         painter.brush());
        QColor mist = palette.glow.lighter(125);
        mist.setAlpha(26);
        painter.fillRect(QRectF(0, base - size.height() * 0.16, size.width(), size.height() * 0.14), mist);
    }
}

void paintPattern(QPainter& painter, QSize size, std::uint64_t key, const Palette& palette) {
    painter.fillRect(QRect(QPoint(), size), palette.sky);
    const QPointF centre(size.width() * (0.2 + 0.6 * chance(key, 1)),
                         size.height() * (0.25 + 0.2 * chance(key, 2)));
    const double reach = size.height() * 0.09;
    for (int i = 8; i > 0; --i) {
        painter.setBrush(i % 2 == 0 ? palette.glow : mixed(palette.sky, palette.ink, 0.35));
        painter.drawEllipse(centre, reach * i * 0.7, reach * i * 0.7);
    }
    painter.setBrush(palette.ink);
    const double slope = 0.2 * chance(key, 3);
    painter.drawPolygon(QPolygonF({{0.0, size.height() * (0.55 + slope)},
                                   {static_cast<double>(size.width()), size.height() * (0.75 - slope)},
                                   {static_cast<double>(size.width()), static_cast<double>(size.height())},
                                   {0.0, static_cast<double>(size.height())}}));
}

} // namespace

Palette Palette::of(std::uint64_t key) {
    const auto hue = static_cast<int>(mix(key, 1) % 360);
    const std::array<int, 4> steps{28, 55, 180, 330};
    const int second = (hue + steps[mix(key, 2) % steps.size()]) % 360;
    return {.sky = QColor::fromHsv(hue, 165 + static_cast<int>(mix(key, 3) % 60),
                                   95 + static_cast<int>(mix(key, 4) % 50)),
            .glow = QColor::fromHsv(second, 130 + static_cast<int>(mix(key, 5) % 70), 200),
            .ink = QColor::fromHsv(hue, 150, 26)};
}

void paintScenery(QPainter& painter, QSize size, std::uint64_t key, const Palette& palette) {
    using Painter = void (*)(QPainter&, QSize, std::uint64_t, const Palette&);
    static constexpr std::array<Painter, 6> painters{paintMountains, paintSkyline, paintSea,
                                                     paintOrbit,     paintForest,  paintPattern};
    painter.setRenderHint(QPainter::Antialiasing);
    paintSky(painter, size, palette);
    painter.setPen(Qt::NoPen);
    pick(painters, mix(key, 77))(painter, size, key, palette);
}

void paintPortrait(QPainter& painter, QSize size, std::uint64_t key, const Palette& palette) {
    painter.setRenderHint(QPainter::Antialiasing);
    paintSky(painter, size, palette);
    painter.setPen(Qt::NoPen);
    const double w = size.width();
    const double h = size.height();
    painter.setBrush(mixed(palette.sky, palette.ink, 0.6));
    painter.drawEllipse(QPointF(w * 0.5, h * 1.02), w * 0.44, h * 0.34);
    const QColor skin = QColor::fromHsv(18 + static_cast<int>(mix(key, 9) % 14), 95,
                                        130 + static_cast<int>(mix(key, 8) % 100));
    painter.setBrush(skin.darker(115));
    painter.drawRoundedRect(QRectF(w * 0.42, h * 0.5, w * 0.16, h * 0.24), w * 0.06, w * 0.06);
    painter.setBrush(QColor::fromHsv(20, 90, 25 + static_cast<int>(mix(key, 10) % 110)));
    painter.drawEllipse(QPointF(w * 0.5, h * 0.385), w * 0.235, h * 0.195);
    painter.setBrush(skin);
    painter.drawEllipse(QPointF(w * 0.5, h * 0.43), w * 0.185, h * 0.165);
}

} // namespace ondavia::demo
