#pragma once

#include <QQuickWindow>

#include <chrono>
#include <functional>

class QQmlApplicationEngine;

namespace ondavia::bench {

/// Draws as the application does, and on every side of a comparison alike. Before the first window, or in the
/// environment of the children.
void drawAlike();

/// An empty window with the modules that the screens are made of.
QQuickWindow& openEmptyWindow(QQmlApplicationEngine& engine);

/// The first visible item below `item` of that class; null for none.
QQuickItem* findVisible(QQuickItem& item, const char* className);

/// Runs the event loop until a frame is on screen that was drawn while `isReady` held. When that was.
std::chrono::steady_clock::time_point awaitFrame(QQuickWindow& window, const std::function<bool()>& isReady);

} // namespace ondavia::bench
