#include "playback/engine/PublishedStream.h"

#include "base/AppLogger.h"
#include "base/Text.h"

#include <mpv/stream_cb.h>

#include <map>
#include <mutex>
#include <string_view>

namespace ondavia::engine {
namespace {

constexpr const char* scheme = "ondavia";
constexpr std::string_view prefix = "ondavia://";

struct Source final {
    std::weak_ptr<CurlMediaStream> stream;
    ByteAllowance allowance;
};

/// mpv's hold on a stream, from opening to closing.
struct Cookie final {
    std::shared_ptr<CurlMediaStream> stream;
    ByteAllowance allowance;
};

/// By number, not by pointer: an instance of mpv's may come for a stream that is gone.
struct Published final {
    std::mutex mutex;
    std::map<std::uint64_t, Source> sources;
    std::uint64_t lastNumber = 0;
};

/// Never destroyed: mpv's threads may outlive the end of `main`.
Published& published() {
    static auto* const all = new Published;
    return *all;
}

Cookie find(std::string_view address) {
    const auto number = parseDecimalInteger(address.substr(prefix.size())).value_or(0);
    Published& all = published();
    const std::lock_guard lock(all.mutex);
    const auto entry = all.sources.find(static_cast<std::uint64_t>(number));
    return entry == all.sources.end() ? Cookie()
                                      : Cookie{entry->second.stream.lock(), entry->second.allowance};
}

CurlMediaStream& streamOf(void* cookie) {
    return *static_cast<Cookie*>(cookie)->stream;
}

std::int64_t read(void* cookie, char* to, std::uint64_t size) {
    const std::int64_t count = streamOf(cookie).read(to, static_cast<std::size_t>(size));
    const auto& allowance = static_cast<Cookie*>(cookie)->allowance;
    const bool isWithin = allowance == nullptr || count <= 0 || allowance->fetch_sub(count) >= count;
    constexpr std::int64_t failure = -1;
    return isWithin ? count : failure;
}

void fillIn(mpv_stream_cb_info& info) {
    info.read_fn = read;
    if (streamOf(info.cookie).isSeekable()) {
        info.seek_fn = [](void* cookie, std::int64_t offset) {
            return streamOf(cookie).seek(offset) ? offset : static_cast<std::int64_t>(MPV_ERROR_GENERIC);
        };
    }
    info.size_fn = [](void* cookie) {
        return streamOf(cookie).size().value_or(static_cast<std::int64_t>(MPV_ERROR_UNSUPPORTED));
    };
    info.close_fn = [](void* cookie) {
        streamOf(cookie).cancel();
        delete static_cast<Cookie*>(cookie);
    };
    info.cancel_fn = [](void* cookie) { streamOf(cookie).cancel(); };
}

// An exception must not cross libmpv.
int open(void* /*userData*/, char* address, mpv_stream_cb_info* info) noexcept {
    auto found = find(address);
    if (found.stream == nullptr || !found.stream->open() || found.stream->isPlaylist()) {
        return MPV_ERROR_LOADING_FAILED;
    }
    info->cookie = new Cookie(std::move(found));
    fillIn(*info);
    return 0;
}

} // namespace

void PublishedStream::registerWith(mpv_handle* handle) {
    const int status = mpv_stream_cb_add_ro(handle, scheme, nullptr, open);
    if (status < 0) {
        AppLogger::player.error("mpv takes no streams: %{public}s", {mpv_error_string(status)});
    }
}

PublishedStream::PublishedStream(std::string url, ByteAllowance allowance)
    : m_stream(std::make_shared<CurlMediaStream>(std::move(url))) {
    Published& all = published();
    const std::lock_guard lock(all.mutex);
    m_number = ++all.lastNumber;
    all.sources.emplace(m_number, Source{m_stream, std::move(allowance)});
}

PublishedStream::~PublishedStream() {
    Published& all = published();
    {
        const std::lock_guard lock(all.mutex);
        all.sources.erase(m_number);
    }
    m_stream->cancel();
}

std::string PublishedStream::address() const {
    return std::string(prefix) + std::to_string(m_number);
}

} // namespace ondavia::engine
