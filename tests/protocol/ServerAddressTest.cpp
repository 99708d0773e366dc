#include "protocol/ServerAddress.h"

#include <gtest/gtest.h>

namespace ondavia {
namespace {

TEST(ServerAddress, KnowsTheWebSchemesInAnyCase) {
    EXPECT_TRUE(hasWebScheme("http://a"));
    EXPECT_TRUE(hasWebScheme("HTTPS://a"));
    EXPECT_FALSE(hasWebScheme("http:/a"));
    EXPECT_FALSE(hasWebScheme("tv.example"));
}

TEST(ServerAddress, KnowsASchemeThatIsTakenForAName) {
    for (const char* server : {"HTTP://a", "Https://a", " \nhttpS://a"}) {
        EXPECT_TRUE(hasSchemeInCapitals(server)) << server;
    }
    for (const char* server : {"http://a", " https://A", "FTP://a", "HTTP:/a", "TV.example", ""}) {
        EXPECT_FALSE(hasSchemeInCapitals(server)) << server;
    }
}

} // namespace
} // namespace ondavia
