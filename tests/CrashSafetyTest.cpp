#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include <sys/xattr.h>

namespace {

const std::string ugly = "if a\nx\nend\n";
const std::string tidy = "if a\n    x\nend\n";

/// One system call of a run, as `when` of a tracer counts it.
struct Call {
    std::string name;
    int ordinal;
    std::string line;
};

/// Breaks a replacement at each system call that it makes, from the opening of the file on.
class CrashSafety : public testing::Test {
protected:
    CrashSafety() {
        ::setenv("ASAN_OPTIONS", "detect_leaks=0", 1);        // can't be looked for under a tracer
        ::setenv("TSAN_OPTIONS", "report_thread_leaks=0", 1); // a signal ends the process, not its threads
    }

    void SetUp() override { findCalls(); }

    /// Fills `calls` with what the command does.
    void findCalls() {
        calls.clear();
        if (trace("") > 1) { // --check says 1
            GTEST_SKIP() << "can't trace: " << disk.read("out/log");
        }
        std::map<std::string, int> counts;
        std::istringstream log(disk.read("out/log"));
        bool hasBegun = false;
        for (std::string line; std::getline(log, line);) {
            const std::string name = line.substr(0, line.find('('));
            const int ordinal = ++counts[name];
            hasBegun = hasBegun || line.starts_with("openat(AT_FDCWD, \"in/a.omb\"");
            if (hasBegun && name.find_first_of(" +-") == std::string::npos && name != "exit_group") {
                calls.push_back({name, ordinal, line});
            }
        }
        ASSERT_GT(calls.size(), 15U);
    }

    int trace(const std::string& injection) const {
        disk.write("in/a.omb", ugly);
        disk.write("out/log", "");
        return disk.shell("strace -o out/log " + injection + " \"$program\" " + arguments +
                          " > out/messages 2>&1");
    }

    /// A file that isn't ours would have to be named by the kill.
    std::string listFolder() const {
        disk.shell("ls -A in > out/names");
        return disk.read("out/names");
    }

