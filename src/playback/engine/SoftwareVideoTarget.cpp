#include "base/AppLogger.h"
#include "playback/engine/VideoTarget.h"

#include <algorithm>
#include <cstdlib>
#include <memory>
#include <mutex>
#include <vector>

namespace ondavia::engine {
namespace {

/// mpv draws fast into lines that start and end at multiples of this many bytes.
constexpr std::size_t alignment = 64;

/// Memory for pictures of one size, which is drawn into again once nobody shows what it held: new memory for
/// each frame would have the system clear 4 MB 25 times a second. Any thread.
class PictureMemory final {
public:
    explicit PictureMemory(std::size_t bytes)
        : m_bytes(bytes) {}
    ~PictureMemory() { std::ranges::for_each(m_unused, std::free); }
    PictureMemory(const PictureMemory&) = delete;
    PictureMemory& operator=(const PictureMemory&) = delete;

    /// Null where there is none.
    void* take() {
        const std::lock_guard lock(m_mutex);
        if (m_unused.empty()) {
            return std::aligned_alloc(alignment, m_bytes);
        }
        void* bytes = m_unused.back();
        m_unused.pop_back();
        return bytes;
    }
    void giveBack(void* bytes) {
        const std::lock_guard lock(m_mutex);
        m_unused.push_back(bytes);
    }

private:
    const std::size_t m_bytes;
    std::mutex m_mutex;
    std::vector<void*> m_unused;
};

/// What a picture holds of it.
struct Lease final {
    std::shared_ptr<PictureMemory> memory;
    void* bytes;
};

/// Pictures of the size that was wanted last. Video thread.
class Pictures final {
public:
    /// Null where there is no memory for it.
    QImage make(QSize size) {
        const auto lineBytes = static_cast<std::size_t>(size.width()) * 4;
        const std::size_t stride = (lineBytes + alignment - 1) / alignment * alignment;
        if (size != m_size) {
            m_memory = std::make_shared<PictureMemory>(stride * static_cast<std::size_t>(size.height()));
            m_size = size;
        }
        void* bytes = m_memory->take();
        if (bytes == nullptr) {
            return {};
        }
        const auto giveBack = [](void* lease) {
            const std::unique_ptr<Lease> held(static_cast<Lease*>(lease));
            held->memory->giveBack(held->bytes);
        };
        return {static_cast<uchar*>(bytes),
                size.width(),
                size.height(),
                static_cast<qsizetype>(stride),
                QImage::Format_RGB32,
                giveBack,
                std::make_unique<Lease>(Lease{m_memory, bytes}).release()};
    }

private:
    QSize m_size;
    std::shared_ptr<PictureMemory> m_memory;
};

/// mpv leaves the fourth byte of each pixel at 0, which a window with an alpha channel takes for glass.
void makeOpaque(QImage& image) {
    constexpr std::uint32_t opaque = 0xff000000;
    for (int line = 0; line < image.height(); ++line) {
        auto* pixels = reinterpret_cast<std::uint32_t*>(image.scanLine(line));
        std::for_each_n(pixels, image.width(), [](std::uint32_t& pixel) { pixel |= opaque; });
    }
}

class SoftwareVideoTarget final : public VideoTarget {
public:
    bool open(mpv_handle* handle) override {
        char api[] = MPV_RENDER_API_TYPE_SW;
        mpv_render_param parameters[] = {{MPV_RENDER_PARAM_API_TYPE, api},
                                         {MPV_RENDER_PARAM_INVALID, nullptr}};
        return createContext(handle, parameters);
    }

    VideoFrame render(QSize size) override {
        QImage image = m_pictures.make(size);
        if (image.isNull()) {
            return {};
        }
        int dimensions[] = {size.width(), size.height()};
        // The bytes of QImage::Format_RGB32 on little-endian machines, the only ones that mpv names so.
        char format[] = "bgr0";
        auto stride = static_cast<std::size_t>(image.bytesPerLine());
        mpv_render_param parameters[] = {{MPV_RENDER_PARAM_SW_SIZE, dimensions},
                                         {MPV_RENDER_PARAM_SW_FORMAT, format},
                                         {MPV_RENDER_PARAM_SW_STRIDE, &stride},
                                         {MPV_RENDER_PARAM_SW_POINTER, image.bits()},
                                         {MPV_RENDER_PARAM_INVALID, nullptr}};
        if (const int status = mpv_render_context_render(context(), parameters); status < 0) {
            AppLogger::player.error("No picture drawn: %{public}s", {mpv_error_string(status)});
            return {};
        }
        makeOpaque(image);
        return {nullptr, std::move(image), 0};
    }

    void close(VideoFrame /*lastFrame*/) override { freeContext(); }

    [[nodiscard]] bool suits(QOpenGLContext* /*sceneGraphContext*/) const override { return true; }

private:
    Pictures m_pictures;
};

} // namespace

bool VideoTarget::createContext(mpv_handle* handle, mpv_render_param* parameters) {
    const int status = mpv_render_context_create(&m_context, handle, parameters);
    if (status < 0) {
        m_context = nullptr;
        AppLogger::player.error("mpv has no renderer here: %{public}s", {mpv_error_string(status)});
    }
    return status >= 0;
}

void VideoTarget::freeContext() {
    if (m_context != nullptr) {
        mpv_render_context_free(m_context);
        m_context = nullptr;
    }
}

std::unique_ptr<VideoTarget> makeSoftwareVideoTarget() {
    return std::make_unique<SoftwareVideoTarget>();
}

} // namespace ondavia::engine
