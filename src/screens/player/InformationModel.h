#pragma once

#include "platform/FSPlayer.h"
#include "platform/Scheduler.h"

#include <QAbstractListModel>
#include <QString>
#include <qqmlregistration.h>

#include <array>
#include <memory>
#include <string>

namespace ondavia {

class PlayerManager;

/// What plays and how, a line each, for whoever wants to know why a picture does not come. The engine is
/// asked once a second while the lines show, and not otherwise. The account is masked. Main thread.
class InformationModel final : public QAbstractListModel {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the application")
    Q_PROPERTY(bool isShown READ isShown WRITE setIsShown NOTIFY isShownChanged)

public:
    enum Role { LabelRole = Qt::UserRole, ValueRole };

    static constexpr double secondsBetweenLooks = 1.0;

    /// Both outlive the object.
    InformationModel(PlayerManager& manager, Scheduler& scheduler, QObject* parent = nullptr);

    [[nodiscard]] bool isShown() const { return m_timer != nullptr; }
    void setIsShown(bool isShown);
    Q_INVOKABLE void toggle() { setIsShown(!isShown()); }

    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
    [[nodiscard]] QHash<int, QByteArray> roleNames() const override;

    Q_SIGNAL void isShownChanged();

private:
    void look();
    /// An engine that tries again has no answer yet: that of the one before it is kept.
    void rememberAnswer(const std::string& answer);
    void show(const FSStatistics& statistics);

    PlayerManager& m_manager;
    Scheduler& m_scheduler;
    std::unique_ptr<ScheduledTimer> m_timer;
    std::array<QString, 8> m_values;
    std::string m_itemId;
    std::string m_answer;
};

} // namespace ondavia
