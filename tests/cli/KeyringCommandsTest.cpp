#include "CommandLine.h"

#include "support/PrivateBus.h"
#include "support/SilentSecretService.h"

#include <gmock/gmock.h>

namespace ondavia::cli::testing {
namespace {

using ::testing::HasSubstr;

TEST(KeyringCommands, ASilentKeyringIsWaitedForWithinOneLimitAndThatIsSaid) {
    const ondavia::testing::PrivateBus bus;
    const ondavia::testing::SilentSecretService silent;
    ASSERT_TRUE(silent.isThere());
    CommandLine cli;
    cli.setEnvironment("ONDAVIA_VAULT", "");
    cli.setEnvironment("DBUS_SESSION_BUS_ADDRESS", qgetenv("DBUS_SESSION_BUS_ADDRESS").constData());
    const auto result = cli.run({QStringLiteral("account")});
    EXPECT_EQ(result.status, 1);
    EXPECT_THAT(result.errors, HasSubstr("waiting for the keyring, for 30 seconds at the most"));
    EXPECT_THAT(result.errors, HasSubstr("warning: the keyring does not answer, so nothing is remembered"));
    EXPECT_THAT(result.errors, HasSubstr("error: nobody is signed in"));
}

} // namespace
} // namespace ondavia::cli::testing
