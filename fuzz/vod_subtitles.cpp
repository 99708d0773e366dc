#include "FuzzSupport.h"

#include "base/Text.h"
#include "protocol/wire/SubtitleListings.h"

using namespace ondavia;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    fuzzing::prepareOnce();
    const auto listings = readSubtitleListings(fuzzing::textOf(data, size));
    if (!listings) {
        return 0;
    }
    for (const SubtitleListing& listing : listings->lists) {
        fuzzing::require(listing.elementCount > 0, "an empty list is none");
        fuzzing::require(listing.files.size() <= listing.elementCount, "an element names one file at most");
        for (const std::string& file : listing.files) {
            fuzzing::require(!file.empty() && isValidUtf8(file), "a file is a text");
        }
    }
    fuzzing::require(!listings->infoSubtitlesType || listings->infoKeys,
                     "what stands in info has a key there");
    return 0;
}
