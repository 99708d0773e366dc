#include "cli/Interruption.h"

#include <QSocketNotifier>

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <sys/signalfd.h>
#include <unistd.h>

namespace ondavia::cli {

Interruption::Interruption() {
    sigset_t endings;
    sigemptyset(&endings);
    sigaddset(&endings, SIGINT);
    sigaddset(&endings, SIGTERM);
    pthread_sigmask(SIG_BLOCK, &endings, nullptr);
    m_descriptor = signalfd(-1, &endings, SFD_CLOEXEC);
}

Interruption::~Interruption() {
    m_notifier.reset();
    close(m_descriptor);
}

int Interruption::take() const {
    signalfd_siginfo info{};
    return read(m_descriptor, &info, sizeof info) == sizeof info ? static_cast<int>(info.ssi_signo) : SIGTERM;
}

void Interruption::endProcess() {
    m_notifier = std::make_unique<QSocketNotifier>(m_descriptor, QSocketNotifier::Read);
    QObject::connect(m_notifier.get(), &QSocketNotifier::activated, m_notifier.get(), [this] {
        std::fflush(stdout);
        // Transfers and writers may be at work on other threads and cannot be called off. The library
        // survives an end at any moment; taking the objects from under those threads would not be one.
        std::_Exit(128 + take());
    });
}

} // namespace ondavia::cli
