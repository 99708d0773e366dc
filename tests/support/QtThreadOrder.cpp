#include "support/QtThreadOrder.h"

#if defined(__SANITIZE_THREAD__)

#include <QFutureInterface>
#include <QMetaObject>
#include <QScopeGuard>
#include <QThreadPool>

#include <cstdarg>
#include <dlfcn.h>
#include <exception>
#include <functional>
#include <utility>

extern "C" void __tsan_acquire(void* address); // NOLINT: the sanitizer's own name
extern "C" void __tsan_release(void* address); // NOLINT: the sanitizer's own name

namespace {

/// One for everything: coarser than Qt's own order, so it can hide a race between two queues, never invent
/// one.
char qtOrder = 0;

void handToQt() {
    __tsan_release(&qtOrder);
}

/// Qt's own function behind the one of the same name that stands below. `symbol` is its mangled name.
template<class Function> Function original(const char* symbol) {
    return reinterpret_cast<Function>(dlsym(RTLD_NEXT, symbol));
}

} // namespace

namespace ondavia::testing {

void arrivedThroughQt() {
    __tsan_acquire(&qtOrder);
}

void leavesThroughQt() {
    handToQt();
}

} // namespace ondavia::testing

// The doors through which the programs' own code hands something to Qt, in place of Qt's.

bool QMetaObject::invokeMethodImpl(QObject* object, QtPrivate::QSlotObjectBase* slot, Qt::ConnectionType type,
                                   void* result) {
    using Function = bool (*)(QObject*, QtPrivate::QSlotObjectBase*, Qt::ConnectionType, void*);
    static const auto function = original<Function>(
        "_ZN11QMetaObject16invokeMethodImplEP7QObjectPN9QtPrivate15QSlotObjectBaseEN2Qt14ConnectionTypeEPv");
    handToQt();
    const bool called = function(object, slot, type, result);
    // Whoever is last destroys what was handed over.
    __tsan_acquire(&qtOrder);
    return called;
}

void QMetaObject::activate(QObject* sender, const QMetaObject* meta, int signal, void** arguments) {
    using Function = void (*)(QObject*, const QMetaObject*, int, void**);
    static const auto function = original<Function>("_ZN11QMetaObject8activateEP7QObjectPKS_iPPv");
    handToQt();
    function(sender, meta, signal, arguments);
}

void QThreadPool::start(std::function<void()> work, int priority) {
    using Function = void (*)(QThreadPool*, std::function<void()>, int);
    static const auto function = original<Function>("_ZN11QThreadPool5startESt8functionIFvvEEi");
    std::function<void()> ordered = [work = std::move(work)]() mutable {
        __tsan_acquire(&qtOrder);
        work();
        // What it holds goes here: the pool's own code is not seen.
        work = nullptr;
        handToQt();
    };
    handToQt();
    function(this, std::move(ordered), priority);
}

bool QThreadPool::waitForDone(int milliseconds) {
    using Function = bool (*)(QThreadPool*, int);
    static const auto function = original<Function>("_ZN11QThreadPool11waitForDoneEi");
    const bool done = function(this, milliseconds);
    __tsan_acquire(&qtOrder);
    return done;
}

void QFutureInterfaceBase::reportFinished() {
    using Function = void (*)(QFutureInterfaceBase*);
    static const auto function = original<Function>("_ZN20QFutureInterfaceBase14reportFinishedEv");
    handToQt();
    function(this);
}

bool QFutureInterfaceBase::derefT() const {
    using Function = bool (*)(const QFutureInterfaceBase*);
    static const auto function = original<Function>("_ZNK20QFutureInterfaceBase6derefTEv");
    handToQt();
    const bool held = function(this);
    __tsan_acquire(&qtOrder);
    return held;
}

void QFutureInterfaceBase::reportException(std::exception_ptr error) {
    using Function = void (*)(QFutureInterfaceBase*, std::exception_ptr);
    static const auto function =
        original<Function>("_ZN20QFutureInterfaceBase15reportExceptionENSt15__exception_ptr13exception_ptrE");
    handToQt();
    function(this, std::move(error));
}

void QFutureInterfaceBase::waitForResult(int index) {
    using Function = void (*)(QFutureInterfaceBase*, int);
    static const auto function = original<Function>("_ZN20QFutureInterfaceBase13waitForResultEi");
    const auto ordered = qScopeGuard(ondavia::testing::arrivedThroughQt); // it may raise
    function(this, index);
}

bool QFutureInterfaceBase::isFinished() const {
    using Function = bool (*)(const QFutureInterfaceBase*);
    static const auto function = original<Function>("_ZNK20QFutureInterfaceBase10isFinishedEv");
    const bool finished = function(this);
    __tsan_acquire(&qtOrder);
    return finished;
}

void QFutureInterfaceBase::waitForFinished() {
    using Function = void (*)(QFutureInterfaceBase*);
    static const auto function = original<Function>("_ZN20QFutureInterfaceBase15waitForFinishedEv");
    function(this);
    __tsan_acquire(&qtOrder);
}

// QProcess starts its programs with a clone that shares this process's memory. The sanitizer takes such a
// child for a forked one and tells it to heed no order from then on, which the parent would then do too.
extern "C" int clone(int (*function)(void*), void* stack, int flags, void* argument, ...) noexcept {
    using Function = int (*)(int (*)(void*), void*, int, void*, ...);
    static void* const library = dlopen("libc.so.6", RTLD_LAZY | RTLD_NOLOAD);
    static const auto bare = reinterpret_cast<Function>(dlsym(library, "clone"));
    va_list rest;
    va_start(rest, argument);
    void* const parentId = va_arg(rest, void*);
    void* const threadStorage = va_arg(rest, void*);
    void* const childId = va_arg(rest, void*);
    va_end(rest);
    return bare(function, stack, flags, argument, parentId, threadStorage, childId);
}

#else

void ondavia::testing::arrivedThroughQt() {}
void ondavia::testing::leavesThroughQt() {}

#endif
