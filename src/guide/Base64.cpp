#include "guide/Base64.h"

#include <array>
#include <cstdint>

namespace ondavia {
namespace {

constexpr std::string_view alphabet = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
constexpr std::uint8_t foreign = 64;

constexpr std::array<std::uint8_t, 256> makeValues() {
    std::array<std::uint8_t, 256> values{};
    values.fill(foreign);
    for (std::size_t value = 0; value < alphabet.size(); ++value) {
        values.at(static_cast<unsigned char>(alphabet[value])) = static_cast<std::uint8_t>(value);
    }
    return values;
}
constexpr std::array<std::uint8_t, 256> valueOf = makeValues();

} // namespace

std::optional<std::string> decodeBase64(std::string_view text) {
    if (text.size() % 4 != 0) {
        return std::nullopt;
    }
    const std::size_t padding = text.ends_with("==") ? 2 : text.ends_with('=') ? 1 : 0;
    text.remove_suffix(padding);
    std::string bytes;
    bytes.reserve(text.size() * 3 / 4);
    std::uint32_t gathered = 0;
    int gatheredBits = 0;
    for (const char character : text) {
        const std::uint8_t value = valueOf.at(static_cast<unsigned char>(character));
        if (value == foreign) {
            return std::nullopt;
        }
        gathered = (gathered << 6 | value) & 0xFFFFU;
        gatheredBits += 6;
        if (gatheredBits >= 8) {
            gatheredBits -= 8;
            bytes += static_cast<char>(gathered >> gatheredBits & 0xFFU);
        }
    }
    return bytes;
}

} // namespace ondavia
