#include "library/SearchIndex.h"

#include "SyncFixture.h"

#include <gmock/gmock.h>
#include <unicode/locid.h>
#include <unicode/unistr.h>

#include <random>

namespace ondavia::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class SearchIndexTest : public SyncFixture {
protected:
    void add(std::int64_t num, const std::string& type, const std::string& name, const std::string& group,
             const std::optional<std::string>& seriesName = {}) {
        Channel channel;
        channel.id = "main_" + std::to_string(num);
        channel.num = num;
        channel.type = type;
        channel.name = name;
        channel.groupTitle = group;
        channel.seriesName = seriesName;
        store->mainContext().insert(channel);
    }
    [[nodiscard]] SearchIndex index() {
        store->mainContext().save();
        return SearchIndex::read(store->mainContext());
    }
    [[nodiscard]] std::vector<std::int64_t> numbers(const SearchIndex& index, std::string_view text,
                                                    const std::optional<std::string>& type = {}) {
        std::vector<std::int64_t> found;
        for (const std::size_t place : index.find(text, type)) {
            found.push_back(store->mainContext().fetchByKey<Channel>(index.key(place))->num);
        }
        return found;
    }
};

TEST_F(SearchIndexTest, FindsByNameGroupAndSeriesInTheOrderOfTheNumbers) {
    add(3, "movie", "O Farol", "Drama");
    add(1, "live", "Farol TV", "Notícias");
    add(4, "series", "Ep. 1", "Drama", "Os Faroleiros");
    add(2, "movie", "Outro", "Do Farol");
    const SearchIndex all = index();
    EXPECT_THAT(numbers(all, "FAROL"), ElementsAre(1, 2, 3, 4));
    EXPECT_THAT(numbers(all, "farol", "movie"), ElementsAre(2, 3));
    EXPECT_THAT(numbers(all, "farol", "radio"), IsEmpty());
    EXPECT_THAT(numbers(all, "drama"), ElementsAre(3, 4));
    EXPECT_THAT(numbers(all, "leiros"), ElementsAre(4));
    const auto places = all.find("outro");
    ASSERT_EQ(places.size(), 1U);
    EXPECT_EQ(all.type(places[0]), "movie");
    EXPECT_EQ(all.groupTitle(places[0]), "Do Farol");
}

TEST_F(SearchIndexTest, FoldsTheCaseAndNothingElse) {
    add(1, "movie", "AÇÃO", "x");
    add(2, "movie", "ΟΔΟΣ ΟΝΕΙΡΩΝ", "x");
    add(3, "movie", "İstanbul", "x");
    const SearchIndex all = index();
    EXPECT_THAT(numbers(all, "ação"), ElementsAre(1));
    EXPECT_THAT(numbers(all, "acao"), IsEmpty()) << "an accent is a letter of its own";
    EXPECT_THAT(numbers(all, "οδοσ"), ElementsAre(2));
    EXPECT_THAT(numbers(all, "ΟΔΟΣ"), ElementsAre(2)) << "the end of a word is none of a search's";
    EXPECT_THAT(numbers(all, "İS"), ElementsAre(3));
    EXPECT_THAT(numbers(all, " ονειρων"), ElementsAre(2)) << "blanks count";
}

TEST_F(SearchIndexTest, NothingIsFoundAcrossTwoItems) {
    add(1, "movie", "Mar", "x");
    add(2, "movie", "Alto", "x");
    const SearchIndex all = index();
    EXPECT_THAT(numbers(all, "marA"), IsEmpty());
    EXPECT_THAT(numbers(all, "ar"), ElementsAre(1));
    EXPECT_THAT(numbers(SearchIndex(), "ar"), IsEmpty());
}

/// The same, plainly, by another library's tables: each character in lower case by itself.
std::string plainFold(const std::string& text) {
    const icu::UnicodeString whole = icu::UnicodeString::fromUTF8(text);
    icu::UnicodeString folded;
    for (std::int32_t at = 0; at < whole.length(); at = whole.moveIndex32(at, 1)) {
        folded.append(icu::UnicodeString(whole.char32At(at)).toLower(icu::Locale::getRoot()));
    }
    std::string utf8;
    folded.toUTF8String(utf8);
    return utf8;
}

/// Texts of a few letters of many scripts, so that parts of them occur again and again.
class Words final {
public:
    std::string word(int longest) {
        std::string text;
        const int length = number(1, longest);
        const auto& letters =
            m_letters.at(static_cast<std::size_t>(number(0, static_cast<int>(m_letters.size()) - 1)));
        for (int letter = 0; letter < length; ++letter) {
            text += letters.at(static_cast<std::size_t>(number(0, static_cast<int>(letters.size()) - 1)));
        }
        return text;
    }
    int number(int from, int to) { return std::uniform_int_distribution(from, to)(m_random); }

private:
    std::mt19937 m_random{20261122};
    std::vector<std::vector<std::string>> m_letters{
        {"a", "A", "b", "B", "ç", "Ç", "é", "É", " "},
        {"α", "Α", "σ", "ς", "Σ", "ά", "Ά", " "},
        {"д", "Д", "ё", "Ё", "ж", "Ж"},
        {"ا", "ب", "ة", "ي", "\xd9\x8e"},
        {"i", "I", "ı", "İ", "ş", "Ş"},
        {"映", "画", "館", "の", "Ａ", "ａ"},
        {"e\xcc\x81", "e", "\xcc\x81", "ß", "ẞ", "ǅ", "\xf0\x9f\x8e\xac"}};
};

TEST_F(SearchIndexTest, FindsWhatAPlainScanFindsInAnyScript) {
    Words words;
    struct Row final {
        std::string type, name, group;
        std::optional<std::string> series;
    };
    std::vector<Row> rows;
    for (std::int64_t num = 0; num < 600; ++num) {
        const char* type = std::array{"live", "movie", "series"}.at(static_cast<std::size_t>(num % 3));
        rows.push_back({type, words.word(12) + words.word(6), words.word(4),
                        words.number(0, 2) == 0 ? std::optional(words.word(8)) : std::nullopt});
        const Row& row = rows.back();
        add(num, row.type, row.name, row.group, row.series);
    }
    const SearchIndex all = index();
    std::size_t found = 0;
    for (int round = 0; round < 500; ++round) {
        const std::string text = words.word(4);
        const std::string part = plainFold(text);
        const auto type = round % 4 == 0 ? std::optional<std::string>("movie") : std::nullopt;
        std::vector<std::int64_t> expected;
        for (std::size_t num = 0; num < rows.size(); ++num) {
            const Row& row = rows[num];
            const auto has = [&part](const std::string& field) {
                return plainFold(field).find(part) != std::string::npos;
            };
            if ((!type || row.type == *type) &&
                (has(row.name) || has(row.group) || (row.series && has(*row.series)))) {
                expected.push_back(static_cast<std::int64_t>(num));
            }
        }
        ASSERT_EQ(numbers(all, text, type), expected) << text;
        found += expected.size();
    }
    EXPECT_GT(found, 500U) << "there was something to find";
}

} // namespace
} // namespace ondavia::testing
