#include "cli/OrderedWork.h"
#include "cli/Progress.h"
#include "cli/Summary.h"

#include "support/ProgramRun.h"
#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <sstream>
#include <stdexcept>
#include <string>
#include <thread>

namespace {

using namespace ombrel;
using namespace std::chrono_literals;

TEST(OrderedWork, HandsResultsOutInOrderAndLetsOnlyAFewWait) {
    for (const std::size_t threads : {1U, 2U, 7U}) {
        std::atomic<std::size_t> begun = 0;
        OrderedWork<std::size_t> work(300, threads, [&](std::size_t i) {
            ++begun;
            std::this_thread::sleep_for(i % 10 == 0 ? 2ms : 0ms);
            return i;
        });
        for (std::size_t expected = 0; expected < 300; ++expected) {
            if (expected == 100) {
                std::this_thread::sleep_for(20ms);
            }
            EXPECT_LE(begun, expected + 8 * threads);
            ASSERT_EQ(work.getNext([] {}), expected);
        }
        EXPECT_EQ(work.getNext([] {}), std::nullopt);
    }
}

TEST(OrderedWork, PassesErrorsOnCallsBackWhileItWaitsAndStopsEarly) {
    std::atomic<int> begun = 0;
    int waits = 0;
    {
        OrderedWork<int> work(1000, 2, [&](std::size_t i) -> int {
            ++begun;
            std::this_thread::sleep_for(i == 0 ? 250ms : 1ms);
            return i == 1 ? throw std::runtime_error("no") : 7;
        });
        EXPECT_EQ(work.getNext([&] { ++waits; }), 7);
        EXPECT_THROW(work.getNext([] {}), std::runtime_error);
    }
    EXPECT_GE(waits, 1);
    EXPECT_LT(begun, 50);
}

TEST(Progress, ShowsALineAfterASecondAndErasesIt) {
    std::chrono::steady_clock::time_point now;
    std::ostringstream stream;
    {
        Progress progress(&stream, 2140, [&] { return now; });
        now += 999ms;
        progress.show(1);
        progress.erase();
        EXPECT_EQ(stream.str(), "");
        now += 1ms;
        progress.show(1234);
        now += 99ms;
        progress.show(1235);
        EXPECT_EQ(stream.str(), "\r\033[K1,234 of 2,140 files");
    }
    EXPECT_EQ(stream.str(), "\r\033[K1,234 of 2,140 files\r\033[K");

    stream.str("");
    Progress progress(&stream, 2, [&] { return now; });
    now += 1s;
    progress.show(1);
    progress.erase();
    progress.show(2);
    EXPECT_EQ(stream.str(), "\r\033[K1 of 2 files\r\033[K\r\033[K2 of 2 files");
}

TEST(Summary, GroupsDigits) {
    EXPECT_EQ(groupDigits(999) + ' ' + groupDigits(1234567), "999 1,234,567");
}

class ManyFiles : public testing::Test {
protected:
    TemporaryFolder disk;
};

TEST_F(ManyFiles, ComeOutAlikeWhateverTheNumberOfThreads) {
    for (int i = 0; i < 300; ++i) {
        std::string text = i % 3 == 0 ? "\xFF" : "if a\nx\n";
        text += std::string(i % 7 == 0 ? 20000 : 10, 'y');
        disk.write("in/" + std::to_string(i) + ".omb", text);
    }
    for (const std::string mode : {"--check", "--diff", "--check -v", "--check-syntax", "-i -v"}) {
        const std::string run = "cp -r in copy; format copy " + mode + " -j";
        EXPECT_EQ(disk.shell(run + "1 > one 2> one-err; mv copy copy-1; " + run + "5 > five 2> five-err"),
                  mode == "--check-syntax" ? 4 : 3)
            << mode;
        for (const char* command : {"cmp one five", "cmp one-err five-err", "diff -r copy copy-1",
                                    "grep -q copy/0.omb one-err", "rm -r copy copy-1"}) {
            EXPECT_EQ(disk.shell(command), 0) << mode << ": " << command;
        }
    }
}

/// A disk on which the work on one file runs into a fault of the program.
class FaultyFiles : public DiskFileSystem {
public:
    std::string readRegular(const std::string& path, ReadLimit limit) override {
        if (path.ends_with("b.omb")) {
            isOutOfMemory ? throw std::bad_alloc() : throw std::logic_error("lost");
        }
        return DiskFileSystem::readRegular(path, limit);
    }

    bool isOutOfMemory = false;
};

TEST_F(ManyFiles, ContinueAfterAFaultAndWhereMemoryRunsOut) {
    struct Row {
        const char* threads;
        bool isOutOfMemory;
        int status;
        std::string message;
    };
    for (const Row& row : {Row{"-j1", false, 5, "formatting failed: lost [internal-error]"},
                           Row{"-j3", false, 5, "formatting failed: lost [internal-error]"},
                           Row{"-j3", true, 3, "not enough memory for this text [out-of-memory]"}}) {
        FaultyFiles files;
        files.isOutOfMemory = row.isOutOfMemory;
        for (const char* name : {"a.omb", "b.omb", "c.omb"}) {
            disk.write(name, "if a\nx\nend\n");
        }
        const auto outcome = runProgram({"-i", row.threads, disk.getPath().string()}, {}, files);
        EXPECT_EQ(outcome.status, row.status);
        const std::string told = (disk.getPath() / "b.omb").string() + ": error: " + row.message +
                                 "\n2 of 3 files formatted, 1 failed\n";
        EXPECT_TRUE(outcome.err.starts_with(told)) << outcome.err;
        EXPECT_EQ(disk.read("a.omb") + disk.read("b.omb") + disk.read("c.omb"),
                  "if a\n    x\nend\nif a\nx\nend\nif a\n    x\nend\n");
    }
}

/// The tool shows its progress on a terminal only, and not if it is to be quiet.
TEST_F(ManyFiles, ShowProgressOnATerminal) {
    if (disk.shell("mkdir in && script -qec true typescript > empty") != 0) {
        GTEST_SKIP() << "can't make a terminal";
    }
    const auto run = [&](const std::string& wait, const std::string& options) {
        return disk.shell("rm -f shown; mkfifo a.omb; (" + wait +
                          "; echo x > a.omb) & printf x > b.omb; script -qec \"'$program' " + options +
                          "--check a.omb b.omb\" typescript > shown; s=$?; rm a.omb; exit $s");
    };
    EXPECT_EQ(run("for i in $(seq 300); do grep -qs '0 of 2 files' shown && break; sleep 0.1; done", ""), 0);
    EXPECT_NE(disk.read("shown").find("\r\033[K0 of 2 files"), std::string::npos) << disk.read("shown");
    EXPECT_NE(disk.read("shown").find("\r\033[K0 of 2 files would change"), std::string::npos);
    EXPECT_EQ(run("sleep 1.6", "-q "), 0);
    EXPECT_EQ(disk.read("shown"), "");
}

} // namespace
