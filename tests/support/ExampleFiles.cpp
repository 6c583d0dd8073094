#include "support/ExampleFiles.h"

#include "text/TextEncoding.h"

#include <fstream>
#include <iterator>
#include <stdexcept>

std::vector<ExampleFile> readExamples() {
    std::vector<ExampleFile> examples;
    for (const auto& entry :
         std::filesystem::directory_iterator(std::filesystem::path(OMBREL_SOURCE_DIR) / "examples")) {
        if (entry.path().extension() == ".omb") {
            std::ifstream file(entry.path(), std::ios::binary);
            const std::string bytes{std::istreambuf_iterator<char>(file), {}};
            examples.push_back({entry.path(), ombrel::decode(bytes).value().text});
        }
    }
    return examples.size() >= 12 ? examples : throw std::runtime_error("examples are missing");
}
