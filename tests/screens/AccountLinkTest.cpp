#include "screens/signin/AccountLink.h"

#include <gtest/gtest.h>

namespace ondavia {
namespace {

TEST(AccountLink, KeepsPortAndPathPrefixAndFillsAllThree) {
    EXPECT_EQ(
        parseAccountLink("http://tv.example:8080/iptv/get.php?username=ana&password=s3cret&type=m3u_plus"),
        (AccountLink{"http://tv.example:8080/iptv", "ana", "s3cret"}));
    EXPECT_EQ(parseAccountLink("https://tv.example/player_api.php?password=p&action=get_series&username=u"),
              (AccountLink{"https://tv.example", "u", "p"}));
}

TEST(AccountLink, TakesALinkWithoutSchemeAndWithBlanksAround) {
    EXPECT_EQ(parseAccountLink(" \n tv.example:80/get.php?username=u&password=p#top \r\n"),
              (AccountLink{"tv.example:80", "u", "p"}));
}

TEST(AccountLink, PercentDecodesTheValuesOnly) {
    EXPECT_EQ(parseAccountLink("http://a.example/x%20y/get.php?username=jo%C3%A3o&password=a%26b%3d+c%zz%"),
              (AccountLink{"http://a.example/x%20y", "jo\u00e3o", "a&b=+c%zz%"}));
}

TEST(AccountLink, LetsTheLastOfSeveralValuesCount) {
    EXPECT_EQ(parseAccountLink("http://a.example/get.php?username=u&password=1&&password=2&username"),
              (AccountLink{"http://a.example", "u", "2"}));
}

TEST(AccountLink, RefusesWhatIsNoSuchLink) {
    for (const char* text :
         {"", "?", "/", "http://", "tv.example", "http://tv.example:8080", "get.php?username=u&password=p",
          "/get.php?username=u&password=p", "http:///get.php?username=u&password=p",
          "http://a.example//get.php?username=u&password=p",
          "http://a.example/xmltv.php?username=u&password=p", "http://a.example/get.php?username=u",
          "http://a.example/get.php?password=p", "http://a.example/get.php?username=&password=p",
          "http://a.example/get.php?xusername=u&password=p",
          "http://a.example/get.php#?username=u&password=p",
          "ftp://a.example/get.php?username=u&password=p"}) {
        EXPECT_FALSE(parseAccountLink(text)) << text;
    }
}

TEST(AccountLink, RefusesHostileValues) {
    EXPECT_FALSE(parseAccountLink("http://a.example/get.php?username=u%00&password=p")) << "NUL";
    EXPECT_FALSE(parseAccountLink("http://a.example/get.php?username=u&password=p%0d%0aHost:%20b"))
        << "line break";
    EXPECT_FALSE(parseAccountLink("http://a.example/get.php?username=%ff%fe&password=p")) << "no UTF-8";
    EXPECT_FALSE(parseAccountLink("http://a.ex\x01mple/get.php?username=u&password=p"))
        << "control in the host";
    const std::string start = "http://a.example/get.php?username=u&password=";
    EXPECT_TRUE(parseAccountLink(start + std::string(maximumAccountLink - start.size(), 'p')));
    EXPECT_FALSE(parseAccountLink(start + std::string(maximumAccountLink - start.size() + 1, 'p')));
    EXPECT_FALSE(parseAccountLink(std::string(1 << 20, '?')));
}

TEST(AccountLink, KnowsTheWebSchemesInAnyCase) {
    EXPECT_TRUE(hasWebScheme("http://a"));
    EXPECT_TRUE(hasWebScheme("HTTPS://a"));
    EXPECT_FALSE(hasWebScheme("http:/a"));
    EXPECT_FALSE(hasWebScheme("tv.example"));
}

} // namespace
} // namespace ondavia