    TemporaryFolder disk;
    std::string arguments = "-i in/a.omb";
    std::vector<Call> calls;
};

TEST_F(CrashSafety, LeavesTheOldOrTheNewFileWholeWhenKilled) {
    const std::set<std::string> closing = {"openat", "newfstatat", "fstat", "read", "close", "renameat"};
    std::set<std::string> results;
    int leftovers = 0;
    for (const Call& call : calls) {
        EXPECT_EQ(trace("-e inject=" + call.name + ":signal=KILL:when=" + std::to_string(call.ordinal)), 137)
            << call.line;
        const std::string result = disk.read("in/a.omb");
        EXPECT_TRUE(result == ugly || result == tidy) << call.line;
        results.insert(result);
        if (listFolder() != "a.omb\n") {
            EXPECT_TRUE(closing.contains(call.name)) << "only from the last check on: " << call.line;
            ++leftovers;
            EXPECT_EQ(disk.shell("format -i in"), 0);
            EXPECT_EQ(listFolder(), "a.omb\n") << "the next run removes it";
        }
    }
    EXPECT_EQ(results.size(), 2U);
    EXPECT_LE(leftovers, 6);
}

/// Nobody else may open the new file before it has the old one's mode, and its name has to outlive a power
/// cut.
TEST_F(CrashSafety, KeepsTheNewFilePrivateAndSyncsItsFolder) {
    const auto find = [&](const std::string& text) {
        return std::find_if(calls.begin(), calls.end(),
                            [&](const Call& call) { return call.line.find(text) != std::string::npos; });
    };
    const auto opened = find("O_TMPFILE");
    ASSERT_NE(opened, calls.end());
    EXPECT_NE(opened->line.find(", 0600)"), std::string::npos) << opened->line;
    const auto renamed = find("renameat(");
    EXPECT_TRUE(std::any_of(renamed, calls.end(), [](const Call& call) { return call.name == "fsync"; }));
}

TEST_F(CrashSafety, AKillLeavesAReportWholeOrMakesNone) {
    arguments = "--check --reporter json:in/new.json in/a.omb";
    findCalls();
    const std::string report = disk.read("in/new.json");
    std::set<std::string> results;
    for (const Call& call : calls) {
        disk.shell("rm -f in/new.json");
        trace("-e inject=" + call.name + ":signal=KILL:when=" + std::to_string(call.ordinal));
        results.insert(disk.read("in/new.json"));
        EXPECT_TRUE(listFolder() == "a.omb\n" || disk.read("in/new.json") == report) << call.line;
    }
    EXPECT_EQ(results, (std::set<std::string>{"", report}));
}

TEST_F(CrashSafety, LeavesOnlyTheOldFileWhenACallFails) {
#ifdef __SANITIZE_ADDRESS__
    GTEST_SKIP() << "the sanitizers probe memory with calls of their own, and don't expect them to fail";
#endif
    std::set<std::string> needed = {"write", "fsync", "fchmod", "linkat", "renameat"};
    if (disk.shell("chown 1 in/a.omb 2> out/errors") == 0) {
        needed.insert("fchown");
    }
    const auto setAttribute = [&] {
        return ::setxattr((disk.getPath() / "in/a.omb").c_str(), "user.ombrel", "x", 1, 0) == 0;
    };
    if (setAttribute()) {
        needed.insert({"flistxattr", "fgetxattr", "fsetxattr"});
        EXPECT_EQ(trace("-e inject=fsetxattr:error=EOPNOTSUPP"), 6);
        EXPECT_EQ(trace("-e inject=flistxattr:error=EOPNOTSUPP"), 0) << "there are none then";
        setAttribute();
        EXPECT_EQ(trace("-e inject=fgetxattr:error=ERANGE:when=1"), 0) << "it may have grown meanwhile";
        setAttribute();
    }
    findCalls();
    for (const Call& call : calls) {
        if (call.name == "read" || call.name == "write") {
            const std::string when = ":error=EINTR:when=" + std::to_string(call.ordinal);
            EXPECT_EQ(trace("-e inject=" + call.name + when), 0) << "isn't tried again: " << call.line;
        }
    }
    const std::set<std::string> fileCalls = {"access", "close",      "faccessat",  "faccessat2", "fchmod",
                                             "fchown", "fgetxattr",  "flistxattr", "flock",      "fsetxattr",
                                             "fsync",  "getdents64", "getcwd",     "linkat",     "newfstatat",
                                             "openat", "read",       "readlink",   "renameat",   "write"};
    for (const char* error : {"ENOSPC", "EIO"}) {
        std::set<std::string> failed;
        for (const Call& call : calls) {
            if (!fileCalls.contains(call.name)) { // memory and threads
                continue;
            }
            const int status =
                trace("-e inject=" + call.name + ":error=" + error + ":when=" + std::to_string(call.ordinal));
            EXPECT_EQ(disk.read("in/a.omb"), status == 0 ? tidy : ugly) << status << ' ' << call.line;
            EXPECT_TRUE(status == 0 || status == 6 || (status == 2 && failed.empty()))
                << status << ' ' << call.line;
            EXPECT_EQ(listFolder(), "a.omb\n") << call.line;
            if (status == 6) {
                failed.insert(call.name);
                EXPECT_NE(disk.read("out/messages").find("in/a.omb: error: "), std::string::npos)
                    << call.line;
            }
        }
        for (const std::string& name : needed) {
            EXPECT_TRUE(failed.contains(name)) << name << " failed unnoticed";
        }
    }
}

/// Where the file system can't make a file without a name, one with a name serves, and where it can't rename
/// without replacing, a link does.
TEST_F(CrashSafety, WorksWithoutUnnamedFiles) {
    const auto refuseUnnamed = [&] {
        findCalls();
        const auto open = std::find_if(calls.begin(), calls.end(), [](const Call& call) {
            return call.line.find("O_TMPFILE") != std::string::npos;
        });
        return open == calls.end()
                   ? ""
                   : "-e inject=openat:error=EOPNOTSUPP:when=" + std::to_string(open->ordinal);
    };
    const std::string inject = refuseUnnamed();
    EXPECT_EQ(trace(inject), 0);
    EXPECT_EQ(disk.read("in/a.omb"), tidy);
    EXPECT_EQ(trace(inject + " -e inject=fsync:error=ENOSPC"), 6);
    EXPECT_EQ(disk.read("in/a.omb"), ugly);
    EXPECT_EQ(listFolder(), "a.omb\n");
    arguments = "--check --reporter json:in/new.json in/a.omb";
    for (const char* more : {"", " -e inject=renameat2:error=EINVAL"}) {
        const std::string both = refuseUnnamed() + more;
        disk.shell("rm in/new.json");
        EXPECT_EQ(trace(both), 1);
        EXPECT_EQ(listFolder(), "a.omb\nnew.json\n");
        disk.shell("rm in/new.json");
    }
}

/// Another folder that gets the old name has another file.
TEST_F(CrashSafety, StaysInAFolderThatIsRenamed) {
    disk.write("in/a.omb", ugly);
    EXPECT_EQ(disk.shell("strace -o out/log -e inject=linkat:delay_exit=1000000 \"$program\" -i in/a.omb & "
                         "for i in $(seq 200); do ls -A in | grep -q tmp && break; sleep 0.02; done; "
                         "mv in renamed; mkdir in; cp renamed/a.omb in; wait $!; s=$?; ls -A renamed > "
                         "out/renamed; exit $s"),
              0);
    EXPECT_EQ(disk.read("out/renamed"), "a.omb\n");
    EXPECT_EQ(disk.read("renamed/a.omb"), tidy);
    EXPECT_EQ(disk.read("in/a.omb") + listFolder(), ugly + "a.omb\n");
}

/// Makes a replacement so slow that signals come in its middle.
TEST_F(CrashSafety, FinishesTheRunningReplacementOnASignal) {
    // Whatever the test runs under, such as nohup, doesn't decide which signals end the program.
    const std::string run =
        "env --default-signal=INT,TERM,HUP strace -o out/log -e inject=fsync:delay_enter=2000000 "
        "\"$program\" -i -j1 in & tracer=$!; "
        "until grep -q flistxattr out/log; do sleep 0.05; done; p=$(cat "
        "/proc/$tracer/task/$tracer/children); ";
    const auto call = [&](const std::string& signals) {
        disk.write("in/a.omb", ugly);
        disk.write("in/b.omb", ugly);
        disk.write("out/log", "");
        return disk.shell(run + signals + "wait $tracer");
    };
    EXPECT_EQ(call("kill -INT $p; "), 130);
    EXPECT_EQ(disk.read("in/a.omb") + disk.read("in/b.omb"), tidy + ugly);
    EXPECT_GT(call("kill -INT $p; kill -TERM $p; "), 128);
    EXPECT_EQ(disk.read("in/a.omb") + disk.read("in/b.omb"), ugly + ugly)
        << "the second signal ends it at once";
    EXPECT_EQ(listFolder(), "a.omb\nb.omb\n");
}

/// Of two that are running at the signal, the one that takes longer. Only reads of the files are slow.
TEST_F(CrashSafety, FinishesAllRunningReplacementsOnASignal) {
    const auto repeat = [](const std::string& text) {
        std::string repeated;
        for (int i = 0; i < 30'000; ++i) {
            repeated += text;
        }
        return repeated;
    };
    disk.write("in/a.omb", ugly);
    disk.write("in/b.omb", repeat(ugly));
    disk.write("out/log", "");
    EXPECT_EQ(
        disk.shell(
            "env --default-signal=INT strace -f -o out/log -P $PWD/in/a.omb -P $PWD/in/b.omb "
            "-e inject=read:delay_enter=300000 \"$program\" -i -j2 in & tracer=$!; "
            "for i in $(seq 200); do [ $(grep -c flistxattr out/log) -lt 2 ] || break; sleep 0.05; done; "
            "kill -INT $(cat /proc/$tracer/task/$tracer/children); wait $tracer"),
        130);
    EXPECT_EQ(disk.read("in/a.omb"), tidy);
    EXPECT_TRUE(disk.read("in/b.omb") == repeat(tidy));
}

/// Reading what never comes, there is nothing to finish.
TEST_F(CrashSafety, EndsAtOnceOnASignalWhenNothingIsReplaced) {
#ifdef __SANITIZE_THREAD__
    GTEST_SKIP() << "the thread sanitizer holds signals back while a call waits for a pipe";
#endif
    for (const auto& [name, status] :
         {std::pair("INT", 130), std::pair("TERM", 143), std::pair("HUP", 129)}) {
        const std::string kill = std::string("kill -") + name;
        EXPECT_EQ(disk.shell(
                      "mkfifo pipe; env --default-signal=INT,TERM,HUP \"$program\" pipe & p=$!; sleep 0.2; " +
                      kill + " $p; wait $p; s=$?; rm pipe; exit $s"),
                  status);
    }
}

} // namespace
