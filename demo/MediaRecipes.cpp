#include "demo/MediaRecipes.h"

#include "demo/CatalogueData.h"

#include <array>
#include <cstdio>
#include <filesystem>
#include <string_view>

namespace ondavia::demo {
namespace {

/// 240 frames and 450 blocks of sound: both end at the same instant, so that the loop has no seam.
constexpr const char* loopSeconds = "9.6";
/// The encoder adds one in front, and the last one would overlap the next round.
constexpr const char* loopSoundBlocks = "450";

std::string hueColour(std::size_t step, double value) {
    const std::size_t sector = step % 6;
    const auto full = static_cast<int>(255 * value);
    const auto half = static_cast<int>(110 * value);
    const std::array<std::array<int, 3>, 6> table{{{full, half, 20},
                                                   {20, full, half},
                                                   {half, 20, full},
                                                   {full, 20, half},
                                                   {half, full, 20},
                                                   {20, half, full}}};
    std::array<char, 16> text{};
    std::snprintf(text.data(), text.size(), "0x%02x%02x%02x", table[sector][0], table[sector][1],
                  table[sector][2]);
    return text.data();
}

/// A gradient that moves, made small and blown up: soft, and cheap to make.
std::string background(std::size_t number, const std::string& seconds) {
    return "gradients=s=160x90:r=25:n=3:speed=0.0" + std::to_string(2 + number % 5) +
           ":seed=" + std::to_string(number + 1) + ":c0=" + hueColour(number, 0.25) +
           ":c1=" + hueColour(number + 1 + number / 6, 0.8) + ":c2=" + hueColour(number + 3, 0.45) +
           ":d=" + seconds;
}

std::string_view fontOption() {
    constexpr std::string_view option = "fontfile=/usr/share/fonts/opentype/inter/InterDisplay-Bold.otf";
    static const bool isInstalled = std::filesystem::exists(option.substr(option.find('=') + 1));
    return isInstalled ? option : "font=Sans";
}

std::string label(const std::string& option, int size, const std::string& place) {
    std::string filter = "drawtext=";
    filter += fontOption();
    filter += ":" + option + ":fontsize=" + std::to_string(size);
    return filter + ":fontcolor=white:shadowcolor=black@0.5:shadowx=2:shadowy=2:" + place;
}

/// Label, running clock and a bar that crosses the picture.
std::string overlay(const std::string& labelFile, const std::string& badge, int badgeSize = 110) {
    return "scale=640:360:flags=bilinear,format=yuv420p," + label("textfile=" + labelFile, 40, "x=36:y=270") +
           "," + label("text=" + badge, badgeSize, "x=36:y=30") + "," +
           label("text='%{pts\\:hms}'", 26, "x=w-tw-36:y=36") +
           ",drawbox=x='mod(t*64\\,640)':y=346:w=64:h=6:color=white:t=fill";
}

std::string tone(int frequency, const std::string& seconds) {
    return "sine=f=" + std::to_string(frequency) + ":beep_factor=4:r=48000:d=" + seconds;
}

Arguments encoding(const std::string& quality) {
    return {"-c:v", "libx264", "-preset",     "ultrafast", "-threads",      "1", "-g",   "25",
            "-bf",  "0",       "-keyint_min", "25",        "-sc_threshold", "0", "-crf", quality,
            "-c:a", "aac",     "-b:a",        "64k",       "-ac",           "2"};
}

Arguments joined(Arguments first, const Arguments& second) {
    first.insert(first.end(), second.begin(), second.end());
    return first;
}

} // namespace

std::string loopLabel(std::size_t number) {
    return std::string(channelRows()[number % channelRows().size()].name.substr(0, 27));
}

Arguments loopRecipe(std::size_t number, const std::string& labelFile) {
    const std::string video = overlay(labelFile, std::to_string(number + 1));
    const int frequency = 180 + static_cast<int>(number) * 13;
    return joined({"-f", "lavfi", "-i", background(number, loopSeconds), "-f", "lavfi", "-i",
                   tone(frequency, loopSeconds), "-filter_complex",
                   "[0:v]" + video + "[v];[1:a]volume=0.35[a]", "-map", "[v]", "-map", "[a]"},
                  joined(encoding("27"), {"-frames:a", loopSoundBlocks, "-f", "mpegts"}));
}

Arguments filmRecipe(std::size_t number, int seconds, const std::string& labelFile,
                     const std::string& subtitleFile) {
    const std::string length = std::to_string(seconds);
    const std::string badge(1, static_cast<char>('A' + number));
    const int frequency = 165 + static_cast<int>(number) * 30;
    const Arguments inputs{"-f",
                           "lavfi",
                           "-i",
                           background(number + 20, length),
                           "-f",
                           "lavfi",
                           "-i",
                           tone(frequency, length),
                           "-f",
                           "lavfi",
                           "-i",
                           tone(frequency * 2, length),
                           "-i",
                           subtitleFile,
                           "-filter_complex",
                           "[0:v]" + overlay(labelFile, badge) +
                               "[v];[1:a]volume=0.35[p];[2:a]volume=0.35[e]"};
    const Arguments streams{"-map",
                            "[v]",
                            "-map",
                            "[p]",
                            "-map",
                            "[e]",
                            "-map",
                            "3:s",
                            "-c:s",
                            "mov_text",
                            "-metadata:s:a:0",
                            "language=por",
                            "-metadata:s:a:0",
                            "title=Português",
                            "-metadata:s:a:1",
                            "language=eng",
                            "-metadata:s:a:1",
                            "title=English",
                            "-metadata:s:s:0",
                            "language=por",
                            "-disposition:s:0",
                            "0",
                            "-movflags",
                            "+faststart",
                            "-f",
                            "mp4"};
    return joined(joined(inputs, encoding("29")), streams);
}

Arguments repackRecipe(const std::string& filmFile, const std::string& subtitleFile) {
    return {"-i",
            filmFile,
            "-i",
            subtitleFile,
            "-map",
            "0:v",
            "-map",
            "0:a",
            "-map",
            "1:s",
            "-c",
            "copy",
            "-c:s",
            "subrip",
            "-metadata:s:a:0",
            "title=Português",
            "-metadata:s:a:1",
            "title=English",
            "-metadata:s:s:0",
            "language=por",
            "-disposition:s:0",
            "0",
            "-f",
            "matroska"};
}

Arguments episodeRecipe(int number, const std::string& labelFile) {
    constexpr int largeBadge = 220;
    const auto step = static_cast<std::size_t>(number);
    return joined(
        {"-f", "lavfi", "-i", background(33 + step, "60"), "-f", "lavfi", "-i", tone(196 + 20 * number, "60"),
         "-filter_complex",
         "[0:v]" + overlay(labelFile, std::to_string(number), largeBadge) + "[v];[1:a]volume=0.35[a]", "-map",
         "[v]", "-map", "[a]"},
        joined(encoding("29"), {"-metadata:s:a:0", "language=por", "-movflags", "+faststart", "-f", "mp4"}));
}

Arguments longSoundRecipe() {
    return {"-f",   "lavfi", "-i",   "sine=f=180:beep_factor=4:r=24000:d=30,volume=0.35",
            "-c:a", "aac",   "-b:a", "24k",
            "-ac",  "1",     "-f",   "mp4"};
}

Arguments longFilmRecipe(int seconds, const std::string& labelFile, const std::string& soundFile) {
    const std::string length = std::to_string(seconds);
    const std::string picture = "color=c=0x2f6f9f:s=640x360:r=2:d=" + length;
    const std::string drawing = "hue=H=floor(t/60)*0.9,format=yuv420p," +
                                label("textfile=" + labelFile, 40, "x=36:y=270") + "," +
                                label("text='%{pts\\:hms}'", 70, "x=36:y=110") + ",drawbox=x='640*t/" +
                                length + "':y=346:w=12:h=6:color=white:t=fill";
    return {"-stream_loop",
            "-1",
            "-i",
            soundFile,
            "-f",
            "lavfi",
            "-i",
            picture,
            "-filter_complex",
            "[1:v]" + drawing + "[v]",
            "-map",
            "[v]",
            "-map",
            "0:a",
            "-t",
            length,
            "-c:v",
            "libx264",
            "-preset",
            "ultrafast",
            "-threads",
            "1",
            "-g",
            "10",
            "-bf",
            "0",
            "-crf",
            "34",
            "-c:a",
            "copy",
            "-metadata:s:a:0",
            "language=por",
            "-movflags",
            "+faststart",
            "-f",
            "mp4"};
}

} // namespace ondavia::demo
