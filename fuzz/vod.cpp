#include "FuzzSupport.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    ondavia::fuzzing::checkReply<std::vector<ondavia::XtreamVodStream>>(data, size);
    return 0;
}
