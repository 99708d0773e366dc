#include "FuzzSupport.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    ondavia::fuzzing::checkReply<std::vector<ondavia::XtreamLiveStream>>(data, size);
    return 0;
}
