#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <vector>

// What the documents show is what the tools print. A comment before a fenced block says what the block
// is:
//
//     <!-- file: sum.omb -->        the block is the content of a file, for the commands after it
//     <!-- run: ombrel-format sum.omb -->
//                                   the block is what this shell command prints, in a folder with those files
//
// With OMBREL_UPDATE_GOLDEN set the blocks are rewritten instead.

namespace {

namespace fs = std::filesystem;

/// What a command of the shell prints on both its streams, with the project's programs within reach.
std::string run(const TemporaryFolder& folder, const std::string& command) {
    const std::string programs = fs::path(OMBREL_FORMAT_PROGRAM).parent_path().string();
    folder.shell("unset -f format; PATH='" + programs + "':$PATH; { " + command + "; } > .output 2>&1");
    return folder.read(".output");
}

struct Block {
    std::string task; ///< "file" or "run"
    std::string argument;
    std::size_t begin; ///< of the content in the document
    std::size_t size;
};

/// Throws if a comment has no block after it.
std::vector<Block> findBlocks(const std::string& document) {
    std::vector<Block> blocks;
    for (const std::string task : {"file", "run"}) {
        const std::string opening = "<!-- " + task + ": ";
        for (std::size_t at = 0; (at = document.find(opening, at)) != std::string::npos;) {
            at += opening.size();
            const std::size_t end = document.find(" -->\n```", at);
            const std::size_t begin = document.find('\n', end + 6) + 1;
            const std::size_t close = document.find("```\n", begin);
            if (end == std::string::npos || close == std::string::npos ||
                document.substr(at, end - at).find('\n') != std::string::npos) {
                throw std::runtime_error("no fenced block after: " + document.substr(at, 60));
            }
            blocks.push_back({task, document.substr(at, end - at), begin, close - begin});
        }
    }
    std::sort(blocks.begin(), blocks.end(), [](const Block& a, const Block& b) { return a.begin < b.begin; });
    return blocks;
}

class Docs : public testing::TestWithParam<fs::path> {};

TEST_P(Docs, ShowWhatTheToolsPrint) {
    const std::string document = readFile(GetParam());
    const TemporaryFolder folder;
    std::string updated;
    std::size_t copied = 0;
    for (const Block& block : findBlocks(document)) {
        const std::string shown = document.substr(block.begin, block.size);
        if (block.task == "file") {
            folder.write(block.argument, shown);
            continue;
        }
        const std::string printed = run(folder, block.argument);
        EXPECT_EQ(shown, printed) << GetParam() << ": " << block.argument;
        updated += document.substr(copied, block.begin - copied) + printed;
        copied = block.begin + block.size;
    }
    if (std::getenv("OMBREL_UPDATE_GOLDEN") != nullptr) {
        std::ofstream(GetParam(), std::ios::binary) << updated + document.substr(copied);
    }
}

std::vector<fs::path> listDocuments() {
    std::vector<fs::path> paths = {fs::path(OMBREL_SOURCE_DIR) / "README.md"};
    for (const auto& entry : fs::directory_iterator(fs::path(OMBREL_SOURCE_DIR) / "docs")) {
        if (entry.path().extension() == ".md") {
            paths.push_back(entry.path());
        }
    }
    std::sort(paths.begin(), paths.end());
    return paths;
}

std::string getDocumentName(const testing::TestParamInfo<fs::path>& info) {
    return info.param.stem().string();
}

INSTANTIATE_TEST_SUITE_P(Golden, Docs, testing::ValuesIn(listDocuments()), getDocumentName);

} // namespace
