#include "app/AtomicFile.h"

#include "support/TempFolder.h"
#include "support/ToolStage.h"

#include <gtest/gtest.h>

#include <csignal>
#include <fcntl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <fstream>

using namespace quorl;
using namespace quorl::test;

namespace {

class AtomicFileTest : public testing::Test {
protected:
    static mode_t modeOf(const std::filesystem::path& path) {
        struct stat status {};
        EXPECT_EQ(::stat(path.c_str(), &status), 0);
        return status.st_mode & 07777;
    }

    TempFolder temporary;
    const std::filesystem::path folder = std::filesystem::canonical(temporary.path());
    const std::filesystem::path target = folder / "export.csv";
};

TEST_F(AtomicFileTest, ANewFileHasTheBytesAndTheModeOfTheUsersMask) {
    const mode_t former = ::umask(027);

    const auto written = AtomicFile::write(target, std::string_view("a\0b\n", 4));
    ::umask(former);

    ASSERT_TRUE(written);
    EXPECT_EQ(written.value(), target);
    EXPECT_EQ(contentOf(target), std::string("a\0b\n", 4));
    EXPECT_EQ(modeOf(target), 0640u);
    EXPECT_EQ(namesIn(folder), std::set<std::string>{"export.csv"});
}

TEST_F(AtomicFileTest, NoBytesMakeAnEmptyFile) {
    ASSERT_TRUE(AtomicFile::write(target, ""));

    EXPECT_EQ(std::filesystem::file_size(target), 0u);
}

TEST_F(AtomicFileTest, AFileThatIsThereIsReplacedAndKeepsItsMode) {
    std::ofstream(target) << "a longer content than the next";
    ::chmod(target.c_str(), 0604);

    ASSERT_TRUE(AtomicFile::write(target, "new"));

    EXPECT_EQ(contentOf(target), "new");
    EXPECT_EQ(modeOf(target), 0604u);
}

TEST_F(AtomicFileTest, WhoReadsTheOldFileMeanwhileSeesAllOfIt) {
    std::ofstream(target) << "old";
    std::ifstream reader(target);

    ASSERT_TRUE(AtomicFile::write(target, "new"));

    EXPECT_EQ(std::string(std::istreambuf_iterator<char>(reader), {}), "old");
}

TEST_F(AtomicFileTest, BehindASymbolicLinkTheFileIsWrittenAndTheLinkStays) {
    std::filesystem::create_directory(folder / "elsewhere");
    std::ofstream(folder / "elsewhere" / "real.csv") << "old";
    std::filesystem::create_symlink("elsewhere/real.csv", folder / "hop");
    std::filesystem::create_symlink(folder / "hop", target);

    const auto written = AtomicFile::write(target, "new");

    ASSERT_TRUE(written);
    EXPECT_EQ(written.value(), folder / "elsewhere" / "real.csv");
    EXPECT_TRUE(std::filesystem::is_symlink(target));
    EXPECT_EQ(contentOf(folder / "elsewhere" / "real.csv"), "new");
    EXPECT_EQ(namesIn(folder / "elsewhere"), std::set<std::string>{"real.csv"});
}

TEST_F(AtomicFileTest, ALinkToAFileThatIsNotThereMakesIt) {
    std::filesystem::create_symlink("real.csv", target);

    ASSERT_TRUE(AtomicFile::write(target, "new"));

    EXPECT_TRUE(std::filesystem::is_symlink(target));
    EXPECT_EQ(contentOf(folder / "real.csv"), "new");
}

TEST_F(AtomicFileTest, LinksInACircleAreAnError) {
    std::filesystem::create_symlink("other", target);
    std::filesystem::create_symlink("export.csv", folder / "other");

    EXPECT_EQ(AtomicFile::write(target, "new").message(),
              target.string() + ": Too many levels of symbolic links");
}

TEST_F(AtomicFileTest, AFolderThatIsNotThereIsAnError) {
    const auto missing = folder / "gone" / "export.csv";

    EXPECT_EQ(AtomicFile::write(missing, "new").message(), missing.string() + ": No such file or directory");
}

TEST_F(AtomicFileTest, AFolderInTheFilesPlaceIsAnErrorAndStays) {
    std::filesystem::create_directory(target);

    EXPECT_EQ(AtomicFile::write(target, "new").message(), target.string() + ": Is a directory");

    EXPECT_EQ(namesIn(folder), std::set<std::string>{"export.csv"});
}

TEST_F(AtomicFileTest, APipeInTheFilesPlaceIsAnErrorAndStays) {
    ASSERT_EQ(::mkfifo(target.c_str(), 0600), 0);

    EXPECT_EQ(AtomicFile::write(target, "new").message(), target.string() + ": Operation not supported");

    EXPECT_TRUE(std::filesystem::is_fifo(target));
}

// In a child, since the limit and the user are the whole process's. It prints what went wrong.
class AtomicFileDeathTest : public AtomicFileTest {
protected:
    [[noreturn]] void writeAndExit(const std::string& bytes) const {
        const auto written = AtomicFile::write(target, bytes);
        std::fputs(written ? "written" : written.message().c_str(), stderr);
        std::_Exit(0);
    }

    [[noreturn]] void writeOnAFullDisk() const {
        std::signal(SIGXFSZ, SIG_IGN);
        const rlimit small{1000, 1000};
        ::setrlimit(RLIMIT_FSIZE, &small);
        writeAndExit(std::string(5000, 'x'));
    }

    // Nothing is forbidden to root.
    [[noreturn]] void writeAsNobody() const {
        if (::geteuid() == 0 && ::setuid(65534) != 0)
            std::_Exit(1);
        writeAndExit("new");
    }
};

TEST_F(AtomicFileDeathTest, ADiskThatFillsUpLeavesTheOldFileAndNothingElse) {
    std::ofstream(target) << "old";

    EXPECT_EXIT(writeOnAFullDisk(), testing::ExitedWithCode(0), target.string() + ": File too large");

    EXPECT_EQ(contentOf(target), "old");
    EXPECT_EQ(namesIn(folder), std::set<std::string>{"export.csv"});
}

TEST_F(AtomicFileDeathTest, AFolderThatTheUserMayNotWriteToIsAnError) {
    ::chmod(folder.c_str(), 0555);

    EXPECT_EXIT(writeAsNobody(), testing::ExitedWithCode(0), target.string() + ": Permission denied");
    ::chmod(folder.c_str(), 0755);

    EXPECT_TRUE(namesIn(folder).empty());
}

// Renaming would ask only for rights on the folder.
TEST_F(AtomicFileDeathTest, AFileThatIsWriteProtectedIsNotReplaced) {
    std::ofstream(target) << "old";
    ::chmod(target.c_str(), 0444);
    ::chmod(folder.c_str(), 0777);

    EXPECT_EXIT(writeAsNobody(), testing::ExitedWithCode(0), target.string() + ": Permission denied");

    EXPECT_EQ(contentOf(target), "old");
    EXPECT_EQ(namesIn(folder), std::set<std::string>{"export.csv"});
}

} // namespace
