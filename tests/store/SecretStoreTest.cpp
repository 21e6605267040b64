#include "store/SecretStore.h"

#include "support/Fakes.h"

#include <gtest/gtest.h>

#include <thread>

namespace quorl::test {

namespace {

constexpr const char* service = "com.quorltest.app";

struct Secrets {
    FakeKeychain keychain;
    SecretStore store{keychain, service};
    const UUID id = *UUID::parse("aaaaaaaa-0000-4000-8000-000000000001");
    const FakeKeychain::Item item{service, "AAAAAAAA-0000-4000-8000-000000000001"};
    const ModelSecret secret{"key", "access", "secret", "token"};
};

// A keychain that gives the other thread its chance in the middle of a read.
class SlowKeychain : public FakeKeychain {
public:
    std::optional<std::string> copy(const std::string& name, const std::string& account) override {
        std::this_thread::yield();
        return FakeKeychain::copy(name, account);
    }
};

} // namespace

TEST(SecretStore, SavesOneItemUnderTheModelsUpperCaseId) {
    Secrets secrets;

    secrets.store.save(secrets.id, secrets.secret);

    ASSERT_EQ(secrets.keychain.items.size(), 1u);
    EXPECT_EQ(
        secrets.keychain.items.at(secrets.item),
        R"({"apiKey":"key","awsAccessKey":"access","awsSecretKey":"secret","awsSessionToken":"token"})");
}

TEST(SecretStore, SavingOverAnItemLeavesOneWithTheNewValue) {
    Secrets secrets;
    secrets.store.save(secrets.id, secrets.secret);
    const ModelSecret next{"next", "", "", ""};

    secrets.store.save(secrets.id, next);

    EXPECT_EQ(secrets.keychain.items.size(), 1u);
    EXPECT_EQ(secrets.keychain.items.at(secrets.item), *next.json());
    EXPECT_EQ(secrets.store.load(secrets.id), next);
}

TEST(SecretStore, LoadsWhatAnEarlierProcessSaved) {
    Secrets secrets;
    secrets.keychain.items[secrets.item] = *secrets.secret.json();

    EXPECT_EQ(secrets.store.load(secrets.id), secrets.secret);
}

TEST(SecretStore, AsksTheKeychainOnce) {
    Secrets secrets;
    secrets.keychain.items[secrets.item] = *secrets.secret.json();

    (void)secrets.store.load(secrets.id);
    (void)secrets.store.load(secrets.id);

    EXPECT_EQ(secrets.keychain.copies, 1);
}

TEST(SecretStore, RemembersThatAModelHasNone) {
    Secrets secrets;
    EXPECT_EQ(secrets.store.load(secrets.id), ModelSecret{});
    secrets.keychain.items[secrets.item] = *secrets.secret.json();

    EXPECT_EQ(secrets.store.load(secrets.id), ModelSecret{});
    EXPECT_EQ(secrets.keychain.copies, 1);
}

TEST(SecretStore, AnItemThatIsNoSecretIsNone) {
    for (const char* bytes : {"not JSON", "{}", R"({"apiKey":"k","awsAccessKey":"","awsSecretKey":""})"}) {
        Secrets secrets;
        secrets.keychain.items[secrets.item] = bytes;

        EXPECT_EQ(secrets.store.load(secrets.id), ModelSecret{}) << bytes;
    }
}

TEST(SecretStore, AnItemOfAnotherServiceIsNotSeen) {
    Secrets secrets;
    secrets.keychain.items[{"another.service", secrets.item.second}] = *secrets.secret.json();

    EXPECT_EQ(secrets.store.load(secrets.id), ModelSecret{});
}

TEST(SecretStore, ALockedKeychainLooksLikeNoCredentialsUntilTheProcessEnds) {
    Secrets secrets;
    secrets.keychain.items[secrets.item] = *secrets.secret.json();
    secrets.keychain.isLocked = true;
    EXPECT_EQ(secrets.store.load(secrets.id), ModelSecret{});
    secrets.keychain.isLocked = false;

    EXPECT_EQ(secrets.store.load(secrets.id), ModelSecret{});
    EXPECT_EQ(SecretStore(secrets.keychain, service).load(secrets.id), secrets.secret);
}

TEST(SecretStore, ASaveThatTheKeychainRefusesHoldsForThisProcess) {
    Secrets secrets;
    secrets.keychain.isLocked = true;

    secrets.store.save(secrets.id, secrets.secret);

    EXPECT_EQ(secrets.store.load(secrets.id), secrets.secret);
    EXPECT_EQ(secrets.keychain.copies, 0);
    EXPECT_TRUE(secrets.keychain.items.empty());
}

TEST(SecretStore, ASecretThatHasNoStoredFormLeavesTheOldItem) {
    Secrets secrets;
    secrets.store.save(secrets.id, secrets.secret);
    ModelSecret broken;
    broken.apiKey = "\xFF";

    secrets.store.save(secrets.id, broken);

    EXPECT_EQ(secrets.keychain.items.at(secrets.item), *secrets.secret.json());
    EXPECT_EQ(secrets.store.load(secrets.id), broken);
}

TEST(SecretStore, ClearingRemovesTheItemAndRemembersThatThereIsNone) {
    Secrets secrets;
    secrets.keychain.items[secrets.item] = *secrets.secret.json();

    secrets.store.clear(secrets.id);

    EXPECT_TRUE(secrets.keychain.items.empty());
    EXPECT_EQ(secrets.store.load(secrets.id), ModelSecret{});
    EXPECT_EQ(secrets.keychain.copies, 0);
}

TEST(SecretStore, TwoThreadsThatAskForTheSameModelReadTheKeychainOnce) {
    for (int round = 0; round < 50; ++round) {
        SlowKeychain keychain;
        SecretStore store(keychain, service);
        const UUID id = UUID::random();
        const auto load = [&] { (void)store.load(id); };

        std::thread first(load);
        std::thread second(load);
        first.join();
        second.join();

        ASSERT_EQ(keychain.copies, 1);
    }
}

} // namespace quorl::test
