#include "files/Shard.h"

#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <map>
#include <string>
#include <vector>

namespace {

using namespace ombrel;

/// Runs on other machines, of other versions too, have to divide the files in the same way.
TEST(Shard, DependsOnTheNameOnlyAndFillsAllAlike) {
    EXPECT_EQ(getShardNumber("", 1000), 459U);
    EXPECT_EQ(getShardNumber("src/filter/median.omb", 1000), 528U);
    EXPECT_EQ(getShardNumber("src/\xC3\xA4.omb", 1000), 804U);
    for (const std::uint32_t count : {2U, 3U, 4U, 16U}) {
        std::map<std::uint32_t, int> sizes;
        for (int i = 0; i < 10000; ++i) {
            ++sizes[getShardNumber("d" + std::to_string(i / 7) + "/f" + std::to_string(i % 7) + ".omb",
                                   count)];
        }
        for (std::uint32_t number = 1; number <= count; ++number) {
            EXPECT_NEAR(sizes[number] * static_cast<int>(count), 10000, 1500) << number << " of " << count;
        }
    }
}

/// However files are found, the shards together take what one run takes, each file in the same shard.
TEST(Shard, TakesEachFileOnceWhateverTheOrderAndThePlace) {
    const TemporaryFolder disk;
    ASSERT_EQ(disk.shell(R"(
        mkdir -p tree/a/b tree/c/nested && cd tree && git init -q . && git -C c/nested init -q .
        for i in $(seq 60); do
            for folder in . a a/b c c/nested; do printf 'if a\nx\nend\n' > $folder/$i.omb; done
        done
        ln -s ../a/7.omb c/link.omb; ln -s a/b away; printf 'a/b/1*.omb\n' > .ombrel-format-ignore
        cd .. && cp -r tree elsewhere)"),
              0);
    // names FOLDER PATH...: what is taken of the paths in a folder, by the file that it is, as seen from the
    // top.
    ASSERT_EQ(disk.shell(R"(
        top=$PWD
        names() { (cd $1; shift; format --list-files "$@" | sed -n 's/: taken: .*//p' | xargs -r realpath |
            sed -E "s|^$top/(tree\|elsewhere)/||" | sort); }
        for count in 1 2 3 7; do
            names tree . > whole; rm -f shard-*
            for number in $(seq $count); do
                names tree --shard $number/$count . > shard-$number
                names tree --shard $number/$count c/nested c/link.omb a/b away/3.omb . > again
                names tree/a --shard $number/$count . .. ../c > below
                names elsewhere --shard $number/$count $top/elsewhere > moved
                for other in again below moved; do cmp shard-$number $other || exit 1; done
            done
            [ $(wc -l < whole) = 289 ] && sort shard-* | cmp - whole || exit 2
        done)"),
              0);
}

/// A shard without files is fine; what can't be read is reported by one shard.
TEST(Shard, ReportsEachProblemOnce) {
    const TemporaryFolder disk;
    EXPECT_EQ(disk.shell(R"(
        touch a.omb
        for k in 1 2 3 4 5; do format -q --check --shard $k/5 a.omb none.omb 2>> errors; echo $? >> statuses; done
        echo $(sort statuses | uniq -c) | grep -qx '4 0 1 2' && grep -c . errors | grep -qx 1)"),
              0)
        << disk.read("statuses") << disk.read("errors");
}

/// The merged reports of shards are the report of one run.
TEST(Shard, ReportsCanBeMerged) {
    const TemporaryFolder disk;
    ASSERT_EQ(disk.shell(R"(
        mkdir -p s/a s/a-b
        for i in $(seq 20); do printf 'if a\nx\nend\n' > s/a/$i.omb; : > s/a-b/$i.omb; done
        printf '\377' > s/a/bad.omb; printf 'x = (1;\n' > s/a.omb; printf '%% ombrel-format on\n' > s/odd.omb
        for engine in line tree; do
            check="format -q --engine $engine --set formatting.indentationEnabled=true --check s"
            $check --reporter json:one --reporter sarif:one.sarif --reporter github:one.github
            expected=$?
            for k in 1 2 3; do $check --shard $k/3 --reporter json:part-$k; done
            format -q --merge-reports part-3 part-1 part-2 part-1 --reporter json:all --reporter sarif:all.sarif --reporter github:all.github
            [ $? = $expected ] && cmp one all && cmp one.sarif all.sarif && cmp one.github all.github || exit 1
            format --merge-reports one | grep -c . | grep -qx 20 || exit 2
        done)"),
              0)
        << disk.read("one") << disk.read("all");
}

} // namespace
