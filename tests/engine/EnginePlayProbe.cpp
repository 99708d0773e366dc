#include "engine/EngineTestSupport.h"

#include <cstdio>

/// Plays one address, and prints what came of it: "plays", or the event that it ended with.
int main(int argc, char** argv) {
    using namespace ondavia;
    using testing::Engine;
    const QCoreApplication application(argc, argv);
    {
        Engine engine(MpvOutputs::Null, argv[argc - 1]);
        engine->prepareToPlay();
        testing::waitUntil([&] { return engine.has("state:1") || engine.has("finish:1"); },
                           std::chrono::minutes(1));
        std::printf("%s", engine.has("state:1") ? "plays" : engine.events().back().c_str());
    }
    return 0;
}
