#include "store/SectionedKeys.h"

#include <gmock/gmock.h>

#include <map>

namespace ondavia {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::UnorderedElementsAre;

class SectionedKeysTest : public ::testing::Test {
protected:
    std::int64_t add(int section, const std::string& id) {
        const std::int64_t key = m_keys.add(section, id);
        m_ids[key] = id;
        return key;
    }
    std::vector<std::int64_t> superseded() {
        return m_keys.supersededKeys([this](std::int64_t key) { return m_ids.at(key); });
    }

    SectionedKeys m_keys{100};
    std::map<std::int64_t, std::string> m_ids;
};

TEST_F(SectionedKeysTest, GivesAscendingKeysAfterTheFirst) {
    EXPECT_EQ(add(3, "a"), 101);
    EXPECT_EQ(add(1, "b"), 102);
    EXPECT_EQ(add(3, "c"), 103);
    EXPECT_EQ(m_keys.count(3), 2);
    EXPECT_EQ(m_keys.count(1), 1);
    EXPECT_EQ(m_keys.count(2), 0);
    EXPECT_THAT(superseded(), IsEmpty());
}

TEST_F(SectionedKeysTest, TheLastRowOfTheHighestSectionSurvives) {
    const auto highest = add(2, "a");
    const auto first = add(1, "a");
    const auto second = add(1, "a");
    add(1, "b");
    EXPECT_THAT(superseded(), UnorderedElementsAre(first, second));
    EXPECT_EQ(highest, 101);
}

TEST_F(SectionedKeysTest, RowsTakenAwaySupersedeNothing) {
    const auto kept = add(1, "a");
    add(2, "a");
    const auto taken = m_keys.takeSection(2);
    ASSERT_EQ(taken.size(), 1U);
    EXPECT_EQ(taken[0].first, 102);
    EXPECT_EQ(taken[0].count, 1);
    EXPECT_THAT(superseded(), IsEmpty());
    const auto again = add(2, "a");
    EXPECT_THAT(superseded(), ElementsAre(kept));
    EXPECT_EQ(again, 103);
}

TEST_F(SectionedKeysTest, EqualHashesAloneSupersedeNothing) {
    // Two entries under one hash whose ids, asked for, turn out to differ.
    const auto first = m_keys.add(1, "same");
    const auto second = m_keys.add(1, "same");
    m_ids[first] = "x";
    m_ids[second] = "y";
    EXPECT_THAT(superseded(), IsEmpty());
}

} // namespace
} // namespace ondavia
