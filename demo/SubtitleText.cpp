#include "demo/SubtitleText.h"

#include "demo/Mix.h"

#include <array>
#include <cstdio>
#include <string_view>

namespace ondavia::demo {
namespace {

constexpr auto portugueseLines = std::to_array<std::string_view>({
    "Nunca pensei voltar a ver este farol.",
    "— Quem está aí?\n— Sou eu, o Duarte.",
    "A maré sobe às seis. Temos de sair antes.",
    "<i>O mar não devolve o que leva.</i>",
    "Já ninguém se lembra do teu nome, avó.",
    "Amanhã, à mesma hora, na estação.",
});

constexpr auto englishLines = std::to_array<std::string_view>({
    "I never thought I'd see this lighthouse again.",
    "- Who's there?\n- It's me, Duarte.",
    "The tide comes in at six. We must leave before.",
    "<i>The sea never gives back what it takes.</i>",
    "Nobody remembers your name any more, grandmother.",
    "Tomorrow, same time, at the station.",
});

std::string clock(int milliseconds, char decimal) {
    std::array<char, 48> text{};
    std::snprintf(text.data(), text.size(), "%02d:%02d:%02d%c%03d", milliseconds / 3600000,
                  milliseconds / 60000 % 60, milliseconds / 1000 % 60, decimal, milliseconds % 1000);
    return text.data();
}

} // namespace

std::string subtitleText(SubtitleFormat format, SubtitleLanguage language, int seconds) {
    const bool vtt = format == SubtitleFormat::webVtt;
    const char decimal = vtt ? '.' : ',';
    std::string text = vtt ? "WEBVTT\n\n" : "";
    for (int cue = 0; cue * 4 + 4 <= seconds; ++cue) {
        const int start = cue * 4000 + 500;
        text += std::to_string(cue + 1) + '\n';
        text += clock(start, decimal) + " --> " + clock(start + 2800, decimal) + '\n';
        text += pick(language == SubtitleLanguage::portuguese ? portugueseLines : englishLines,
                     static_cast<std::uint64_t>(cue));
        text += "\n\n";
    }
    return text;
}

} // namespace ondavia::demo
