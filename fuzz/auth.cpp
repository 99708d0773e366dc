#include "FuzzSupport.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    ondavia::fuzzing::checkReply<ondavia::XtreamAuthResponse>(data, size);
    return 0;
}
