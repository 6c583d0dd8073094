#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <vector>

// What the documents show is what the tools print. A comment in front of a fenced block says what the block
// is:
//
//     <!-- file: sum.omb -->        the block is the content of a file, for the commands behind it
//     <!-- run: ombrel-format sum.omb -->
//                                   the block is what this shell command prints, in a folder with those files
//
// With OMBREL_UPDATE_GOLDEN set the blocks are rewritten instead.

namespace {

namespace fs = std::filesystem;

std::string readFile(const fs::path& path) {
    std::ostringstream text;
    text << std::ifstream(path, std::ios::binary).rdbuf();
    return text.str();
}

void writeFile(const fs::path& path, const std::string& text) {
    std::ofstream(path, std::ios::binary) << text;
}

/// A folder for the files of one document, gone at the end.
class WorkFolder {
public:
    WorkFolder() {
        std::string name = (fs::temp_directory_path() / "docsXXXXXX").string();
        path = ::mkdtemp(name.data());
    }
    WorkFolder(const WorkFolder&) = delete;
    WorkFolder& operator=(const WorkFolder&) = delete;
    ~WorkFolder() { fs::remove_all(path); }

    std::string run(const std::string& command) const {
        const fs::path output = path / ".output";
        const std::string programs = fs::path(OMBREL_FORMAT_PROGRAM).parent_path().string();
        const std::string line = "cd '" + path.string() + "' && PATH='" + programs + "':$PATH && { " +
                                 command + "; } >'" + output.string() + "' 2>&1";
        std::ignore = std::system(line.c_str());
        return readFile(output);
    }

    fs::path path;
};

struct Block {
    std::string task; ///< "file" or "run"
    std::string argument;
    std::size_t begin; ///< of the content in the document
    std::size_t size;
};

/// Throws if a comment has no block behind it.
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
                throw std::runtime_error("no fenced block behind: " + document.substr(at, 60));
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
    const WorkFolder folder;
    std::string updated;
    std::size_t copied = 0;
    for (const Block& block : findBlocks(document)) {
        const std::string shown = document.substr(block.begin, block.size);
        if (block.task == "file") {
            fs::create_directories((folder.path / block.argument).parent_path());
            writeFile(folder.path / block.argument, shown);
            continue;
        }
        const std::string printed = folder.run(block.argument);
        EXPECT_EQ(shown, printed) << GetParam() << ": " << block.argument;
        updated += document.substr(copied, block.begin - copied) + printed;
        copied = block.begin + block.size;
    }
    if (std::getenv("OMBREL_UPDATE_GOLDEN") != nullptr) {
        writeFile(GetParam(), updated + document.substr(copied));
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
