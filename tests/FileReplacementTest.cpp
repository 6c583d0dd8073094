#include "files/FileSystem.h"

#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <utility>

#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

namespace fs = std::filesystem;

namespace {

using ombrel::DiskFileSystem;
using ombrel::FileError;

const std::string ugly = "if a\nx\nend\n";

class FileReplacement : public testing::Test {
protected:
    FileReplacement() { disk.write("a.omb", ugly); }

    void replace(const std::string& name) const {
        DiskFileSystem().replace(file.parent_path() / name, ugly, "new");
    }

    TemporaryFolder disk;
    const fs::path file = disk.getPath() / "a.omb";
};

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

/// The first edit changes neither size nor time of the file.
TEST_F(FileReplacement, KeepsAnEditMadeMeanwhile) {
    const auto time = fs::last_write_time(file);
    for (const std::string edited : {"if b\nx\nend\n", "if a\n", "", "if a\nx\nend\ny"}) {
        disk.write("a.omb", edited);
        fs::last_write_time(file, time);
        EXPECT_THROW(replace("a.omb"), FileError);
        EXPECT_EQ(disk.read("a.omb"), edited);
        EXPECT_EQ(disk.countFiles(), 1U);
    }
}

TEST_F(FileReplacement, KeepsAnotherOwnerAndAllModeBits) {
    for (const auto& [owner, group] : {std::pair(65534, -1), std::pair(-1, 65534), std::pair(65534, 65534)}) {
        disk.write("a.omb", ugly);
        if (::chown(file.c_str(), static_cast<uid_t>(owner), static_cast<gid_t>(group)) != 0) {
            GTEST_SKIP() << "can't give files away";
        }
        fs::permissions(file, fs::perms(07751));
        const auto before = disk.getStatus("a.omb");
        replace("a.omb");
        const auto after = disk.getStatus("a.omb");
        EXPECT_EQ(after.st_mode, before.st_mode);
        EXPECT_EQ(after.st_uid, before.st_uid);
        EXPECT_EQ(after.st_gid, before.st_gid);
        fs::remove(file);
    }
}

TEST_F(FileReplacement, ReadsNoMoreThanTheLimit) {
    DiskFileSystem files;
    EXPECT_EQ(files.read(file, 11), ugly);
    EXPECT_THROW(files.read(file, 10), FileError);
    EXPECT_THROW(files.read("/dev/zero", 10), FileError);
    EXPECT_THROW(files.read(disk.getPath(), 10), FileError);
}

TEST_F(FileReplacement, ReplacesNothingButFiles) {
    ASSERT_EQ(disk.shell("mkfifo pipe"), 0);
    EXPECT_THROW(DiskFileSystem().replace(disk.getPath() / "pipe", "", "new"),
                 FileError); // it reads like that
    EXPECT_THROW(replace("nothing"), FileError);
    EXPECT_EQ(disk.countFiles(), 2U);
}

TEST_F(FileReplacement, KeepsTheOldFileInAFolderOfAnother) {
    const std::string as = ::geteuid() == 0 ? "setpriv --reuid 65534 --clear-groups " : "";
    if (disk.shell("chmod 755 .; mkdir ro; cp a.omb ro; chmod 666 ro/a.omb; chmod 555 ro; " + as +
                   "\"$program\" --version > errors 2>&1") != 0) {
        GTEST_SKIP() << "can't be somebody else: " << disk.read("errors");
    }
    EXPECT_EQ(disk.shell(as + "\"$program\" -i ro/a.omb 2> errors"), 6);
    EXPECT_NE(disk.read("errors").find("Permission denied"), std::string::npos) << disk.read("errors");
    EXPECT_EQ(disk.shell("chmod 755 ro; ls -A ro > names"), 0);
    EXPECT_EQ(disk.read("names"), "a.omb\n");
    EXPECT_EQ(disk.read("ro/a.omb"), ugly);
}

TEST_F(FileReplacement, KeepsTheOldFileOnAFullDisk) {
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

} // namespace
