#pragma once

#include <QQuickWindow>
#include <QString>

#include <cstddef>
#include <functional>

class QQuickItem;

namespace ondavia {

class Services;
struct Channel;

/// Walks through the running application as a viewer does, with clicks and keys, and writes a PNG of each
/// screen. Main thread.
class Tour {
public:
    /// All must outlive the object. Pictures go to `folder`, each name behind `prefix`.
    Tour(QQuickWindow& window, Services& services, QString folder, QString prefix);

    /// Signs in on an empty application: the step empty, with a refused account, and the load.
    void signIn(const QString& server, const QString& user, const QString& password);
    /// Every tab, the overlays and the players of a filled application. Raises std::runtime_error where
    /// the application does not do what a viewer would expect.
    void browse();

protected:
    /// What a viewer does, and waits for. What has no way raises std::runtime_error.
    void selectTab(int tab);
    void settle();
    void waitFor(const QString& what, const std::function<bool()>& condition);
    void type(const QString& field, const QString& text);
    void click(const QQuickItem& item);
    void press(int key);
    [[nodiscard]] QQuickItem& find(const QString& objectName) const;
    [[nodiscard]] bool isShown(const QString& objectName) const;
    /// From the top, among those in sight.
    [[nodiscard]] QQuickItem& row(const QString& view, std::size_t place) const;
    [[nodiscard]] QQuickWindow& window() { return m_window; }
    [[nodiscard]] Services& services() { return m_services; }

private:
    void shoot(const QString& name);
    void showOverlays();
    void showEmptyTabs();
    void showLoading(const QString& list, const QString& name);
    void showCarousels(const QString& kind, const QString& name);
    void browseLive();
    void browseMovies();
    void browseSeries();
    void seeEpisodes();
    void search();
    void watch(const QString& name);
    void showMoving(const QString& name);
    void watchLive();
    void showGuide();
    void showTheWholeScreen();
    void browseOverTheMiniPlayer();
    void endMiniPlayer();
    void watchFilms();
    void start(const Channel& channel);
    void showSheet(const QString& name);
    void showSubtitles(const QString& name);
    void showWithoutAPicture();
    void leavePlayer();
    void takeKeyboard();

    QQuickWindow& m_window;
    Services& m_services;
    QString m_folder;
    QString m_prefix;
};

} // namespace ondavia
