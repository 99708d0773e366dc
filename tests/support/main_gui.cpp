#include "support/QtThreadOrder.h"

#include <QGuiApplication>
#include <QTemporaryDir>

#include <gtest/gtest.h>

/// Graphics drivers stay loaded to the end: a leak of theirs can only be told from ours while their module
/// has a name.
extern "C" int dlclose(void* /*handle*/) noexcept {
    return 0;
}

/// As main.cpp, for tests that open windows.
int main(int argc, char** argv) {
    QTemporaryDir home;
    qputenv("HOME", home.path().toUtf8());
    for (const char* variable : {"XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_CACHE_HOME", "XDG_STATE_HOME",
                                 "ONDAVIA_DATA_DIR", "ONDAVIA_VAULT", "ONDAVIA_LOG"}) {
        qunsetenv(variable);
    }
    const ondavia::testing::OrderedApplication<QGuiApplication> application(argc, argv);
    ::testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
