#include "transports/ExecutableResolver.h"

#include "support/ToolStage.h"
#include "transports/HomeDirectory.h"
#include "transports/NuvelLocal.h"

#include <gtest/gtest.h>

namespace quorl::test {
namespace {

// A name that no machine has in its own folders.
constexpr const char* name = "quorl-test-tool-5c1e";

struct ExecutableResolverTest : testing::Test, ToolStage {
    [[nodiscard]] std::string inHome(const std::string& path) const { return script(home / path, ""); }
    [[nodiscard]] std::string nvmBinary(const std::string& version, const std::string& platform) const {
        return inHome(".nvm/versions/node/" + version + "/lib/node_modules/@openai/codex/vendor/" + platform +
                      "/codex/codex");
    }
};

TEST_F(ExecutableResolverTest, HomeIsTheVariableElseThePasswordDatabases) {
    EXPECT_EQ(homeDirectory(), home);

    const ScopedVariable empty("HOME", "");
    const auto registered = homeDirectory();
    EXPECT_TRUE(registered.is_absolute());
    const ScopedVariable unset("HOME", std::nullopt);
    EXPECT_EQ(homeDirectory(), registered);
}

TEST_F(ExecutableResolverTest, OnlyARegularFileThatMayBeRunIsExecutable) {
    const std::string file = tool("");
    EXPECT_TRUE(ExecutableResolver::isExecutable(file));
    std::filesystem::create_symlink(file, bin / "link");
    EXPECT_TRUE(ExecutableResolver::isExecutable(bin / "link"));
    std::filesystem::create_symlink(bin / "gone", bin / "dangling");
    EXPECT_FALSE(ExecutableResolver::isExecutable(bin / "dangling"));
    std::filesystem::create_symlink(bin, bin / "folder-link");
    EXPECT_FALSE(ExecutableResolver::isExecutable(bin / "folder-link"));

    chmod(file.c_str(), 0644);
    EXPECT_FALSE(ExecutableResolver::isExecutable(file));
    EXPECT_FALSE(ExecutableResolver::isExecutable(bin));
    EXPECT_FALSE(ExecutableResolver::isExecutable(bin / "missing"));
    EXPECT_FALSE(ExecutableResolver::isExecutable(""));
}

TEST_F(ExecutableResolverTest, TheHomesToolComesBeforeThePATHs) {
    EXPECT_EQ(ExecutableResolver::firstExecutable(name), std::nullopt);

    const std::string onPath = tool("", name);
    EXPECT_EQ(ExecutableResolver::firstExecutable(name), onPath);

    const std::string local = inHome(std::string(".local/bin/") + name);
    EXPECT_EQ(ExecutableResolver::firstExecutable(name), local);
}

TEST_F(ExecutableResolverTest, ThePATHsFoldersAreLookedThroughInOrderWithoutEmptyOnes) {
    const std::string first = script(top / "first" / name, "");
    const std::string second = script(top / "second" / name, "");
    const ScopedVariable path("PATH", "::" + (top / "none").string() + ":" + (top / "second").string() +
                                          "::" + (top / "first").string() + ":");

    EXPECT_EQ(ExecutableResolver::firstExecutable(name), second);
    chmod(second.c_str(), 0600);
    EXPECT_EQ(ExecutableResolver::firstExecutable(name), first);
}

TEST_F(ExecutableResolverTest, WithoutAPATHTheFixedFoldersAreLeft) {
    const ScopedVariable path("PATH", std::nullopt);

    EXPECT_EQ(ExecutableResolver::firstExecutable(name), std::nullopt);
    EXPECT_EQ(ExecutableResolver::firstExecutable("env"), "/usr/bin/env");
}

TEST_F(ExecutableResolverTest, AnExecutableOverrideWinsAsGivenForAnyProvider) {
    const std::string own = tool("");
    const std::string odd = bin.string() + "/../bin/tool";

    EXPECT_EQ(ExecutableResolver::find(ProviderKind::codex, own), own);
    EXPECT_EQ(ExecutableResolver::find(ProviderKind::claudeCode, odd), odd);
    EXPECT_EQ(ExecutableResolver::find(ProviderKind::openAI, own), own);
}

TEST_F(ExecutableResolverTest, AnOverrideThatIsNotExecutableIsPassedOver) {
    const std::string claude = inHome(".local/bin/claude");

    EXPECT_EQ(ExecutableResolver::find(ProviderKind::claudeCode, ""), claude);
    EXPECT_EQ(ExecutableResolver::find(ProviderKind::claudeCode, (bin / "missing").string()), claude);
    EXPECT_EQ(ExecutableResolver::find(ProviderKind::claudeCode, bin.string()), claude);
}

TEST_F(ExecutableResolverTest, OtherProvidersHaveNoTool) {
    static_cast<void>(inHome(".local/bin/claude"));
    static_cast<void>(inHome(".local/bin/codex"));
    static_cast<void>(inHome(".local/bin/nuvel-rs"));

    for (const ProviderKind provider : allProviderKinds) {
        const bool isLocal = provider == ProviderKind::claudeCode || provider == ProviderKind::codex;
        EXPECT_EQ(ExecutableResolver::find(provider, "").has_value(), isLocal) << rawString(provider);
    }
}

TEST_F(ExecutableResolverTest, CodexsOwnBinaryIsPreferredToOneByName) {
    const std::string local = inHome(".local/bin/codex");
    if (ExecutableResolver::codexVendorBinary())
        GTEST_SKIP() << "this machine has a Codex package of its own";
    EXPECT_EQ(ExecutableResolver::find(ProviderKind::codex, ""), local);

    const std::string vendor = nvmBinary("v20.1.0", "x86_64-unknown-linux-musl");
    EXPECT_EQ(ExecutableResolver::find(ProviderKind::codex, ""), vendor);
}

TEST_F(ExecutableResolverTest, OfSeveralPlatformsTheFirstWantedOneIsTaken) {
    const std::string other = nvmBinary("v18.0.0", "a-platform");
    EXPECT_EQ(ExecutableResolver::codexVendorBinary(), other);
    const std::string intel = nvmBinary("v20.0.0", "x86_64-apple-darwin");
    EXPECT_EQ(ExecutableResolver::codexVendorBinary(), intel);
    const std::string native = nvmBinary("v22.0.0", "aarch64-apple-darwin");
    EXPECT_EQ(ExecutableResolver::codexVendorBinary(), native);

    chmod(native.c_str(), 0644);
    EXPECT_EQ(ExecutableResolver::codexVendorBinary(), intel);
}

TEST_F(ExecutableResolverTest, VersionsAndPlatformsAreTakenInAscendingOrder) {
    for (const char* version : {"v22.3.0", "v18.9.0", "v20.0.0"}) {
        for (const char* platform : {"q", "p", "r"})
            static_cast<void>(nvmBinary(version, platform));
    }

    EXPECT_EQ(ExecutableResolver::codexVendorBinary(), nvmBinary("v18.9.0", "p"));
}

TEST_F(ExecutableResolverTest, TheFolderOfVersionsIsItselfARoot) {
    const std::string early = inHome(".nvm/versions/node/z/codex/codex");
    static_cast<void>(nvmBinary("a", "p"));

    EXPECT_EQ(ExecutableResolver::codexVendorBinary(), early);
}

TEST_F(ExecutableResolverTest, TheLocalDecisionToolIsLookedForInCargosFolderFirst) {
    if (NuvelLocal::findExecutable(""))
        GTEST_SKIP() << "this machine has nuvel-rs in a folder of its own";
    const std::string onPath = tool("", "nuvel-rs");
    EXPECT_EQ(NuvelLocal::findExecutable(""), onPath);
    const std::string local = inHome(".local/bin/nuvel-rs");
    EXPECT_EQ(NuvelLocal::findExecutable(""), local);
    const std::string cargo = inHome(".cargo/bin/nuvel-rs");
    EXPECT_EQ(NuvelLocal::findExecutable(""), cargo);
    EXPECT_EQ(NuvelLocal::findExecutable(bin.string()), cargo);
    const std::string own = tool("");
    EXPECT_EQ(NuvelLocal::findExecutable(own), own);
}

} // namespace
} // namespace quorl::test
