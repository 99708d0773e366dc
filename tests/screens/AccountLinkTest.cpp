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

TEST(AccountLink, TakesEveryPartAsItStands) {
    EXPECT_EQ(parseAccountLink("http://a.example/x%20y/get.php?username=jo%C3%A3o&password=a%26b%3d+c%zz%"),
              (AccountLink{"http://a.example/x%20y", "jo%C3%A3o", "a%26b%3d+c%zz%"}));
    EXPECT_EQ(parseAccountLink("http://a.example/get.php?username=jo\u00e3o&password=a=b/c%00%0d%0a%ff"),
              (AccountLink{"http://a.example", "jo\u00e3o", "a=b/c%00%0d%0a%ff"}));
}

TEST(AccountLink, MakesTheLinkAgainThatItWasReadFrom) {
    const std::string link = "http://a.example:8080/x/player_api.php?username=u%40v%2F&password=p%26%25+q";
    const auto account = parseAccountLink(link).value();
    EXPECT_EQ(account.server + "/player_api.php?username=" + account.username +
                  "&password=" + account.password,
              link);
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
    EXPECT_FALSE(parseAccountLink(std::string("http://a.example/get.php?username=u\0&password=p", 47)))
        << "NUL";
    EXPECT_FALSE(parseAccountLink("http://a.example/get.php?username=u&password=p\r\nHost: b"))
        << "line break";
    EXPECT_FALSE(parseAccountLink("http://a.example/get.php?username=\xff\xfe&password=p")) << "no UTF-8";
    EXPECT_FALSE(parseAccountLink("http://a.ex\x01mple/get.php?username=u&password=p"))
        << "control in the host";
    const std::string start = "http://a.example/get.php?username=u&password=";
    EXPECT_TRUE(parseAccountLink(start + std::string(maximumAccountLink - start.size(), 'p')));
    EXPECT_FALSE(parseAccountLink(start + std::string(maximumAccountLink - start.size() + 1, 'p')));
    EXPECT_FALSE(parseAccountLink(std::string(1 << 20, '?')));
}

} // namespace
} // namespace ondavia
