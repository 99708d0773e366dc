#pragma once

#include "engine/EngineTestSupport.h"

#include <QImage>
#include <QQuickItem>
#include <QQuickWindow>

#include <chrono>
#include <cmath>

namespace ondavia::testing {

/// A window with a large host, as of a full-screen player, and a small one, as of the mini player.
class Scene final {
public:
    Scene() {
        m_window.setColor(Qt::darkGreen);
        m_window.resize(640, 480);
        m_large.setParentItem(m_window.contentItem());
        m_large.setSize({640, 360});
        m_small.setParentItem(m_window.contentItem());
        m_small.setPosition({440, 365});
        m_small.setSize({200, 112});
        m_window.show();
    }

    [[nodiscard]] QQuickWindow& window() { return m_window; }
    [[nodiscard]] QQuickItem* large() { return &m_large; }
    [[nodiscard]] QQuickItem* small() { return &m_small; }

    static void host(const Engine& engine, QQuickItem* host) {
        QQuickItem* item = engine->view()->item();
        item->setParentItem(host);
        item->setPosition({0, 0});
        item->setSize(host->size());
    }

    [[nodiscard]] QImage grab(const QQuickItem& host) {
        return m_window.grabWindow().copy(host.mapRectToScene(host.boundingRect()).toRect());
    }

private:
    QQuickWindow m_window;
    QQuickItem m_large;
    QQuickItem m_small;
};

/// Mean difference of two pictures, from 0 to 255.
inline double difference(const QImage& one, const QImage& other) {
    const QSize size(64, 36);
    const auto small = [size](const QImage& image) {
        return image.scaled(size, Qt::IgnoreAspectRatio, Qt::SmoothTransformation)
            .convertToFormat(QImage::Format_RGB32);
    };
    const QImage a = small(one);
    const QImage b = small(other);
    double sum = 0;
    for (int y = 0; y < size.height(); ++y) {
        for (int x = 0; x < size.width(); ++x) {
            const QRgb p = a.pixel(x, y);
            const QRgb q = b.pixel(x, y);
            sum +=
                std::abs(qRed(p) - qRed(q)) + std::abs(qGreen(p) - qGreen(q)) + std::abs(qBlue(p) - qBlue(q));
        }
    }
    return sum / 3 / size.width() / size.height();
}

inline bool isBlack(const QImage& image) {
    QImage black(image.size(), QImage::Format_RGB32);
    black.fill(Qt::black);
    return difference(image, black) < 1;
}

inline bool showsPicture(Scene& scene, const QQuickItem* host) {
    return waitUntil([&] { return !isBlack(scene.grab(*host)); }, std::chrono::minutes(1));
}

inline bool pictureMoves(Scene& scene, const QQuickItem* host) {
    const QImage before = scene.grab(*host);
    return waitUntil([&] { return difference(scene.grab(*host), before) > 1; }, std::chrono::minutes(1));
}

} // namespace ondavia::testing
