#pragma once

#include <QColor>
#include <QPainter>
#include <QSize>

#include <cstdint>

namespace ondavia::demo {

/// Three colours that go together, made of a key.
struct Palette final {
    QColor sky;
    QColor glow;
    QColor ink;

    static Palette of(std::uint64_t key);
};

/// Paints a landscape, a skyline, a sea, an orbit, a forest or a bold pattern, as the key says.
void paintScenery(QPainter& painter, QSize size, std::uint64_t key, const Palette& palette);

/// Head and shoulders before a soft background.
void paintPortrait(QPainter& painter, QSize size, std::uint64_t key, const Palette& palette);

} // namespace ondavia::demo
