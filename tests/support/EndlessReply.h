#pragma once

#include <httplib.h>

#include <atomic>
#include <cstdint>
#include <string>

namespace ondavia::testing {

/// A reply that goes on until nobody reads it any more, or the test is over.
class EndlessReply final {
public:
    /// About 64 KiB of `text` again and again.
    void answer(httplib::Response& reply, const std::string& text) {
        std::string block;
        while (block.size() < std::size_t{64} << 10) {
            block += text;
        }
        // Of a kind that the server does not compress, so that what it sends can be counted.
        constexpr const char* kind = "application/octet-stream";
        reply.set_chunked_content_provider(kind, [this, block](std::size_t, httplib::DataSink& sink) {
            const bool goesOn = !isOver && sink.write(block.data(), block.size());
            bytes += goesOn ? static_cast<std::int64_t>(block.size()) : 0;
            isLeft = !goesOn;
            return goesOn;
        });
    }

    std::atomic<std::int64_t> bytes = 0;
    std::atomic_bool isLeft = false;
    /// Before the server stops, which waits for its replies.
    std::atomic_bool isOver = false;
};

} // namespace ondavia::testing
