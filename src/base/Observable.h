#pragma once

/// Declares one observable field of a QObject: a getter `name()`, a setter `setter(value)` and a signal
/// `nameChanged()` that is emitted when the value became another one. The initial value follows.
#define ONDAVIA_OBSERVABLE(Type, name, setter, ...)                                                          \
public:                                                                                                      \
    [[nodiscard]] const Type& name() const {                                                                 \
        return m_##name;                                                                                     \
    }                                                                                                        \
    void setter(Type value) {                                                                                \
        if (!(m_##name == value)) {                                                                          \
            m_##name = std::move(value);                                                                     \
            Q_EMIT name##Changed();                                                                          \
        }                                                                                                    \
    }                                                                                                        \
    Q_SIGNAL void name##Changed();                                                                           \
                                                                                                             \
private:                                                                                                     \
    Type m_##name = Type(__VA_ARGS__)
