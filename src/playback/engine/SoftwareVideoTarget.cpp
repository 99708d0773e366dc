#include "base/AppLogger.h"
#include "playback/engine/VideoTarget.h"

#include <algorithm>
#include <atomic>
#include <cstdlib>
#include <vector>

namespace ondavia::engine {
namespace {

/// mpv draws fast into lines that start and end at multiples of this many bytes.
constexpr std::size_t alignment = 64;

QImage alignedImage(QSize size) {
    const auto lineBytes = static_cast<std::size_t>(size.width()) * 4;
    const std::size_t stride = (lineBytes + alignment - 1) / alignment * alignment;
    void* bytes = std::aligned_alloc(alignment, stride * static_cast<std::size_t>(size.height()));
    return {static_cast<uchar*>(bytes), size.width(), size.height(), static_cast<qsizetype>(stride),
            QImage::Format_RGB32,       std::free,    bytes};
}

/// mpv leaves the fourth byte of each pixel at 0, which a window with an alpha channel takes for glass.
void makeOpaque(QImage& image) {
    constexpr std::uint32_t opaque = 0xff000000;
    for (int line = 0; line < image.height(); ++line) {
        auto* pixels = reinterpret_cast<std::uint32_t*>(image.scanLine(line));
        std::for_each_n(pixels, image.width(), [](std::uint32_t& pixel) { pixel |= opaque; });
    }
}

/// Pictures of one size that are drawn into again once nobody shows them: a new one for each frame would have
/// the system clear 4 MB of memory 25 times a second. Video thread.
class PicturePool final {
public:
    /// One that nobody else has, until the next call; null where there is no memory for it.
    QImage& picture(QSize size) {
        std::erase_if(m_pictures, [size](const QImage& picture) { return picture.size() != size; });
        const auto free = std::ranges::find_if(m_pictures, &QImage::isDetached);
        if (free == m_pictures.end()) {
            return m_pictures.emplace_back(alignedImage(size));
        }
        // Whoever let go of it on another thread has read it to the end.
        std::atomic_thread_fence(std::memory_order_acquire);
        return *free;
    }

private:
    std::vector<QImage> m_pictures;
};

class SoftwareVideoTarget final : public VideoTarget {
public:
    bool open(mpv_handle* handle) override {
        char api[] = MPV_RENDER_API_TYPE_SW;
        mpv_render_param parameters[] = {{MPV_RENDER_PARAM_API_TYPE, api},
                                         {MPV_RENDER_PARAM_INVALID, nullptr}};
        return createContext(handle, parameters);
    }

    VideoFrame render(QSize size) override {
        QImage& image = m_pictures.picture(size);
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
        return {nullptr, image, 0};
    }

    void close(VideoFrame /*lastFrame*/) override { freeContext(); }

    [[nodiscard]] bool suits(QOpenGLContext* /*sceneGraphContext*/) const override { return true; }

private:
    PicturePool m_pictures;
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
