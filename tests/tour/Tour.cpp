#include "tour/Tour.h"

#include "app/Services.h"
#include "screens/browse/CatalogueBrowser.h"
#include "support/TestSupport.h"

#include <QDir>
#include <QElapsedTimer>
#include <QImage>
#include <QQuickItem>
#include <QTest>

#include <algorithm>
#include <stdexcept>
#include <vector>

namespace ondavia {
namespace {

constexpr std::chrono::seconds patience{60};

/// Whether anything inside `item` is still on its way: pictures that load, motion that has not ended.
bool isLoadingPictures(const QQuickItem& item) {
    if (!item.isVisible()) {
        return false;
    }
    constexpr int loading = 2;
    if (item.inherits("QQuickImageBase") && item.property("status").toInt() == loading) {
        return true;
    }
    const auto children = item.childItems();
    return std::any_of(children.begin(), children.end(),
                       [](const QQuickItem* child) { return isLoadingPictures(*child); });
}

/// By the tree of what is drawn: pages made by address have no QObject parent in the window.
QQuickItem* findVisible(QQuickItem& item, const QString& objectName) {
    if (!item.isVisible()) {
        return nullptr;
    }
    if (item.objectName() == objectName) {
        return &item;
    }
    for (QQuickItem* child : item.childItems()) {
        if (QQuickItem* found = findVisible(*child, objectName)) {
            return found;
        }
    }
    return nullptr;
}

} // namespace

Tour::Tour(QQuickWindow& window, Services& services, QString folder, QString prefix)
    : m_window(window)
    , m_services(services)
    , m_folder(std::move(folder))
    , m_prefix(std::move(prefix)) {
    takeKeyboard();
}

void Tour::signIn(const QString& server, const QString& user, const QString& password) {
    showEmptyTabs();
    shoot(QStringLiteral("welcome"));
    press(Qt::Key_Return);
    waitFor(QStringLiteral("the sign-in step"),
            [this] { return find(QStringLiteral("server")).isVisible(); });
    settle();
    shoot(QStringLiteral("sign-in"));
    type(QStringLiteral("server"), server);
    type(QStringLiteral("username"), user);
    type(QStringLiteral("password"), QStringLiteral("errada"));
    click(find(QStringLiteral("test")));
    waitFor(QStringLiteral("the answer"), [this] { return find(QStringLiteral("test")).isEnabled(); });
    shoot(QStringLiteral("sign-in-refused"));
    type(QStringLiteral("password"), password);
    click(find(QStringLiteral("signIn")));
    waitFor(QStringLiteral("the catalogue"),
            [this] { return !m_services.appState.isLoading() && m_services.appState.totalLive() > 0; });
}

void Tour::browse() {
    selectTab(0);
    shoot(QStringLiteral("home"));
    showOverlays();
    browseLive();
    browseMovies();
    watchFilms();
    browseSeries();
    search();
    selectTab(4);
    shoot(QStringLiteral("favorites"));
    press(Qt::Key_Escape);
    press(Qt::Key_Escape);
    shoot(QStringLiteral("dialog"));
    press(Qt::Key_Escape);
    settle();
}

void Tour::showOverlays() {
    const std::pair<ToastType, const char*> toasts[] = {
        {ToastType::info, "A atualizar conteudo..."},
        {ToastType::success, "Conteudo atualizado!"},
        {ToastType::warning, "Sem internet — a usar dados em cache"},
        {ToastType::error, "Erro ao carregar conteúdo. Verifica a tua ligação."}};
    const char* names[] = {"info", "success", "warning", "error"};
    for (const auto& [type, text] : toasts) {
        m_services.appState.showToast(text, type);
        settle();
        shoot(QStringLiteral("toast-") + QLatin1String(names[static_cast<int>(type)]));
    }
    m_services.appState.setToastMessage(std::nullopt);
    m_services.appState.setLoadingMessage("A carregar conteudo...");
    m_services.appState.setIsLoading(true);
    settle();
    shoot(QStringLiteral("loading-overlay"));
    m_services.appState.setIsLoading(false);
    m_services.appState.setLoadingMessage({});
}

void Tour::browseLive() {
    selectTab(1);
    shoot(QStringLiteral("live"));
    showLoading(QStringLiteral("liveCategories"), QStringLiteral("live"));
    click(row(QStringLiteral("liveCategories"), 0));
    waitFor(QStringLiteral("the channels"),
            [this] { return find(QStringLiteral("liveChannels")).isVisible(); });
    settle();
    shoot(QStringLiteral("live-channels"));
    click(row(QStringLiteral("liveChannels"), 0));
    watchLive();
    press(Qt::Key_Escape);
    settle();
}

void Tour::showEmptyTabs() {
    for (const auto& [tab, name] : {std::pair(1, "live"), std::pair(2, "movies"), std::pair(3, "series")}) {
        selectTab(tab);
        shoot(QLatin1String(name) + QStringLiteral("-empty"));
    }
    selectTab(0);
}

void Tour::showLoading(const QString& list, const QString& name) {
    QQuickItem* page = &find(list);
    while (!page->property("browser").canConvert<CatalogueBrowser*>() ||
           !page->property("loadingText").isValid()) {
        page = page->parentItem();
    }
    auto* browser = page->property("browser").value<CatalogueBrowser*>();
    browser->setIsLoading(true);
    shoot(name + QStringLiteral("-loading"));
    browser->setIsLoading(false);
    settle();
}

/// The rows of a tab, by the keyboard, and one category whole.
void Tour::showCarousels(const QString& kind, const QString& name) {
    shoot(name);
    showLoading(kind + QStringLiteral("Carousels"), name);
    for (const int key : {Qt::Key_Tab, Qt::Key_Backtab, Qt::Key_Down, Qt::Key_Right, Qt::Key_Right}) {
        press(key);
    }
    shoot(name + QStringLiteral("-focus"));
    press(Qt::Key_End);
    press(Qt::Key_Right);
    shoot(name + QStringLiteral("-header"));
    press(Qt::Key_Return);
    waitFor(QStringLiteral("the category"), [&] { return isShown(kind + QStringLiteral("Grid")); });
    settle();
    press(Qt::Key_Right);
    shoot(name + QStringLiteral("-category"));
    press(Qt::Key_Escape);
    settle();
    press(Qt::Key_Home);
    press(Qt::Key_Home);
    press(Qt::Key_Home);
    settle();
}

void Tour::browseMovies() {
    selectTab(2);
    showCarousels(QStringLiteral("movie"), QStringLiteral("movies"));
    click(row(QStringLiteral("carousel"), 0));
    shoot(QStringLiteral("movie-detail"));
    click(find(QStringLiteral("detailPlay")));
    watch(QStringLiteral("player-film"));
    press(Qt::Key_Escape);
    settle();
}

void Tour::browseSeries() {
    selectTab(3);
    showCarousels(QStringLiteral("series"), QStringLiteral("series"));
    click(row(QStringLiteral("carousel"), 0));
    waitFor(QStringLiteral("the episodes"), [this] { return isShown(QStringLiteral("seasons")); });
    shoot(QStringLiteral("series-detail"));
    seeEpisodes();
    press(Qt::Key_Escape);
    settle();
}

void Tour::watch(const QString& name) {
    showMoving(name);
    leavePlayer();
}

/// Two pictures of what plays, one second apart: they must differ.
void Tour::showMoving(const QString& name) {
    const PlayerManager& manager = m_services.playerManager;
    waitFor(QStringLiteral("the picture"), [&manager] {
        return manager.isPlaying() && !manager.isBuffering() && manager.currentTime() > 0;
    });
    const QImage first = m_window.grabWindow();
    shoot(name + QStringLiteral("-1"));
    const double time = manager.currentTime();
    waitFor(QStringLiteral("the next second"), [&] { return manager.currentTime() >= time + 1; });
    const QImage second = m_window.grabWindow();
    shoot(name + QStringLiteral("-2"));
    if (first == second) {
        throw std::runtime_error("the picture of " + name.toStdString() + " does not move");
    }
}

void Tour::shoot(const QString& name) {
    settle();
    const QString file = QDir(m_folder).filePath(m_prefix + name + QStringLiteral(".png"));
    if (!m_window.grabWindow().save(file)) {
        throw std::runtime_error("cannot write " + file.toStdString());
    }
}

void Tour::selectTab(int tab) {
    m_services.appState.setSelectedTab(static_cast<AppTab>(tab));
    settle();
}

/// Waits until pictures are there and the motion of a change has run its course.
void Tour::settle() {
    constexpr qint64 motion = 400;
    QElapsedTimer clock;
    clock.start();
    testing::waitUntil(
        [&] { return clock.elapsed() >= motion && !isLoadingPictures(*m_window.contentItem()); },
        std::chrono::seconds(10));
}

bool Tour::isShown(const QString& objectName) const {
    return findVisible(*m_window.contentItem(), objectName) != nullptr;
}

void Tour::waitFor(const QString& what, const std::function<bool()>& condition) {
    if (!testing::waitUntil(condition, patience)) {
        throw std::runtime_error("waited in vain for " + what.toStdString());
    }
}

void Tour::type(const QString& field, const QString& text) {
    click(find(field));
    QTest::keyClick(&m_window, Qt::Key_A, Qt::ControlModifier);
    QTest::keyClick(&m_window, Qt::Key_Delete);
    for (const QChar character : text) {
        QTest::sendKeyEvent(QTest::Click, &m_window, Qt::Key_unknown, QString(character), Qt::NoModifier);
    }
}

void Tour::click(const QQuickItem& item) {
    const QPointF centre = item.mapToScene(QPointF(item.width() / 2, item.height() / 2));
    QTest::mouseClick(&m_window, Qt::LeftButton, Qt::NoModifier, centre.toPoint());
    settle();
}

/// Without a window manager nobody gives it back to a window that has filled the screen.
void Tour::takeKeyboard() {
    if (!m_window.isActive()) {
        m_window.requestActivate();
        waitFor(QStringLiteral("the keyboard"), [this] { return m_window.isActive(); });
    }
}

void Tour::press(int key) {
    takeKeyboard();
    QTest::keyClick(&m_window, static_cast<Qt::Key>(key));
}

QQuickItem& Tour::find(const QString& objectName) const {
    if (QQuickItem* item = findVisible(*m_window.contentItem(), objectName)) {
        return *item;
    }
    throw std::runtime_error("nothing called " + objectName.toStdString() + " is on screen");
}

QQuickItem& Tour::row(const QString& view, std::size_t place) const {
    std::vector<QQuickItem*> rows;
    QQuickItem& list = find(view);
    for (QQuickItem* row : list.property("contentItem").value<QQuickItem*>()->childItems()) {
        const bool isInSight =
            list.contains(row->mapToItem(&list, QPointF(row->width() / 2, row->height() / 2)));
        if (row->isVisible() && row->height() > 0 && row->isEnabled() && isInSight) {
            rows.push_back(row);
        }
    }
    std::ranges::sort(rows, {}, [](const QQuickItem* row) { return std::pair(row->y(), row->x()); });
    if (place >= rows.size()) {
        throw std::runtime_error(view.toStdString() + " has no row " + std::to_string(place));
    }
    return *rows[place];
}

} // namespace ondavia
