#pragma once

#include "support/HttpServer.h"

#include <QBuffer>
#include <QImage>
#include <QLinearGradient>
#include <QPainter>

#include <atomic>
#include <cstdint>

namespace ondavia::testing {

/// A picture server: posters with a sky, a hill and a moon each, and round logos.
class Posters final {
public:
    Posters() {
        m_server.server.Get(R"(/(poster|logo|backdrop)/(\d+)\.png)",
                            [this](const httplib::Request& request, httplib::Response& response) {
                                const int number = std::stoi(request.matches[2]);
                                const std::string kind = request.matches[1];
                                const QImage image = kind == "logo"     ? paintLogo(number)
                                                     : kind == "poster" ? paintPoster(number, {400, 600})
                                                                        : paintPoster(number, {1280, 720});
                                response.set_content(encoded(image), "image/png");
                                ++m_served;
                            });
        m_server.start();
    }

    [[nodiscard]] std::string poster(std::int64_t number) const {
        return m_server.url("/poster/" + std::to_string(number) + ".png");
    }
    [[nodiscard]] std::string logo(std::int64_t number) const {
        return m_server.url("/logo/" + std::to_string(number) + ".png");
    }
    [[nodiscard]] std::string backdrop(std::int64_t number) const {
        return m_server.url("/backdrop/" + std::to_string(number) + ".png");
    }
    [[nodiscard]] int served() const { return m_served; }

private:
    static QImage paintPoster(int number, QSize size) {
        QImage image(size, QImage::Format_RGB32);
        QPainter painter(&image);
        painter.setRenderHint(QPainter::Antialiasing);
        const int hue = number * 47 % 360;
        const int middle = size.width() / 2;
        const int ground = size.height();
        QLinearGradient sky(0, 0, 0, ground);
        sky.setColorAt(0, QColor::fromHsv(hue, 150, 60));
        sky.setColorAt(1, QColor::fromHsv((hue + 40) % 360, 170, 210));
        painter.fillRect(image.rect(), sky);
        painter.setPen(Qt::NoPen);
        painter.setBrush(QColor(255, 245, 225, 220));
        painter.drawEllipse(QPoint(middle - 100 + number * 37 % 200, 170), 52, 52);
        painter.setBrush(QColor::fromHsv(hue, 190, 40));
        painter.drawEllipse(QPoint(number * 61 % (2 * middle), ground + 60), middle + 140, 260);
        painter.setBrush(QColor::fromHsv(hue, 200, 24));
        painter.drawEllipse(QPoint(2 * middle - number * 29 % 300, ground + 100), middle + 180, 220);
        return image;
    }
    static QImage paintLogo(int number) {
        QImage image(300, 200, QImage::Format_ARGB32);
        image.fill(Qt::transparent);
        QPainter painter(&image);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(Qt::NoPen);
        painter.setBrush(QColor::fromHsv(number * 71 % 360, 200, 230));
        painter.drawRoundedRect(20, 40, 260, 120, 60, 60);
        painter.setBrush(Qt::white);
        painter.drawEllipse(QPoint(90 + number % 3 * 60, 100), 34, 34);
        return image;
    }
    static std::string encoded(const QImage& image) {
        QByteArray bytes;
        QBuffer buffer(&bytes);
        buffer.open(QIODevice::WriteOnly);
        image.save(&buffer, "PNG");
        return bytes.toStdString();
    }

    HttpServer m_server;
    std::atomic<int> m_served = 0;
};

} // namespace ondavia::testing
