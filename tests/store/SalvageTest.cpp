#include "store/Salvage.h"

#include "store/MemoryImage.h"
#include "store/StoreSamples.h"

#include <gmock/gmock.h>

namespace ondavia::testing {
namespace {

namespace fs = std::filesystem;

constexpr std::size_t samplePageBytes = 4096;
constexpr int favoriteCount = 300;
constexpr int filmCount = 100;

Favorite makeFavorite(int number) {
    Favorite favorite("main", "main_" + std::to_string(number));
    favorite.addedAt = sampleDate + std::chrono::seconds(number);
    return favorite;
}

WatchHistory makeHistory(int number) {
    WatchHistory row("main", "main_series_7_ep_" + std::to_string(number), number * 1.5, 7200, "series");
    row.lastWatchedAt = sampleDate + std::chrono::seconds(number);
    row.title = "Um título com número " + std::to_string(number);
    if (number % 3 == 0) {
        row.thumbnailURL = "http://images.test/" + std::to_string(number) + ".png";
        row.seriesId = 7;
    }
    return row;
}

/// The rows of one entity by their ids.
template<class T> std::map<std::string, T> rowsOf(const UserRows& rows) {
    std::map<std::string, T> found;
    rows.forEach([&found](const auto& row) {
        if constexpr (std::is_same_v<std::remove_cvref_t<decltype(row)>, T>) {
            found.emplace(row.id, row);
        }
    });
    return found;
}

/// A file of the user's, with what is in it and on which page.
class SalvageTest : public ::testing::Test {
protected:
    SalvageTest() {
        {
            const auto store = LibraryStore::open(m_folder.path() / "sound");
            for (int number = 0; number < favoriteCount; ++number) {
                store->mainContext().insert(makeFavorite(number));
            }
            for (int number = 0; number < filmCount; ++number) {
                store->mainContext().insert(makeHistory(number));
            }
            store->mainContext().save();
        }
        m_image = readWholeFile(m_folder.path() / "sound" / "user.db");
    }

    [[nodiscard]] std::size_t pages() const { return m_image.size() / samplePageBytes; }

    /// Of the row with this id: the columns that a record begins with stand nowhere else in the file.
    template<class T> [[nodiscard]] std::size_t pageOf(const T& row) const {
        return m_image.find(row.id + row.profileId + row.channelId) / samplePageBytes;
    }

    UserRows salvage(const std::string& image) const {
        const fs::path file = m_folder.path() / "user.db";
        std::ofstream(file, std::ios::binary | std::ios::trunc) << image;
        return salvageRows(file);
    }

    /// Every row for whose page `isWhole` must have been saved as it was. Tells how many rows are not among
    /// the ones that were written.
    template<class IsWhole> std::size_t compare(const UserRows& saved, const IsWhole& isWhole) const {
        const auto savedFavorites = rowsOf<Favorite>(saved);
        const auto savedHistory = rowsOf<WatchHistory>(saved);
        std::size_t known = 0;
        const auto check = [&](const auto& row, const auto& found) {
            const auto entry = found.find(row.id);
            if (isWhole(pageOf(row))) {
                EXPECT_TRUE(entry != found.end() && entry->second == row) << row.id;
            }
            known += entry != found.end() && isCopy(entry->second, row) ? 1 : 0;
        };
        for (int number = 0; number < favoriteCount; ++number) {
            check(makeFavorite(number), savedFavorites);
        }
        for (int number = 0; number < filmCount; ++number) {
            check(makeHistory(number), savedHistory);
        }
        return static_cast<std::size_t>(saved.size()) - known;
    }

    static bool isCopy(const WatchHistory& saved, const WatchHistory& written) { return saved == written; }
    /// From the index without its date.
    static bool isCopy(const Favorite& saved, const Favorite& written) {
        return saved == written || (saved.channelId == written.channelId && saved.addedAt == Date());
    }

