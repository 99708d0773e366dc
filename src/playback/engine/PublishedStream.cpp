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

/// By number, not by pointer: an instance of mpv's may come for a stream that is gone.
struct Published final {
    std::mutex mutex;
    std::map<std::uint64_t, std::weak_ptr<ByteSource>> sources;
    std::uint64_t lastNumber = 0;
};

/// Never destroyed: mpv's threads may outlive the end of `main`.
Published& published() {
    static auto* const all = new Published;
    return *all;
}

std::shared_ptr<ByteSource> find(std::string_view address) {
    const auto number = parseDecimalInteger(address.substr(prefix.size())).value_or(0);
    Published& all = published();
    const std::lock_guard lock(all.mutex);
    const auto entry = all.sources.find(static_cast<std::uint64_t>(number));
    return entry == all.sources.end() ? nullptr : entry->second.lock();
}

/// mpv's hold on a source, from opening to closing.
using Cookie = std::shared_ptr<ByteSource>;

ByteSource& sourceOf(void* cookie) {
    return **static_cast<Cookie*>(cookie);
}

void fillIn(mpv_stream_cb_info& info) {
    info.read_fn = [](void* cookie, char* to, std::uint64_t size) {
        return sourceOf(cookie).read(to, static_cast<std::size_t>(size));
    };
    if (sourceOf(info.cookie).isSeekable()) {
        info.seek_fn = [](void* cookie, std::int64_t offset) {
            return sourceOf(cookie).seek(offset) ? offset : static_cast<std::int64_t>(MPV_ERROR_GENERIC);
        };
    }
    info.size_fn = [](void* cookie) {
        return sourceOf(cookie).size().value_or(static_cast<std::int64_t>(MPV_ERROR_UNSUPPORTED));
    };
    info.close_fn = [](void* cookie) {
        sourceOf(cookie).cancel();
        delete static_cast<Cookie*>(cookie);
    };
    info.cancel_fn = [](void* cookie) { sourceOf(cookie).cancel(); };
}

// An exception must not cross libmpv.
int open(void* /*userData*/, char* address, mpv_stream_cb_info* info) noexcept {
    auto found = find(address);
    if (found == nullptr || !found->open()) {
        return MPV_ERROR_LOADING_FAILED;
    }
    info->cookie = new Cookie(std::move(found));
    fillIn(*info);
    return 0;
}

} // namespace

void PublishedSource::registerWith(mpv_handle* handle) {
    const int status = mpv_stream_cb_add_ro(handle, scheme, nullptr, open);
    if (status < 0) {
        AppLogger::player.error("mpv takes no streams: %{public}s", {mpv_error_string(status)});
    }
}

PublishedSource::PublishedSource(std::shared_ptr<ByteSource> source)
    : m_source(std::move(source)) {
    Published& all = published();
    const std::lock_guard lock(all.mutex);
    m_number = ++all.lastNumber;
    all.sources.emplace(m_number, m_source);
}

PublishedSource::~PublishedSource() {
    Published& all = published();
    {
        const std::lock_guard lock(all.mutex);
        all.sources.erase(m_number);
    }
    m_source->cancel();
}

std::string PublishedSource::address() const {
    return std::string(prefix) + std::to_string(m_number);
}

} // namespace ondavia::engine
