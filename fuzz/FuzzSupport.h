#pragma once

#include "base/AppLogger.h"
#include "base/FatalFault.h"
#include "protocol/wire/Decoding.h"

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <optional>
#include <string_view>
#include <variant>

namespace ondavia::fuzzing {

/// Ends the process with the input at hand when `condition` doesn't hold.
inline void require(bool condition, const char* what) {
    if (!condition) {
        std::fprintf(stderr, "violated: %s\n", what);
        std::abort();
    }
}

/// A fatal fault is a documented outcome here, and no crash.
struct FatalFaultRaised final {};

inline void prepareOnce() {
    static const bool prepared = [] {
        setFatalFaultHandler([](std::string_view) { throw FatalFaultRaised(); });
        AppLogger::setSink([](const LogRecord&) {});
        return true;
    }();
    (void)prepared;
}

inline std::string_view textOf(const std::uint8_t* data, std::size_t size) {
    return {reinterpret_cast<const char*>(data), size};
}

/// What decoding comes to: a reply, or one of the two documented refusals.
enum class Refusal { Decoding, FatalFault };
template<class Reply> using Outcome = std::variant<Reply, Refusal>;

template<class Decode> auto outcomeOf(Decode decode) -> Outcome<decltype(decode())> {
    try {
        return decode();
    } catch (const DecodingError&) {
        return Refusal::Decoding;
    } catch (const FatalFaultRaised&) {
        return Refusal::FatalFault;
    }
}

/// The reply, where `json` is one.
template<class Reply> std::optional<Reply> decoded(std::string_view json) {
    auto outcome = outcomeOf([json] { return decodeReply<Reply>(json, "fuzz"); });
    auto* reply = std::get_if<Reply>(&outcome);
    return reply == nullptr ? std::nullopt : std::optional<Reply>(std::move(*reply));
}

/// Whatever decodes is the same after encoding and decoding again.
template<class Reply> void checkReply(const std::uint8_t* data, std::size_t size) {
    prepareOnce();
    if (const auto reply = decoded<Reply>(textOf(data, size))) {
        const auto again = decoded<Reply>(encodeReply(*reply));
        require(again.has_value(), "an encoded reply decodes");
        require(*again == *reply, "a reply survives encoding and decoding");
    }
}

} // namespace ondavia::fuzzing
