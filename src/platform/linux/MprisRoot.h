#pragma once

#include <QDBusAbstractAdaptor>
#include <QStringList>

namespace ondavia {

/// Who plays, in the words of MPRIS. It can neither be raised nor ended from there, nor given something to
/// play.
class MprisRoot final : public QDBusAbstractAdaptor {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.mpris.MediaPlayer2")
    Q_PROPERTY(QString Identity READ identity CONSTANT)
    Q_PROPERTY(QString DesktopEntry READ desktopEntry CONSTANT)
    Q_PROPERTY(bool CanQuit READ never CONSTANT)
    Q_PROPERTY(bool CanRaise READ never CONSTANT)
    Q_PROPERTY(bool HasTrackList READ never CONSTANT)
    Q_PROPERTY(QStringList SupportedUriSchemes READ none CONSTANT)
    Q_PROPERTY(QStringList SupportedMimeTypes READ none CONSTANT)

public:
    explicit MprisRoot(QObject* parent)
        : QDBusAbstractAdaptor(parent) {}

    [[nodiscard]] QString identity() const { return QStringLiteral("Ondavia"); }
    [[nodiscard]] QString desktopEntry() const { return QStringLiteral("ondavia"); }
    [[nodiscard]] bool never() const { return false; }
    [[nodiscard]] QStringList none() const { return {}; }
};

} // namespace ondavia
