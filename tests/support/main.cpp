#include "support/QtThreadOrder.h"

#include <QCoreApplication>
#include <QTemporaryDir>

#include <gtest/gtest.h>

/// Every test program runs in fresh folders of its own, with an event loop, and away from whatever the
/// user keeps at home.
int main(int argc, char** argv) {
    QTemporaryDir home;
    qputenv("HOME", home.path().toUtf8());
    for (const char* variable : {"XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_CACHE_HOME", "XDG_STATE_HOME"}) {
        qunsetenv(variable);
    }
    for (const char* variable : {"ONDAVIA_DATA_DIR", "ONDAVIA_VAULT", "ONDAVIA_LOG"}) {
        qunsetenv(variable);
    }
    const ondavia::testing::OrderedApplication<QCoreApplication> application(argc, argv);
    ::testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
