#include "platform/linux/FileKeychain.h"

#include "platform/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <fstream>
#include <sys/stat.h>
#include <thread>

namespace quorl::test {
namespace {

using Bytes = std::optional<std::string>;

const std::string service = "com.quorltest.app";
const std::string account = "0A000000-0000-4000-8000-00000000000B";

class FileKeychainFolder : public testing::Test {
protected:
    unsigned modeOf(const std::filesystem::path& path) {
        struct stat status {};
        return stat(path.c_str(), &status) == 0 ? status.st_mode & 07777u : 0u;
    }

    std::vector<std::string> namesIn(const std::filesystem::path& path) {
        std::vector<std::string> names;
        for (const auto& entry : std::filesystem::directory_iterator(path))
            names.push_back(entry.path().filename().string());
        return names;
    }

    TemporaryFolder folder;
    const std::filesystem::path config = folder.path / "home" / ".config";
    const std::filesystem::path secrets = config / service / "secrets";
    const std::filesystem::path item = secrets / (account + ".json");
    FileKeychain keychain{config};
};

TEST_F(FileKeychainFolder, KeepsTheBytesOfAnItemInAFileOfItsAccountsName) {
    const std::string bytes("{\"apiKey\":\"\xC3\xA4\0\xFF\"}\n", 18);

    keychain.add(service, account, bytes);

    EXPECT_EQ(keychain.copy(service, account), bytes);
    EXPECT_EQ(FileKeychain(config).copy(service, account), bytes);
    EXPECT_EQ(namesIn(secrets), std::vector<std::string>{account + ".json"});
}

TEST_F(FileKeychainFolder, KeepsItemsOfAnySize) {
    keychain.add(service, "empty", "");
    keychain.add(service, "large", std::string(1'000'000, 'x'));

    EXPECT_EQ(keychain.copy(service, "empty"), "");
    EXPECT_EQ(keychain.copy(service, "large"), std::string(1'000'000, 'x'));
}

TEST_F(FileKeychainFolder, IsTheUsersAlone) {
    const auto mask = umask(0);
    keychain.add(service, account, "secret");
    umask(mask);

    EXPECT_EQ(modeOf(item), 0600u);
    EXPECT_EQ(modeOf(secrets), 0700u);
    EXPECT_EQ(modeOf(secrets.parent_path()), 0700u);
    EXPECT_EQ(modeOf(config), 0700u);
}

TEST_F(FileKeychainFolder, ClosesAFolderThatWasOpenToOthers) {
    std::filesystem::create_directories(secrets);
    std::filesystem::permissions(secrets, std::filesystem::perms(0755));

    keychain.add(service, account, "secret");

    EXPECT_EQ(modeOf(secrets), 0700u);
}

TEST_F(FileKeychainFolder, AddingDoesNotReplace) {
    keychain.add(service, account, "old");
    keychain.add(service, account, "new");

    EXPECT_EQ(keychain.copy(service, account), "old");
}

TEST_F(FileKeychainFolder, RemovingAndAddingReplaces) {
    keychain.add(service, account, "old");

    keychain.remove(service, account);
    EXPECT_EQ(keychain.copy(service, account), Bytes());
    keychain.add(service, account, "new");

    EXPECT_EQ(keychain.copy(service, account), "new");
}

TEST_F(FileKeychainFolder, ItemsAreKnownByServiceAndAccount) {
    keychain.add(service, "first", "1");
    keychain.add(service, "second", "2");
    keychain.add("com.example.other", "first", "3");

    keychain.remove("com.example.other", "second");

    EXPECT_EQ(keychain.copy(service, "first"), "1");
    EXPECT_EQ(keychain.copy(service, "second"), "2");
    EXPECT_EQ(keychain.copy("com.example.other", "first"), "3");
    EXPECT_EQ(keychain.copy("com.example.other", "second"), Bytes());
}

TEST_F(FileKeychainFolder, LookingMakesNoFolder) {
    EXPECT_EQ(keychain.copy(service, account), Bytes());
    keychain.remove(service, account);

    EXPECT_FALSE(std::filesystem::exists(config));
}

TEST_F(FileKeychainFolder, RefusesNamesThatAreNoPlainFileNames) {
    for (const std::string& name :
         {std::string(), std::string("."), std::string(".."), std::string("../escaped"), std::string("a/b"),
          std::string("/etc"), std::string(".hidden"), std::string("nul\0byte", 8), std::string(300, 'x')}) {
        keychain.add(service, name, "secret");
        keychain.add(name, account, "secret");

        EXPECT_EQ(keychain.copy(service, name), Bytes()) << name;
        EXPECT_EQ(keychain.copy(name, account), Bytes()) << name;
    }
    EXPECT_FALSE(std::filesystem::exists(config / service / "escaped.json"));
    ASSERT_TRUE(std::filesystem::exists(secrets)); // for the sake of the name that is only too long
    EXPECT_TRUE(namesIn(secrets).empty());
}

TEST_F(FileKeychainFolder, NeitherAFolderNorAPipeIsAnItem) {
    std::filesystem::create_directories(secrets / "folder.json");
    ASSERT_EQ(mkfifo((secrets / "pipe.json").c_str(), 0600), 0);

    EXPECT_EQ(keychain.copy(service, "folder"), Bytes());
    EXPECT_EQ(keychain.copy(service, "pipe"), Bytes());
}

TEST_F(FileKeychainFolder, AnItemThatCannotBeWrittenIsUnseen) {
    std::filesystem::create_directories(config);
    std::ofstream(config / service) << "a file in the folder's place";

    keychain.add(service, account, "secret");
    keychain.remove(service, account);

    EXPECT_EQ(keychain.copy(service, account), Bytes());
}

TEST_F(FileKeychainFolder, OfAdditionsFromSeveralThreadsOneIsKeptWhole) {
    {
        std::vector<std::jthread> threads;
        for (char letter = 'a'; letter < 'i'; ++letter)
            threads.emplace_back(
                [this, letter] { keychain.add(service, account, std::string(100'000, letter)); });
    }

    const auto bytes = keychain.copy(service, account).value_or("");
    ASSERT_EQ(bytes.size(), 100'000u);
    EXPECT_EQ(bytes, std::string(100'000, bytes.front()));
    EXPECT_EQ(namesIn(secrets).size(), 1u);
}

} // namespace
} // namespace quorl::test
