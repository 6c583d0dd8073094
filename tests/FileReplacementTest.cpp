#include <ombrel-format/files/FileSystem.h>

#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

namespace fs = std::filesystem;

namespace {

using ombrel::DiskFileSystem;
using ombrel::FileError;
using ombrel::ReplacementRules;

const std::string ugly = "if a\nx\nend\n";

class FileReplacement : public testing::Test {
protected:
    FileReplacement() { disk.write("a.omb", ugly); }

    void replace(const std::string& name, ReplacementRules rules = {}) const {
        DiskFileSystem(rules).replace(file.parent_path() / name, ugly, "new");
    }

    void expectRefused(const char* message) const {
        try {
            replace("a.omb");
            FAIL() << "should refuse: " << message;
        } catch (const FileError& error) {
            EXPECT_EQ(error.kind, FileError::Kind::Unwritable);
            EXPECT_NE(std::string(error.what()).find(message), std::string::npos) << error.what();
        }
        EXPECT_EQ(disk.read("a.omb"), ugly);
    }

    TemporaryFolder disk;
    const fs::path file = disk.getPath() / "a.omb";
};

TEST_F(FileReplacement, KeepsModeAndLeavesNothingBehind) {
    fs::permissions(file, fs::perms(0751));
    const auto before = disk.getStatus("a.omb");
    replace("a.omb");
    const auto after = disk.getStatus("a.omb");
    EXPECT_EQ(disk.read("a.omb"), "new");
    EXPECT_EQ(after.st_mode, before.st_mode);
    EXPECT_EQ(after.st_uid, before.st_uid);
    EXPECT_NE(after.st_ino, before.st_ino);
    EXPECT_EQ(disk.countFiles(), 1U);
}

TEST_F(FileReplacement, KeepsAttributesAndAccessListsAndAddsNone) {
    const std::string value("\0\xFF value", 8);
    if (::setxattr(file.c_str(), "user.ombrel", value.data(), value.size(), 0) != 0) {
        GTEST_SKIP() << "no extended attributes here";
    }
    // Version 2: owner rw, user 1 rw, group none, mask rw, others none; a folder's list for its new files:
    // user 2.
    const std::string list("\2\0\0\0"
                           "\1\0\6\0\xFF\xFF\xFF\xFF"
                           "\2\0\6\0\1\0\0\0"
                           "\4\0\0\0\xFF\xFF\xFF\xFF"
                           "\x10\0\6\0\xFF\xFF\xFF\xFF"
                           "\x20\0\0\0\xFF\xFF\xFF\xFF",
                           44);
    const auto setList = [&](const fs::path& path, const char* name) {
        return ::setxattr(path.c_str(), name, list.data(), list.size(), 0) == 0;
    };
    const auto getAttribute = [&](const char* path, const char* name) {
        std::string bytes(100, '\0');
        const ssize_t size = ::getxattr((disk.getPath() / path).c_str(), name, bytes.data(), bytes.size());
        return size < 0 ? "none" : bytes.substr(0, static_cast<std::size_t>(size));
    };
    const bool hasLists = setList(file, "system.posix_acl_access");
    disk.write("b.omb", ugly);
    fs::permissions(disk.getPath() / "b.omb", fs::perms(0640));
    EXPECT_EQ(setList(disk.getPath(), "system.posix_acl_default"), hasLists);
    const auto before = disk.getStatus("a.omb");
    replace("a.omb");
    replace("b.omb");
    EXPECT_EQ(getAttribute("a.omb", "user.ombrel"), value);
    EXPECT_EQ(getAttribute("a.omb", "system.posix_acl_access"), hasLists ? list : "none");
    EXPECT_EQ(getAttribute("b.omb", "system.posix_acl_access"), "none");
    EXPECT_EQ(disk.getStatus("a.omb").st_mode, before.st_mode);
    EXPECT_EQ(disk.getStatus("b.omb").st_mode & 07777U, 0640U);
}

TEST_F(FileReplacement, ReplacesTheTargetOfASymbolicLink) {
    fs::create_directory(disk.getPath() / "sub");
    fs::create_symlink("../a.omb", disk.getPath() / "sub" / "link");
    replace("sub/link");
    EXPECT_TRUE(fs::is_symlink(disk.getPath() / "sub" / "link"));
    EXPECT_FALSE(fs::is_symlink(file));
    EXPECT_EQ(disk.read("a.omb"), "new");
}

TEST_F(FileReplacement, RefusesHardLinkedAndReadOnlyFilesUnlessAsked) {
    fs::create_hard_link(file, disk.getPath() / "other");
    expectRefused("hard links");
    replace("a.omb", {.allowsHardLinks = true});
    EXPECT_EQ(disk.read("a.omb") + disk.read("other"), "new" + ugly);
    EXPECT_EQ(disk.getStatus("other").st_nlink, 1U);

    disk.write("a.omb", ugly);
    fs::permissions(file, fs::perms(0444));
    expectRefused("read-only");
    replace("a.omb", {.allowsReadOnly = true});
    EXPECT_EQ(disk.read("a.omb"), "new");
    EXPECT_EQ(disk.getStatus("a.omb").st_mode & 07777U, 0444U);
    EXPECT_EQ(disk.countFiles(), 2U);
    EXPECT_EQ(disk.shell("ln a.omb hard; format -i other; chmod u-w other; format -i other 2>> errors;"
                         "format -i --force-read-only other"),
              0);
}

/// An edit that neither size nor time of the file gives away.
TEST_F(FileReplacement, KeepsAnEditMadeMeanwhile) {
    const std::string edited = "if b\nx\nend\n";
    const auto time = fs::last_write_time(file);
    disk.write("a.omb", edited);
    fs::last_write_time(file, time);
    EXPECT_THROW(replace("a.omb"), FileError);
    EXPECT_EQ(disk.read("a.omb"), edited);
    EXPECT_EQ(disk.countFiles(), 1U);
}

TEST_F(FileReplacement, SaysWhyAFileCannotBeRead) {
    DiskFileSystem files;
    EXPECT_THROW(files.read(disk.getPath() / "none", 100), FileError);
    EXPECT_THROW(files.read(disk.getPath(), 100), FileError);
    EXPECT_EQ(files.read(file, 11), ugly);
    try {
        files.read(file, 10);
        FAIL();
    } catch (const FileError& error) {
        EXPECT_EQ(error.kind, FileError::Kind::TooLarge);
    }
}

TEST_F(FileReplacement, LeavesUnchangedFilesAlone) {
    EXPECT_EQ(disk.shell("format -i a.omb"), 0);
    EXPECT_EQ(disk.read("a.omb"), "if a\n    x\nend\n");
    const auto before = disk.getStatus("a.omb");
    EXPECT_EQ(disk.shell("format -i a.omb && chmod a-w a.omb && format -i a.omb && chmod 644 a.omb"), 0);
    const auto after = disk.getStatus("a.omb");
    EXPECT_EQ(after.st_ino, before.st_ino);
    EXPECT_EQ(after.st_mtim.tv_sec, before.st_mtim.tv_sec);
    EXPECT_EQ(after.st_mtim.tv_nsec, before.st_mtim.tv_nsec);
}

TEST_F(FileReplacement, KeepsTheOldFileWhereNothingCanBeWritten) {
    const auto expectFailure = [&](const std::string& script, const char* words) {
        EXPECT_EQ(disk.shell(script), 6) << script;
        EXPECT_NE(disk.read("errors").find(words), std::string::npos) << disk.read("errors");
    };
    disk.write("long.omb", "if a\n" + std::string(4000, 'x') + "\nend\n");
    expectFailure("ulimit -f 1; format -i long.omb 2> errors", "File too large");
    EXPECT_EQ(disk.read("long.omb").find("if a\nx"), 0U);
    EXPECT_EQ(disk.countFiles(), 3U);

    const std::string asNobody = "chmod 777 .; touch errors; chmod 666 errors; mkdir ro; cp -p a.omb ro; "
                                 "chmod 666 ro/a.omb; chmod 555 ro; ";
    if (disk.shell(asNobody + "setpriv --reuid 65534 --clear-groups \"$program\" --version > errors 2>&1") ==
        0) {
        expectFailure("setpriv --reuid 65534 --clear-groups \"$program\" -i ro/a.omb 2> errors",
                      "Permission denied");
    } else if (::geteuid() != 0) {
        expectFailure("format -i ro/a.omb 2> errors", "Permission denied");
    }
    EXPECT_EQ(disk.shell("test \"$(ls -A ro)\" = a.omb && cmp a.omb ro/a.omb && chmod 755 ro"), 0);
}

TEST_F(FileReplacement, KeepsTheOldFileOnAFullDisk) {
    const std::string unmount = "umount full";
    if (disk.shell("mkdir full && mount -t tmpfs -o size=64k tmpfs full 2> errors") != 0) {
        GTEST_SKIP() << "may not mount: " << disk.read("errors");
    }
    EXPECT_EQ(
        disk.shell(
            "cp a.omb full; head -c 100000 /dev/zero > full/rest 2> errors; format -i full/a.omb 2> errors"),
        6);
    EXPECT_NE(disk.read("errors").find("No space left"), std::string::npos) << disk.read("errors");
    EXPECT_EQ(disk.read("full/a.omb"), ugly);
    EXPECT_EQ(disk.shell("ls -A full > names; umount full"), 0);
    EXPECT_EQ(disk.read("names"), "a.omb\nrest\n");
}

TEST_F(FileReplacement, ProgramReportsWhatItCannotWriteAndRead) {
    EXPECT_EQ(disk.shell("format a.omb > /dev/full 2> messages"), 6);
    EXPECT_EQ(disk.read("messages"),
              "ombrel-format: error: can't write standard output: No space left on device\n");
    EXPECT_EQ(disk.shell("format --help > /dev/full 2> messages"), 6);
    EXPECT_EQ(disk.shell("format < . 2> messages"), 2);
    EXPECT_EQ(disk.shell("format --help > messages"), 0);
    EXPECT_EQ(disk.shell("format --tab-size 0 2> messages"), 2);
}

TEST_F(FileReplacement, DumpPrintsTokensAsJson) {
    const std::string program = "'" OMBREL_DUMP_PROGRAM "' ";
    ASSERT_EQ(disk.shell("printf 'x\\n' | " + program + "tokens > out 2>&1"), 0);
    EXPECT_EQ(disk.read("out"), R"([)"
                                "\n"
                                R"({"type":27,"name":"NameToken27","lexeme":"x","line":1,"column":1},)"
                                "\n"
                                R"({"type":75,"name":"LineEnding75","lexeme":"\n","line":1,"column":2},)"
                                "\n"
                                R"({"type":0,"name":"EndOfInput","lexeme":"","line":2,"column":1})"
                                "\n"
                                R"(])"
                                "\n");
    EXPECT_EQ(disk.shell(program + "tokes > out 2>&1"), 2);
    EXPECT_NE(disk.read("out").find("did you mean tokens?"), std::string::npos);
}

} // namespace
