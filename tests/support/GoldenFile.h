#pragma once

#include <filesystem>
#include <map>
#include <string>
#include <vector>

// Golden files hold formatting cases as text that anybody who knows Ombrel can review:
//
//     { formatter: line, indentSize: 4 }
//     >>> The body is one level deeper. (lines 2-3)
//     if a
//     x
//     end
//     <<< { indentSize: 2 }
//     if a
//       x
//     end
//
// The first line has the options of the whole file. A case has a sentence, perhaps a range of lines, and
// perhaps
// "(unstable: why)" if a second run changes the result again. Its input is followed by one or more wanted
// texts, each with the options it changes; a case without one has to stay as it is. Blanks at line ends, tabs
// and CRs are visible: · for a space, → for a tab, ␍ for a CR. A last line that ends in ␄ has no line end.

using GoldenOptions = std::map<std::string, std::string>;

struct GoldenResult {
    std::size_t line; ///< of its `<<<`, or of the case
    GoldenOptions ownOptions;
    GoldenOptions options; ///< the file's with its own, and `lines` if the case has a range
    std::u16string text;
};

struct GoldenCase {
    std::filesystem::path path;
    std::size_t line; ///< of its `>>>`
    std::string sentence;
    bool isUnstable;
    std::u16string input;
    std::vector<GoldenResult> results; ///< never empty
};

struct GoldenFile {
    std::filesystem::path path;
    std::string head;
    std::vector<GoldenCase> cases;
};

/// Throws std::runtime_error with file and line if the file is not in the form above.
GoldenFile readGoldenFile(const std::filesystem::path& path);

/// All golden files of a folder, in the order of their names.
std::vector<GoldenFile> readGoldenFolder(const std::filesystem::path& folder);

void writeGoldenFile(const GoldenFile& file);

/// The text in the form of a golden file, with visible whitespace and in UTF-8.
std::string showGoldenText(const std::u16string& text);
