#include "FuzzSupport.h"

#include "guide/BodyInflater.h"
#include "guide/XMLTVParser.h"

#include <random>

namespace {

using namespace ondavia;

/// The programmes of a body that arrives in the pieces that `nextSize` says, without their random ids.
template<class NextSize> std::vector<EPGProgram> programsOf(std::string_view body, NextSize&& nextSize) {
    std::vector<EPGProgram> programs;
    XMLTVParser parser([&](std::vector<EPGProgram>&& batch) {
        for (EPGProgram& program : batch) {
            program.id.clear();
            programs.push_back(std::move(program));
        }
    });
    BodyInflater inflater([&](std::string_view bytes) { parser.feed(bytes); });
    while (!body.empty()) {
        const std::string_view piece = body.substr(0, nextSize());
        inflater.feed(piece);
        body.remove_prefix(piece.size());
    }
    inflater.finish();
    parser.finish();
    return programs;
}

} // namespace

/// The first byte seeds the splits; the rest is the body, which may be gzipped.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0) {
        return 0;
    }
    const std::string_view body = fuzzing::textOf(data + 1, size - 1);
    std::minstd_rand random(data[0] + 1U);
    const std::vector<EPGProgram> whole = programsOf(body, [&] { return body.size(); });
    const std::vector<EPGProgram> split = programsOf(body, [&] { return 1 + random() % 97; });
    fuzzing::require(whole == split, "the programmes do not depend on how the body is split");
    return 0;
}
