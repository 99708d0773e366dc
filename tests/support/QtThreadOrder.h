#pragma once

class QObject;
class QEvent;

namespace ondavia::testing {

/// Tells the thread sanitizer that what other threads handed to Qt before has arrived here. Qt's own
/// libraries are not instrumented: without it whatever passes through an event queue, a pool or a future
/// looks like a race. Nothing in other builds.
void arrivedThroughQt();
/// The same for what goes to other threads from here.
void leavesThroughQt();

/// `Base` is QCoreApplication or QGuiApplication.
template<class Base> class OrderedApplication final : public Base {
public:
    using Base::Base;
    bool notify(QObject* receiver, QEvent* event) override {
        arrivedThroughQt();
        const bool handled = Base::notify(receiver, event);
        leavesThroughQt();
        return handled;
    }
};

} // namespace ondavia::testing
