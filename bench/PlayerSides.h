#pragma once

#include "BareVideo.h"
#include "app/Services.h"
#include "playback/FSPlayerUIView.h"

#include <QQuickWindow>

#include <chrono>
#include <cstddef>
#include <functional>
#include <memory>

namespace ondavia::bench {

using Clock = std::chrono::steady_clock;

constexpr QSize windowSize(1280, 800);

/// Runs the event loop until `condition` holds. Raises std::runtime_error when it does not.
void await(const std::function<bool()>& condition, std::chrono::seconds patience = std::chrono::seconds(60));
void runLoop(double seconds);

/// Draws as the application does. Before the first window.
void drawAsTheApplication();

[[nodiscard]] Channel itemAt(const QString& url, const char* type);

/// A window with nothing in it but a film.
class PlainWindow final {
public:
    PlainWindow();
    [[nodiscard]] QQuickWindow& window() { return m_window; }

private:
    QQuickWindow m_window;
};

/// The player manager and its host, as the screens have them, in a plain window.
class OurPlayer final {
public:
    OurPlayer();
    /// In place of what plays. Seconds to the first frame.
    double start(const Channel& item);
    void stop() { m_services.playerManager.stop(); }

private:
    Services m_services{MpvOutputs::Window};
    PlainWindow m_window;
    FSPlayerUIView m_host;
    Clock::time_point m_firstFrame;
};

class BarePlayer final {
public:
    /// In place of what plays, which is closed first. Seconds to the first frame.
    double start(const Channel& item);
    /// Returns when mpv has ended.
    void stop();

private:
    BareSigns m_signs;
    PlainWindow m_window;
    std::unique_ptr<QQuickItem> m_item;
};

/// What the process has of the system.
struct Holdings final {
    std::ptrdiff_t threads = 0;
    std::ptrdiff_t descriptors = 0;
    /// MiB.
    double memory = 0;

    static Holdings now();
    void print(int after) const;
};

} // namespace ondavia::bench
