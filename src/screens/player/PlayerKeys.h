#pragma once

#include <QObject>
#include <QString>
#include <QVariantList>
#include <qqmlregistration.h>

#include <functional>
#include <vector>

namespace ondavia {

class PlayerScreen;

/// What the keys of a computer do in a player, and how the list of them reads. Main thread.
class PlayerKeys final : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the player")
    /// Of each line its `keys` and its `action`, in words.
    Q_PROPERTY(QVariantList lines READ lines CONSTANT)

public:
    enum class Repeat { No, Yes };
    /// Whether a key means the same while a layer lies over the player.
    enum class Layers { Below, Any };
    struct Binding final {
        std::vector<int> keys;
        QString names;
        QString action;
        /// Whether a key held down goes on.
        Repeat repeat;
        /// Takes the key that was pressed.
        std::function<void(int key)> run;
        Layers layers = Layers::Below;
    };

    /// `isCovered` tells whether a layer lies over the player.
    explicit PlayerKeys(std::function<bool()> isCovered)
        : m_isCovered(std::move(isCovered)) {}

    /// Each appends to the list. The player must outlive the object.
    void bind(Binding binding);
    void bindPlayback(PlayerScreen& player);
    void bindSound(PlayerScreen& player);
    void bindLayers(PlayerScreen& player);
    /// What the way back is called, which the list ends with.
    void setLeaving(const QString& action) { m_leaving = action; }

    /// Does what a `Qt::Key` stands for; false where it stands for nothing here. A key held down repeats only
    /// what moves by steps.
    Q_INVOKABLE bool press(int key, bool isAutoRepeat);
    [[nodiscard]] QVariantList lines() const;

private:
    [[nodiscard]] const Binding* find(int key) const;

    std::function<bool()> m_isCovered;
    std::vector<Binding> m_bindings;
    QString m_leaving;
};

} // namespace ondavia
