#include "guide/RandomUUID.h"

#include <array>
#include <cstdint>
#include <random>

namespace ondavia {
namespace {

constexpr std::string_view hexDigits = "0123456789ABCDEF";
constexpr std::uint64_t versionMask = 0xFFFF'FFFF'FFFF'0FFF;
constexpr std::uint64_t version4 = 0x4000;
constexpr std::uint64_t variantMask = 0x3FFF'FFFF'FFFF'FFFF;
constexpr std::uint64_t variant = 0x8000'0000'0000'0000;

std::mt19937_64 seededBits() {
    std::random_device device;
    std::array<std::uint32_t, 8> seeds{};
    for (auto& seed : seeds) {
        seed = device();
    }
    std::seed_seq sequence(seeds.begin(), seeds.end());
    return std::mt19937_64(sequence);
}

} // namespace

std::string randomUUID() {
    thread_local std::mt19937_64 bits = seededBits();
    const std::array<std::uint64_t, 2> halves{(bits() & versionMask) | version4,
                                              (bits() & variantMask) | variant};
    std::string text = "00000000-0000-0000-0000-000000000000";
    std::size_t digit = 0;
    for (char& character : text) {
        if (character != '-') {
            const std::uint64_t half = halves.at(digit / 16);
            character = hexDigits[half >> (60 - 4 * (digit % 16)) & 0xFU];
            ++digit;
        }
    }
    return text;
}

} // namespace ondavia
