#pragma once

#include <cstdint>
#include <memory>
#include <mutex>
#include <string>
#include <unordered_map>

namespace ondavia::demo {

struct PictureRequest final {
    enum class Shape : std::uint8_t {
        poster,   ///< 400 x 600 JPEG with its title
        backdrop, ///< 1280 x 720 JPEG, no text
        still,    ///< 480 x 270 JPEG, no text
        portrait, ///< 185 x 278 JPEG, no text
        logo      ///< 256 x 256 PNG with initials
    } shape;
    std::uint64_t key;
    std::string title;
    std::string subtitle;
};

/// Draws the catalogue's pictures when they are asked for and keeps a few hundred. May be used from any
/// thread. Text appears only where the process has a QGuiApplication: fonts belong to it.
class Pictures final {
public:
    [[nodiscard]] std::shared_ptr<const std::string> get(const PictureRequest& request);

private:
    std::mutex m_mutex;
    std::unordered_map<std::uint64_t, std::shared_ptr<const std::string>> m_drawn;
};

} // namespace ondavia::demo
