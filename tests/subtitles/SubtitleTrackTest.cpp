#include "subtitles/SubtitleTrack.h"
#include "subtitles/SubtitleText.h"

#include <gtest/gtest.h>

#include <map>

namespace ondavia::testing {
namespace {

constexpr const char* oneCue = "00:00:01,000 --> 00:00:02,000\nOlá";

SubtitleTrack track(const std::string& url) {
    return SubtitleTrack::make(url, oneCue).value();
}

std::string languageOf(const std::string& name) {
    return track("http://tv.example/s/" + name).language.value_or("none");
}

std::string nameOf(const std::string& name) {
    return track("http://tv.example/s/" + name).displayName;
}

SubtitleTrack withCues(std::vector<SubtitleCue> cues) {
    return {"srt-1", std::nullopt, "Subtitles", "http://tv.example/1.srt", std::move(cues)};
}

std::string textAt(const SubtitleTrack& track, double time) {
    const SubtitleCue* cue = track.activeCue(time);
    return cue == nullptr ? "none" : cue->text;
}

TEST(SubtitleTrack, IsMadeOfAFileWithCues) {
    const auto made = track("http://tv.example/film.por.srt");
    EXPECT_EQ(made.url, "http://tv.example/film.por.srt");
    EXPECT_EQ(made.language, "por");
    EXPECT_EQ(made.displayName, "Português");
    ASSERT_EQ(made.cues.size(), 1U);
    EXPECT_EQ(made.cues[0], (SubtitleCue{1, 2, "Olá"}));
    EXPECT_FALSE(SubtitleTrack::make("http://tv.example/film.por.srt", "no cue at all"));
    EXPECT_FALSE(SubtitleTrack::make("http://tv.example/film.por.srt", ""));
}

TEST(SubtitleTrack, HasAnIdOfItsUrl) {
    const auto one = track("http://tv.example/1.srt");
    EXPECT_TRUE(one.id.starts_with("srt-"));
    EXPECT_EQ(one.id.find_first_not_of("0123456789", 4), std::string::npos) << one.id;
    EXPECT_GT(one.id.size(), 4U);
    EXPECT_EQ(track("http://tv.example/1.srt").id, one.id);
    EXPECT_NE(track("http://tv.example/2.srt").id, one.id);
}

TEST(SubtitleTrack, KnowsTheLanguagesOfItsTable) {
    const std::map<std::string, std::string> names{
        {"pt", "Português"}, {"por", "Português"}, {"ptbr", "Português (Brasil)"},
        {"en", "English"},   {"eng", "English"},   {"es", "Español"},
        {"spa", "Español"},  {"fr", "Français"},   {"fre", "Français"},
        {"fra", "Français"}, {"de", "Deutsch"},    {"ger", "Deutsch"},
        {"it", "Italiano"},  {"ita", "Italiano"},  {"ru", "Русский"},
        {"rus", "Русский"},  {"zh", "中文"},       {"chi", "中文"},
        {"ja", "日本語"},    {"jpn", "日本語"}};
    EXPECT_EQ(names.size(), 20U);
    for (const auto& [token, name] : names) {
        EXPECT_EQ(languageOf("film." + token + ".srt"), token);
        EXPECT_EQ(nameOf("film." + token + ".srt"), name);
    }
    EXPECT_EQ(languageOf("film.deu.srt"), "none");
}

TEST(SubtitleTrack, LooksBehindTheLastPointThenLineThenDash) {
    EXPECT_EQ(languageOf("film.por.srt"), "por");
    EXPECT_EQ(languageOf("film_por.srt"), "por");
    EXPECT_EQ(languageOf("film-por.srt"), "por");
    EXPECT_EQ(languageOf("por.srt"), "none") << "no separator";
    EXPECT_EQ(languageOf("por.film.srt"), "none") << "only the last token";
    EXPECT_EQ(languageOf("a-eng_fra.por.srt"), "por");
    EXPECT_EQ(languageOf("a-eng_fra.2019.srt"), "none") << "fra.2019 is no token";
    EXPECT_EQ(languageOf("a.b_fra-eng.srt"), "eng") << "b_fra-eng and fra-eng are none";
    EXPECT_EQ(languageOf("2019.film_fra.srt"), "fra");
    EXPECT_EQ(languageOf("FILM.POR.SRT"), "por");
    EXPECT_EQ(languageOf("film.por"), "none") << "that is the extension";
}

TEST(SubtitleTrack, ReadsNoRegions) {
    EXPECT_EQ(languageOf("filme.pt-br.srt"), "none");
    EXPECT_EQ(nameOf("filme.pt-br.srt"), "filme.pt-br");
    EXPECT_EQ(languageOf("subs.ptbr.vtt"), "ptbr");
    EXPECT_EQ(nameOf("subs.ptbr.vtt"), "Português (Brasil)");
}

TEST(SubtitleTrack, IsCalledAfterItsFileOtherwise) {
    EXPECT_EQ(nameOf("Legendas Finais.srt"), "Legendas Finais");
    EXPECT_EQ(nameOf("Legendas%20Finais.srt"), "Legendas Finais");
    EXPECT_EQ(nameOf("Acentua%C3%A7%C3%A3o.srt"), "Acentuação");
    EXPECT_EQ(nameOf("Acentua%E7%E3o.srt"), "Acentua%E7%E3o") << "no text";
    EXPECT_EQ(nameOf("100%.srt"), "100%");
    EXPECT_EQ(nameOf("50%zz.srt"), "50%zz");
    EXPECT_EQ(nameOf("filme"), "filme");
    EXPECT_EQ(nameOf("Filme.srt?token=a.por.srt#x"), "Filme");
    EXPECT_EQ(nameOf("folder.por/"), "folder");
    EXPECT_EQ(track("http://tv.example").displayName, "Subtitles");
    EXPECT_EQ(track("http://tv.example/").displayName, "Subtitles");
    EXPECT_EQ(track("file:///home/ana/Filme.eng.srt").displayName, "English");
}

TEST(SubtitleTrack, ShowsACueFromItsStartToBeforeItsEnd) {
    const auto subtitles = withCues({{1, 2, "one"}, {2, 3, "two"}, {5, 6, "three"}});
    EXPECT_EQ(textAt(subtitles, 0.999), "none");
    EXPECT_EQ(textAt(subtitles, 1), "one");
    EXPECT_EQ(textAt(subtitles, 1.999), "one");
    EXPECT_EQ(textAt(subtitles, 2), "two");
    EXPECT_EQ(textAt(subtitles, 3), "none");
    EXPECT_EQ(textAt(subtitles, 4), "none");
    EXPECT_EQ(textAt(subtitles, 5.5), "three");
    EXPECT_EQ(textAt(subtitles, 6), "none");
    EXPECT_EQ(textAt(withCues({}), 1), "none");
}

TEST(SubtitleTrack, LooksInTheLowerMiddleAndMayMissACueThatAnotherOverlaps) {
    const auto subtitles = withCues({{0, 10, "long"}, {1, 2, "one"}, {3, 4, "two"}});
    EXPECT_EQ(textAt(subtitles, 0.5), "long");
    EXPECT_EQ(textAt(subtitles, 1.5), "one");
    EXPECT_EQ(textAt(subtitles, 3.5), "two") << "one of those that show, never both";
    EXPECT_EQ(textAt(subtitles, 5), "none");
    EXPECT_EQ(textAt(withCues({{0, 10, "long"}, {1, 9, "short"}}), 5), "long");
}

TEST(SubtitleTrack, FindsEveryCueOfALongFile) {
    std::vector<SubtitleCue> cues;
    for (int index = 0; index < 1001; ++index) {
        cues.push_back({index * 2.0, index * 2.0 + 1, std::to_string(index)});
    }
    const auto subtitles = withCues(std::move(cues));
    for (int index = 0; index < 1001; ++index) {
        EXPECT_EQ(textAt(subtitles, index * 2.0 + 0.5), std::to_string(index));
        EXPECT_EQ(textAt(subtitles, index * 2.0 + 1.5), "none");
    }
}

TEST(SubtitleTrack, HasCuesThatItsCopiesShare) {
    const auto subtitles = withCues({{1, 2, "one"}});
    const auto copy = subtitles;
    EXPECT_EQ(copy.activeCue(1), subtitles.activeCue(1));
    EXPECT_EQ(copy, subtitles);
    EXPECT_EQ(withCues({{1, 2, "one"}}), subtitles) << "by what they are";
    EXPECT_NE(withCues({{1, 2, "two"}}), subtitles);
}

TEST(SubtitleText, IsUtf8OrElseLatin1) {
    EXPECT_EQ(decodeSubtitleText("Olá, 日本"), "Olá, 日本");
    EXPECT_EQ(decodeSubtitleText("Ol\xE1, \xE7\xE3o \xFF\x80"), "Olá, ção ÿ\u0080");
    EXPECT_EQ(decodeSubtitleText(""), "");
}

} // namespace
} // namespace ondavia::testing