    TemporaryFolder m_folder;
    std::string m_image;
};

TEST_F(SalvageTest, ReadsEverythingFromASoundFile) {
    ASSERT_GT(pages(), 12U);
    const UserRows saved = salvage(m_image);
    EXPECT_EQ(saved.size(), favoriteCount + filmCount);
    EXPECT_EQ(compare(saved, [](std::size_t) { return true; }), 0U);
}

TEST_F(SalvageTest, ReadsWhatStandsBeforeACut) {
    for (std::size_t end = 0; end < m_image.size(); end += 2039) {
        SCOPED_TRACE("cut at " + std::to_string(end));
        const UserRows saved = salvage(m_image.substr(0, end));
        const auto isWhole = [end](std::size_t page) { return (page + 1) * samplePageBytes <= end; };
        EXPECT_EQ(compare(saved, isWhole), 0U);
    }
}

TEST_F(SalvageTest, OneBrokenPageCostsNoFavourite) {
    for (const char filler : {'\xAB', '\0', '\r'}) {
        for (std::size_t broken = 0; broken < pages(); ++broken) {
            SCOPED_TRACE("page " + std::to_string(broken) + " of " + std::to_string(int(filler)));
            std::string image = m_image;
            image.replace(broken * samplePageBytes, samplePageBytes, samplePageBytes, filler);
            const UserRows saved = salvage(image);
            EXPECT_EQ(compare(saved, [broken](std::size_t page) { return page != broken; }), 0U);
            EXPECT_EQ(rowsOf<Favorite>(saved).size(), std::size_t{favoriteCount});
        }
    }
}

TEST_F(SalvageTest, AFlippedBitCostsNothingBeyondItsPageAndMakesNothingUp) {
    for (std::size_t offset = 0; offset < m_image.size(); offset += 499) {
        SCOPED_TRACE("offset " + std::to_string(offset));
        std::string image = m_image;
        image[offset] = static_cast<char>(image[offset] ^ (1 << (offset % 8)));
        const UserRows saved = salvage(image);
        const std::size_t changed =
            compare(saved, [broken = offset / samplePageBytes](std::size_t page) { return page != broken; });
        // Nobody can know that a letter of a title, or a second of a date, was another one.
        EXPECT_LE(changed, 1U);
    }
}

TEST_F(SalvageTest, FindsTheRowsOfEveryPageThatIsWholeAmongRubbish) {
    std::string image = m_image;
    for (std::size_t broken = 0; broken < pages(); broken += 2) {
        image.replace(broken * samplePageBytes, samplePageBytes, samplePageBytes, '\xAB');
    }
    EXPECT_EQ(compare(salvage(image), [](std::size_t page) { return page % 2 == 1; }), 0U);
}

std::string bigEndian(std::size_t number) {
    std::string bytes;
    for (const int shift : {24, 16, 8, 0}) {
        bytes += static_cast<char>(number >> shift);
    }
    return bytes;
}

/// An interior page that leads to page `child` a hundred times: all its cells are the first one.
std::string leadingTo(std::string page, std::size_t child) {
    constexpr int cells = 100;
    const std::string first = page.substr(12, 2);
    const std::size_t cell =
        static_cast<unsigned char>(first[0]) * std::size_t{256} + static_cast<unsigned char>(first[1]);
    page.replace(3, 2, {'\0', static_cast<char>(cells)});
    for (std::size_t index = 0; index < cells; ++index) {
        page.replace(12 + 2 * index, 2, first);
    }
    page.replace(8, 4, bigEndian(child));
    page.replace(cell, 4, bigEndian(child));
    return page;
}

/// `image` with more ways through the interior pages that begin with `kind` than anybody can go: each leads
/// down a chain of others, of which the last leads to a leaf.
std::string entangle(std::string image, char kind) {
    const std::size_t pages = image.size() / samplePageBytes;
    for (std::size_t page = 1; page < pages; ++page) {
        const std::string interior = image.substr(page * samplePageBytes, samplePageBytes);
        if (interior[0] != kind) {
            continue;
        }
        const std::size_t cell = static_cast<unsigned char>(interior[12]) * std::size_t{256} +
                                 static_cast<unsigned char>(interior[13]);
        const std::string leaf = interior.substr(cell, 4);
        image.replace(page * samplePageBytes, samplePageBytes,
                      leadingTo(interior, image.size() / samplePageBytes + 1));
        for (int depth = 0; depth < 15; ++depth) {
            image += leadingTo(interior, image.size() / samplePageBytes + 2);
        }
        image += leadingTo(interior, 0);
        image.replace(image.size() - samplePageBytes + 8, 4, leaf);
        image.replace(image.size() - samplePageBytes + cell, 4, leaf);
    }
    return image.replace(28, 4, bigEndian(image.size() / samplePageBytes));
}

TEST_F(SalvageTest, ComesToAnEndWhereInteriorPagesLeadToEachOther) {
    for (const char kind : {'\x05', '\x02'}) {
        const std::string image = entangle(m_image, kind);
        ASSERT_GT(image.size(), m_image.size());
        const UserRows saved = salvage(image);
        EXPECT_EQ(compare(saved, [](std::size_t) { return true; }), 0U);
        EXPECT_EQ(saved.size(), favoriteCount + filmCount);
    }
}

TEST_F(SalvageTest, ARowLongerThanAPageIsSavedWholeOrNotAtAll) {
    const fs::path folder = m_folder.path() / "sound";
    WatchHistory longRow = makeHistory(filmCount);
    const std::string end = "o fim do título";
    longRow.title = std::string(6000, 'a') + end;
    insertAndSave(LibraryStore::open(folder)->mainContext(), std::vector{longRow});
    m_image = readWholeFile(folder / "user.db");
    const std::size_t leaf = pageOf(longRow);
    const std::size_t overflow = m_image.find(end) / samplePageBytes;
    ASSERT_NE(leaf, overflow);
    for (const char filler : {'\xAB', '\0'}) {
        for (std::size_t broken = 0; broken < pages(); ++broken) {
            std::string image = m_image;
            image.replace(broken * samplePageBytes, samplePageBytes, samplePageBytes, filler);
            const UserRows saved = salvage(image);
            const auto history = rowsOf<WatchHistory>(saved);
            const auto entry = history.find(longRow.id);
            const bool isWhole = broken != leaf && broken != overflow;
            EXPECT_EQ(entry != history.end(), isWhole) << "page " << broken;
            EXPECT_TRUE(entry == history.end() || entry->second == longRow) << "page " << broken;
            compare(saved, [broken](std::size_t page) { return page != broken; });
        }
    }
}

TEST_F(SalvageTest, FindsNothingInWhatIsNoDatabase) {
    EXPECT_EQ(salvage("").size(), 0);
    EXPECT_EQ(salvage("text").size(), 0);
    EXPECT_EQ(salvage(std::string(100'000, 'x')).size(), 0);
    EXPECT_EQ(salvageRows(m_folder.path() / "missing.db").size(), 0);
}

TEST_F(SalvageTest, ReadsTheLogToo) {
    const fs::path folder = m_folder.path() / "sound";
    const auto store = LibraryStore::open(folder);
    insertAndSave(store->mainContext(), std::vector{Favorite("main", "only_in_the_log")});
    const fs::path copy = m_folder.path() / "user.db";
    fs::copy_file(folder / "user.db", copy);
    fs::copy_file(folder / "user.db-wal", copy.string() + "-wal");
    ASSERT_EQ(readWholeFile(copy).find("only_in_the_log"), std::string::npos);
    EXPECT_TRUE(rowsOf<Favorite>(salvageRows(copy)).contains("main_only_in_the_log"));
    scribble(copy, 0, samplePageBytes);
    const auto saved = rowsOf<Favorite>(salvageRows(copy));
    EXPECT_TRUE(saved.contains("main_only_in_the_log"));
    EXPECT_EQ(saved.size(), std::size_t{favoriteCount + 1});
    EXPECT_EQ(filesWithPrefix(m_folder.path(), "user.db").size(), 2U) << "nothing else stays behind";
}

} // namespace
} // namespace ondavia::testing
