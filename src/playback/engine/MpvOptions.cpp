#include "playback/engine/MpvOptions.h"

#include "base/AppLogger.h"
#include "base/Text.h"
#include "platform/linux/PulseVolume.h"

#include <algorithm>
#include <array>
#include <functional>

namespace ondavia::engine {
namespace {

using Options = std::vector<MpvOption>;

/// What a stream's own content (an HLS playlist, say) may open in turn: HTTP and what that needs.
constexpr std::string_view nestedProtocols = "http,https,httpproxy,tls,tcp,crypto,data";

/// What a reply may be: pictures with sound, sound, subtitles, and the two kinds of list that name nothing
/// but HTTP. No session descriptions, which have FFmpeg listen, and no lists of files.
constexpr std::string_view formats =
    "mpegts,hls,dash,mov,matroska,flv,live_flv,avi,asf,mpeg,mpegvideo,m4v,h264,hevc,rm,ogg,mp3,aac,ac3,eac3,"
    "dts,loas,flac,wav,w64,aiff,caf,wv,ape,srt,webvtt,ass,microdvd,mpl2,sami,subviewer";

struct Scheme final {
    std::string_view name;
    /// What FFmpeg opens for such an address, beyond `nestedProtocols`.
    std::string_view protocols;
    /// What it reads it with, beyond `formats`.
    std::string_view formats;
};

constexpr std::array<Scheme, 9> playableSchemes = {{
    {"http", "", ""},
    {"https", "", ""},
    {"rtmp", ",rtmp,rtmps,rtmpt,ffrtmphttp", ""},
    {"rtmps", ",rtmp,rtmps,rtmpt,ffrtmphttp", ""},
    {"rtsp", ",rtp,rtcp,udp", ",rtsp"},
    {"rtsps", ",rtp,rtcp,udp", ",rtsp"},
    {"udp", ",udp", ""},
    {"rtp", ",rtp,rtcp,udp", ",rtp"},
    {"file", ",file", ""},
}};

/// Absent for what is not playable.
const Scheme* schemeOf(std::string_view address) {
    const auto mark = address.find("://");
    if (mark == std::string_view::npos) {
        return nullptr;
    }
    const std::string name = asciiLowercase(std::string(address.substr(0, mark)));
    const auto* const scheme = std::ranges::find(playableSchemes, name, &Scheme::name);
    return scheme == playableSchemes.end() ? nullptr : scheme;
}

/// A list option of mpv takes "%<length>%<text>" for a value that holds commas.
std::string quotedListValue(std::string_view key, std::string_view value) {
    return std::string(key) + "=%" + std::to_string(value.size()) + "%" + std::string(value);
}

Options hardwareDecoding(std::int64_t wanted) {
    return {{"hwdec", wanted == 0 ? "no" : "auto-copy-safe"}};
}

Options bufferSize(std::int64_t bytes) {
    return {{"demuxer-max-bytes", std::to_string(bytes)}, {"demuxer-max-back-bytes", std::to_string(bytes)}};
}

Options analysisLimit(std::int64_t microseconds) {
    return {{"demuxer-lavf-analyzeduration", std::to_string(static_cast<double>(microseconds) / 1e6)}};
}

Options frameDropping(std::int64_t wanted) {
    return {{"framedrop", wanted == 0 ? "no" : "vo"}};
}

Options nothing(std::int64_t /*value*/) {
    return {};
}

struct OptionRule final {
    FSOptions::Category category;
    std::string_view key;
    Options (*translate)(std::int64_t value);
    /// Why it becomes what it becomes.
    std::string_view reason;
};

constexpr std::array<OptionRule, 5> rules = {{
    {FSOptions::Category::Player, "videotoolbox", hardwareDecoding,
     "hardware decoding; with copying, since the picture is drawn in a context that may not share memory "
     "with the decoder"},
    {FSOptions::Category::Player, "max-buffer-size", bufferSize,
     "bytes read ahead; as many are kept behind the position, for seeking back without the network"},
    {FSOptions::Category::Format, "analyzeduration", analysisLimit,
     "an upper limit in microseconds, which mpv takes in seconds; streams that say what they are start at "
     "once"},
    {FSOptions::Category::Player, "framedrop", frameDropping,
     "late frames are dropped on output, decoded all the same, so that the picture stays clean"},
    {FSOptions::Category::Player, "overlay-format", nothing,
     "no equivalent: mpv picks the surface's pixel format itself"},
}};

Options outputOptions(MpvOutputs outputs) {
    if (outputs == MpvOutputs::Window) {
        // The sound server, or the bare device where there is none. Nothing is loaded to hand decoded
        // pictures to OpenGL inside a graphics card: hardware decoding copies them.
        // mpv waits for a sound server without an end, and a picture without sound is better than none.
        return {{"vo", "libmpv"},
                {"ao", PulseVolume::isServerSilent() ? "null" : "pulse,alsa"},
                {"gpu-hwdec-interop", "no"}};
    }
    return {{"vo", "null"}, {"ao", "null"}};
}

} // namespace

std::vector<MpvOption> baseOptions() {
    return {
        // Nothing from the user's own mpv, and no window, keyboard or terminal of mpv's.
        {"config", "no"},
        {"terminal", "no"},
        {"load-scripts", "no"},
        {"load-stats-overlay", "no"},
        {"load-osd-console", "no"},
        {"load-auto-profiles", "no"},
        {"osc", "no"},
        {"osd-level", "0"},
        {"ytdl", "no"},
        {"input-default-bindings", "no"},
        {"input-builtin-bindings", "no"},
        {"input-vo-keyboard", "no"},
        {"input-media-keys", "no"},
        {"stop-screensaver", "no"},
        {"resume-playback", "no"},
        {"save-position-on-quit", "no"},
        // The core waits for its URL, and after the end keeps the last picture up and can seek back.
        {"idle", "yes"},
        {"keep-open", "yes"},
        {"keep-open-pause", "no"},
        // No neighbouring file is looked for.
        {"autoload-files", "no"},
        // What is no UTF-8 is read as the list of subtitles reads it, not as somebody guesses.
        {"sub-codepage", "latin1"},
        // What is loaded is closed before the next file is opened. FFmpeg looks ten times a second whether it
        // shall let go of its connections; whoever takes longer than this is left behind.
        {"demuxer-termination-timeout", "1"},
        // By picture: those that say they are interlaced are deinterlaced, all others pass as they are.
        {"vf", "lavfi=[bwdif=mode=send_field:deint=interlaced]"},
        // Whoever lists the sound server's streams reads a name, not an address.
        {"audio-client-name", "Ondavia"},
        {"force-media-title", "Ondavia"},
        {"audio-fallback-to-null", "yes"},
        // The provider's bytes go to FFmpeg's demuxers alone, so that they cannot be a playlist, an edit
        // list or an archive of mpv's, and what they refer to is fetched over the network or not at all.
        {"demuxer", "lavf"},
        {"sub-demuxer", "lavf"},
        {"load-unsafe-playlists", "no"},
        {"ordered-chapters", "no"},
        {"cache-on-disk", "no"},
        {"tls-verify", "yes"},
        // Also for streams over our own connection, which mpv does not know to come from a network.
        {"cache", "yes"},
        // Used only where there is no OpenGL.
        {"sws-fast", "yes"},
        {"sws-scaler", "bilinear"},
        {"zimg-scaler", "bilinear"},
        {"zimg-dither", "no"},
    };
}

std::vector<MpvOption> trackOptions() {
    // No subtitle shows before somebody picks one.
    return {{"vid", "auto"}, {"aid", "auto"}, {"sid", "no"}};
}

std::vector<MpvOption> translated(const FSOptions& options) {
    Options result;
    for (const auto& entry : options.entries()) {
        const auto rule = std::find_if(rules.begin(), rules.end(), [&entry](const OptionRule& candidate) {
            return candidate.category == entry.category && candidate.key == entry.key;
        });
        if (rule == rules.end()) {
            AppLogger::player.error("Unknown engine option %{public}s", {entry.key});
            continue;
        }
        std::ranges::move(rule->translate(parseDecimalInteger(entry.value).value_or(0)),
                          std::back_inserter(result));
    }
    return result;
}

std::vector<MpvOption> engineOptions(MpvOutputs outputs, const FSOptions& options) {
    auto all = baseOptions();
    std::ranges::move(outputOptions(outputs), std::back_inserter(all));
    std::ranges::move(translated(options), std::back_inserter(all));
    return all;
}

std::vector<MpvOption> accessOptions(std::string_view address) {
    const Scheme* known = schemeOf(address);
    const Scheme scheme = known != nullptr ? *known : Scheme();
    const std::string own = std::string(nestedProtocols) + std::string(scheme.protocols);
    // The file itself is opened by mpv: what it names is not.
    const std::string nested = scheme.name == "file" ? std::string(nestedProtocols) : own;
    return {
        // What may be opened is said by protocol and format; a provider calls its segments what it likes.
        {"demuxer-lavf-o",
         "extension_picky=0,allowed_extensions=ALL," + quotedListValue("protocol_whitelist", nested) + "," +
             quotedListValue("format_whitelist", std::string(formats) + std::string(scheme.formats))},
        // A cut must show as one: whoever owns the engine decides about another try.
        {"stream-lavf-o", "reconnect=0," + quotedListValue("protocol_whitelist", own)},
    };
}

bool isPlayableAddress(std::string_view address) {
    return schemeOf(address) != nullptr;
}

bool isHttpAddress(std::string_view address) {
    const Scheme* scheme = schemeOf(address);
    return scheme != nullptr && (scheme->name == "http" || scheme->name == "https");
}

bool isFileAddress(std::string_view address) {
    const Scheme* scheme = schemeOf(address);
    return scheme != nullptr && scheme->name == "file";
}

} // namespace ondavia::engine
