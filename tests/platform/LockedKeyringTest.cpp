#include "platform/linux/SecItemStores.h"
#include "support/PrivateBus.h"
#include "support/TestSupport.h"

#include <gtest/gtest.h>

namespace ondavia {
namespace {

TEST(LockedKeyring, deletesNothingAndIsNotTakenForEmpty) {
    testing::PrivateBus bus;
    bus.startSecretService();
    const SecItemQuery item{"com.ondavia.app", "ondavia_password"};
    const auto store = makeSecretServiceStore();
    ASSERT_EQ(store->SecItemAdd(item, "word"), errSecSuccess);
    testing::PrivateBus::lockKeyring();
    EXPECT_EQ(store->SecItemDelete(item), errSecNotAvailable);
    EXPECT_EQ(store->SecItemDelete({item.service, "nobody's"}), errSecItemNotFound);
}

} // namespace
} // namespace ondavia
