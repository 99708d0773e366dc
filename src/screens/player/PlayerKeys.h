#pragma once

#include <QObject>
#include <QString>
#include <QVariantList>
#include <qqmlregistration.h>

#include <functional>
#include <vector>

namespace ondavia {

class PlayerViewModel;

/// What the keys of a computer do in the player, and how the list of them reads. Main thread.
class PlayerKeys final : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the player")
    /// Of each line its `keys` and its `action`, in words.
    Q_PROPERTY(QVariantList lines READ lines CONSTANT)

public:
    /// `view` must outlive the object.
    explicit PlayerKeys(PlayerViewModel& view);

    /// Does what a `Qt::Key` stands for; false where it stands for nothing here. A key held down repeats only
    /// what moves by steps.
    Q_INVOKABLE bool press(int key, bool isAutoRepeat);
    [[nodiscard]] QVariantList lines() const;

private:
    enum class Repeat { No, Yes };
    struct Binding final {
        std::vector<int> keys;
        QString names;
        QString action;
        Repeat repeat;
        std::function<void()> run;
    };

    void bindPlayback();
    void bindLayers();
    [[nodiscard]] const Binding* find(int key) const;

    PlayerViewModel& m_view;
    std::vector<Binding> m_bindings;
};

} // namespace ondavia
