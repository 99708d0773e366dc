#pragma once

#include "base/Observable.h"
#include "entities/Channel.h"
#include "screens/details/DetailBadge.h"
#include "screens/details/DetailServices.h"

#include <QObject>
#include <QString>
#include <QUrl>
#include <QVariantList>
#include <qqmlregistration.h>

#include <vector>

namespace ondavia {

/// What the pages of a film and of a series have in common: the facts of the record, the mark as a
/// favourite, and the steps of coming into sight, which each visit takes again, also one that comes back from
/// the player. Belongs to its page. Main thread.
class DetailViewModel : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the application")
    Q_PROPERTY(bool isSeries READ isSeries CONSTANT)
    Q_PROPERTY(QString title READ title CONSTANT)
    Q_PROPERTY(QUrl poster READ poster CONSTANT)
    Q_PROPERTY(QUrl backdrop READ backdrop CONSTANT)
    Q_PROPERTY(bool hasPoster READ hasPoster CONSTANT)
    Q_PROPERTY(bool hasBackdrop READ hasBackdrop CONSTANT)
    /// Each with `text` and `highlight`.
    Q_PROPERTY(QVariantList badges READ badgeList CONSTANT)
    Q_PROPERTY(QString plot READ plot CONSTANT)
    /// The plot is long enough to be shown in two ways.
    Q_PROPERTY(bool hasPlotToggle READ hasPlotToggle CONSTANT)
    Q_PROPERTY(QString plotToggleText READ plotToggleText NOTIFY showFullPlotChanged)
    Q_PROPERTY(bool showFullPlot READ showFullPlot NOTIFY showFullPlotChanged)
    Q_PROPERTY(QString cast READ cast CONSTANT)
    Q_PROPERTY(QString director READ director CONSTANT)
    Q_PROPERTY(bool isFavorite READ isFavorite NOTIFY isFavoriteChanged)
    /// Of the main button.
    Q_PROPERTY(QString playText READ playText NOTIFY continuesChanged)
    /// Something would play.
    Q_PROPERTY(bool canPlay READ canPlay NOTIFY canPlayChanged)
    /// Whether the page is, as far as the page itself can tell.
    Q_PROPERTY(bool isInSight READ isInSight WRITE setIsInSight NOTIFY isInSightChanged)

    ONDAVIA_OBSERVABLE(bool, isFavorite, setIsFavorite, false);
    ONDAVIA_OBSERVABLE(bool, showFullPlot, setShowFullPlot, false);
    ONDAVIA_OBSERVABLE(bool, isInSight, setIsInSight, false);

public:
    /// From this many characters on, as a reader counts them, a plot has the toggle.
    static constexpr int longPlot = 151;

    DetailViewModel(const DetailServices& services, Channel channel);
    ~DetailViewModel() override;

    /// The page has come into sight, for the first time or again.
    virtual void appear() = 0;
    /// The main button: goes on where the viewer has stopped, or begins.
    Q_INVOKABLE virtual void play() = 0;

    [[nodiscard]] const Channel& channel() const { return m_channel; }
    [[nodiscard]] bool isSeries() const { return m_channel.type == "series"; }
    [[nodiscard]] QString title() const;
    [[nodiscard]] QUrl poster() const;
    [[nodiscard]] QUrl backdrop() const;
    [[nodiscard]] bool hasPoster() const { return !poster().isEmpty(); }
    [[nodiscard]] bool hasBackdrop() const { return !backdrop().isEmpty(); }
    [[nodiscard]] virtual std::vector<DetailBadge> badges() const = 0;
    [[nodiscard]] QVariantList badgeList() const;
    [[nodiscard]] QString plot() const;
    [[nodiscard]] bool hasPlotToggle() const;
    [[nodiscard]] QString plotToggleText() const;
    [[nodiscard]] QString cast() const;
    [[nodiscard]] QString director() const;
    [[nodiscard]] QString playText() const;
    /// Whether the main button goes on with something.
    [[nodiscard]] virtual bool continues() const = 0;
    [[nodiscard]] virtual bool canPlay() const = 0;

    Q_INVOKABLE void togglePlot() { setShowFullPlot(!showFullPlot()); }
    Q_INVOKABLE void toggleFavorite();
    /// From now on it goes with `page`.
    Q_INVOKABLE void belongTo(QObject* page) { setParent(page); }

    Q_SIGNAL void continuesChanged();
    Q_SIGNAL void canPlayChanged();

protected:
    [[nodiscard]] const DetailServices& services() const { return m_services; }
    void checkFavorite();

private:
    void follow();

    DetailServices m_services;
    Channel m_channel;
    bool m_isOnShow = false;
};

} // namespace ondavia
