#include "support/BenchSupport.h"

#include <QCoreApplication>
#include <QFile>

#include <algorithm>
#include <cstdio>
#include <fstream>
#include <stdexcept>

namespace ondavia::bench {
namespace {

/// Tells a child when it was started: nanoseconds of the clock that all processes share.
constexpr const char* startVariable = "ONDAVIA_BENCH_START";

/// A line of /proc/self/status in MiB.
double statusMemory(std::string_view key) {
    std::ifstream status("/proc/self/status");
    for (std::string line; std::getline(status, line);) {
        if (line.starts_with(key)) {
            return std::stod(line.substr(key.size() + 1)) / 1024;
        }
    }
    return 0;
}

void resetHighWaterMark() {
    std::ofstream("/proc/self/clear_refs") << "5";
}

} // namespace

ProviderProcess::ProviderProcess(const QStringList& options) {
    m_process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    m_process.start(QCoreApplication::applicationDirPath() + QStringLiteral("/ondavia-demo-provider"),
                    QStringList{QStringLiteral("--port"), QStringLiteral("0")} + options);
    constexpr int patience = 300'000;
    const QByteArray mark = "listening on ";
    while (m_url.isEmpty()) {
        if (!m_process.waitForReadyRead(patience)) {
            throw std::runtime_error("the demo provider did not start");
        }
        for (const QByteArray& line : m_process.readAllStandardOutput().split('\n')) {
            if (line.startsWith(mark)) {
                m_url = QString::fromUtf8(line.mid(mark.size()).trimmed());
            }
        }
    }
}

ProviderProcess::~ProviderProcess() {
    m_process.terminate();
    m_process.waitForFinished();
}

StallMeter::StallMeter() {
    m_timer.setTimerType(Qt::PreciseTimer);
    QObject::connect(&m_timer, &QTimer::timeout, &m_timer, [this] {
        m_longest = std::max(m_longest, static_cast<std::int64_t>(m_sinceTick.nsecsElapsed()));
        m_sinceTick.restart();
    });
    m_sinceTick.start();
    m_timer.start(1);
}

double residentMemory() {
    return statusMemory("VmRSS:");
}

Measurement measure(const std::function<void()>& work) {
    const double before = residentMemory();
    resetHighWaterMark();
    const StallMeter stall;
    QElapsedTimer clock;
    clock.start();
    work();
    return {static_cast<double>(clock.nsecsElapsed()) / 1e9, statusMemory("VmHWM:") - before,
            stall.longestMilliseconds()};
}

std::vector<double> runChildForFigures(const QStringList& arguments) {
    QProcess child;
    child.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(
        QString::fromLatin1(startVariable),
        QString::number(std::chrono::steady_clock::now().time_since_epoch() / std::chrono::nanoseconds(1)));
    child.setProcessEnvironment(environment);
    child.start(QCoreApplication::applicationFilePath(), arguments);
    constexpr int patience = 600'000;
    child.waitForFinished(patience);
    const QList<QByteArray> figures = child.readAllStandardOutput().simplified().split(' ');
    if (child.exitCode() != 0 || figures.size() != 3) {
        throw std::runtime_error("a side of the comparison failed");
    }
    return {figures[0].toDouble(), figures[1].toDouble(), figures[2].toDouble()};
}

Measurement runChild(const QStringList& arguments) {
    const auto figures = runChildForFigures(arguments);
    return {figures[0], figures[1], figures[2]};
}

void printForParent(const Measurement& measurement) {
    std::printf("%.6f %.3f %.3f\n", measurement.seconds, measurement.memory, measurement.stall);
}

std::chrono::steady_clock::time_point startOfChild() {
    bool isNumber = false;
    const qlonglong nanoseconds = qEnvironmentVariable(startVariable).toLongLong(&isNumber);
    if (!isNumber) {
        throw std::runtime_error("nobody told when this process was started");
    }
    return std::chrono::steady_clock::time_point(std::chrono::nanoseconds(nanoseconds));
}

Comparison compare(int rounds, const QStringList& ours, const QStringList& bare) {
    const auto better = [](const Measurement& left, const Measurement& right) {
        return Measurement{std::min(left.seconds, right.seconds), std::max(left.memory, right.memory),
                           std::max(left.stall, right.stall)};
    };
    Comparison result{runChild(ours), runChild(bare)};
    for (int round = 1; round < rounds; ++round) {
        result.ours = better(result.ours, runChild(ours));
        result.bare = better(result.bare, runChild(bare));
    }
    return result;
}

void Comparison::print(const std::string& what) const {
    std::printf("%s\n", what.c_str());
    std::printf("  ours  %7.3f s   +%6.1f MiB   longest main-thread stall %5.1f ms\n", ours.seconds,
                ours.memory, ours.stall);
    std::printf("  bare  %7.3f s   +%6.1f MiB\n", bare.seconds, bare.memory);
    std::printf("  ratio %7.2f\n", ours.seconds / bare.seconds);
}

} // namespace ondavia::bench
