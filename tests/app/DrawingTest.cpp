#include "support/TestSupport.h"

#include <QProcess>

#include <gtest/gtest.h>

namespace ondavia::testing {
namespace {

/// What the application's window is drawn with, where the processor draws OpenGL.
std::string drawnWith(const std::vector<std::pair<QString, QString>>& wishes) {
    const TemporaryFolder folder;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    for (const char* variable : {"QT_QUICK_BACKEND", "QSG_RHI_BACKEND"}) {
        environment.remove(QString::fromLatin1(variable));
    }
    environment.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("xcb"));
    environment.insert(QStringLiteral("LIBGL_ALWAYS_SOFTWARE"), QStringLiteral("1"));
    environment.insert(QStringLiteral("ONDAVIA_DATA_DIR"), QString::fromStdString(folder.path().string()));
    environment.insert(QStringLiteral("ONDAVIA_VAULT"), QStringLiteral("file"));
    for (const auto& [variable, value] : wishes) {
        environment.insert(variable, value);
    }
    QProcess probe;
    probe.setProcessEnvironment(environment);
    probe.start(QStringLiteral(DRAWING_PROBE), {});
    constexpr int patience = 120'000;
    EXPECT_TRUE(probe.waitForFinished(patience));
    EXPECT_EQ(probe.exitCode(), 0) << probe.readAllStandardError().toStdString();
    return probe.readAllStandardOutput().trimmed().toStdString();
}

TEST(Drawing, IsTheProcessorsWhereOpenGlIs) {
    EXPECT_EQ(drawnWith({}), "processor");
}

TEST(Drawing, FollowsWhoSaysOtherwise) {
    EXPECT_EQ(drawnWith({{QStringLiteral("QSG_RHI_BACKEND"), QStringLiteral("opengl")}}),
              "graphics card's interface");
    EXPECT_EQ(drawnWith({{QStringLiteral("QT_QUICK_BACKEND"), QStringLiteral("rhi")}}),
              "graphics card's interface");
}

} // namespace
} // namespace ondavia::testing
