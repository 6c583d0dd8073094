#pragma once

#include <filesystem>
#include <string>
#include <vector>

struct ExampleFile {
    std::filesystem::path path;
    std::u16string text; ///< without its byte-order mark
};

/// All programs of the folder examples, which has at least a dozen.
std::vector<ExampleFile> readExamples();
