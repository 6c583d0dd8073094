#include <ombrel-format/FileSystem.h>

#include <gtest/gtest.h>

#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>

#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>

namespace fs = std::filesystem;

namespace {

using ombrel::DiskFileSystem;
using ombrel::FileError;

class FileReplacement : public testing::Test {
protected:
    void SetUp() override {
        std::string pattern = (fs::temp_directory_path() / "ombrel-XXXXXX").string();
        ASSERT_NE(::mkdtemp(pattern.data()), nullptr);
        folder = pattern;
        file = folder / "a.omb";
        write(file, "if a\nx\nend\n");
    }

    void TearDown() override { fs::remove_all(folder); }

    static void write(const fs::path& path, const std::string& bytes) { std::ofstream(path) << bytes; }

    static std::string read(const fs::path& path) {
        std::ifstream stream(path);
        return {std::istreambuf_iterator<char>(stream), {}};
    }

    static struct stat getStatus(const fs::path& path) {
        struct stat status {};
        ::stat(path.c_str(), &status);
        return status;
    }

    std::size_t countFiles() const {
        return static_cast<std::size_t>(std::distance(fs::directory_iterator(folder), {}));
    }

    /// Exit status of the real program, called in the folder with standard output and errors to files there.
    int call(const std::string& words) const {
        const std::string command = "cd '" + folder.string() + "' && '" OMBREL_FORMAT_PROGRAM "' " + words;
        return WEXITSTATUS(std::system(command.c_str()));
    }

    void expectRefused(const char* message) {
        try {
            DiskFileSystem().replace(file, "new");
            FAIL() << "should refuse: " << message;
        } catch (const FileError& error) {
            EXPECT_EQ(error.kind, FileError::Kind::Unwritable);
            EXPECT_NE(std::string(error.what()).find(message), std::string::npos) << error.what();
        }
        EXPECT_EQ(read(file), "if a\nx\nend\n");
    }

    fs::path folder;
    fs::path file;
};

TEST_F(FileReplacement, KeepsModeAndLeavesNothingBehind) {
    fs::permissions(file, fs::perms(0751));
    const auto before = getStatus(file);
    DiskFileSystem().replace(file, "new");
    const auto after = getStatus(file);
    EXPECT_EQ(read(file), "new");
    EXPECT_EQ(after.st_mode, before.st_mode);
    EXPECT_EQ(after.st_uid, before.st_uid);
    EXPECT_NE(after.st_ino, before.st_ino);
    EXPECT_EQ(countFiles(), 1U);
}

TEST_F(FileReplacement, ReplacesTheTargetOfASymbolicLink) {
    fs::create_directory(folder / "sub");
    fs::create_symlink("../a.omb", folder / "sub" / "link");
    DiskFileSystem().replace(folder / "sub" / "link", "new");
    EXPECT_TRUE(fs::is_symlink(folder / "sub" / "link"));
    EXPECT_FALSE(fs::is_symlink(file));
    EXPECT_EQ(read(file), "new");
}

TEST_F(FileReplacement, RefusesHardLinkedAndReadOnlyFiles) {
    fs::create_hard_link(file, folder / "other");
    expectRefused("hard links");
    fs::remove(folder / "other");
    fs::permissions(file, fs::perms(0444));
    expectRefused("read-only");
    EXPECT_EQ(countFiles(), 1U);
}

TEST_F(FileReplacement, KeepsAnEditMadeMeanwhile) {
    DiskFileSystem files;
    files.read(file, 1000);
    write(file, "somebody else's longer text");
    EXPECT_THROW(files.replace(file, "new"), FileError);
    EXPECT_EQ(read(file), "somebody else's longer text");
    EXPECT_EQ(countFiles(), 1u);
}

TEST_F(FileReplacement, SaysWhyAFileCannotBeRead) {
    DiskFileSystem disk;
    EXPECT_THROW(disk.read(folder / "none", 100), FileError);
    EXPECT_THROW(disk.read(folder, 100), FileError);
    EXPECT_EQ(disk.read(file, 11), "if a\nx\nend\n");
    try {
        disk.read(file, 10);
        FAIL();
    } catch (const FileError& error) {
        EXPECT_EQ(error.kind, FileError::Kind::TooLarge);
    }
}

TEST_F(FileReplacement, KeepsTheOldFileWhenWritingFails) {
    rlimit before{};
    ::getrlimit(RLIMIT_FSIZE, &before);
    const rlimit limit{5, before.rlim_max};
    std::signal(SIGXFSZ, SIG_IGN);
    ::setrlimit(RLIMIT_FSIZE, &limit);
    EXPECT_THROW(DiskFileSystem().replace(file, "longer than the limit"), FileError);
    ::setrlimit(RLIMIT_FSIZE, &before);
    EXPECT_EQ(read(file), "if a\nx\nend\n");
    EXPECT_EQ(countFiles(), 1U);
}

TEST_F(FileReplacement, ProgramFormatsInPlaceAndLeavesUnchangedFilesAlone) {
    EXPECT_EQ(call("-i a.omb"), 0);
    EXPECT_EQ(read(file), "if a\n    x\nend\n");
    const auto before = getStatus(file);
    EXPECT_EQ(call("-i a.omb"), 0);
    const auto after = getStatus(file);
    EXPECT_EQ(after.st_ino, before.st_ino);
    EXPECT_EQ(after.st_mtim.tv_nsec, before.st_mtim.tv_nsec);
    EXPECT_EQ(after.st_ctim.tv_nsec, before.st_ctim.tv_nsec);
}

TEST_F(FileReplacement, ProgramReportsFullDisksAndFolders) {
    EXPECT_EQ(call("a.omb > /dev/full 2> messages"), 6);
    EXPECT_EQ(read(folder / "messages"),
              "ombrel-format: error: can't write standard output: No space left on device\n");
    EXPECT_EQ(call("--help > /dev/full 2> messages"), 6);
    EXPECT_EQ(call(". 2> messages"), 2);
    EXPECT_EQ(read(folder / "messages"), ".: error: this is a folder; name the files in it\n");
    EXPECT_EQ(call("< . 2> messages"), 2);
    EXPECT_EQ(call("--help > messages"), 0);
    EXPECT_EQ(call("--tab-size 0 2> messages"), 2);
}

TEST_F(FileReplacement, DumpPrintsTokensAsJson) {
    const std::string program = "'" OMBREL_DUMP_PROGRAM "' ";
    const std::string out = " > '" + (folder / "out").string() + "' 2>&1";
    ASSERT_EQ(std::system(("printf 'x\\n' | " + program + "tokens" + out).c_str()), 0);
    EXPECT_EQ(read(folder / "out"), R"([)"
                                    "\n"
                                    R"({"type":27,"name":"NameToken27","lexeme":"x","line":1,"column":1},)"
                                    "\n"
                                    R"({"type":75,"name":"LineEnding75","lexeme":"\n","line":1,"column":2},)"
                                    "\n"
                                    R"({"type":0,"name":"EndOfInput","lexeme":"","line":2,"column":1})"
                                    "\n"
                                    R"(])"
                                    "\n");
    EXPECT_EQ(WEXITSTATUS(std::system((program + "tokes" + out).c_str())), 2);
    EXPECT_NE(read(folder / "out").find("did you mean tokens?"), std::string::npos);
}

} // namespace
