#include "BenchText.h"

#include <ca/Analyzer.h>
#include <ca/formatting/LegacyFormatter.h>
#include <ca/lexer/lex.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <string_view>

namespace {

namespace fs = std::filesystem;

/// The bytes as characters: what matters here is how many there are, not what they mean.
std::u16string readWidened(const fs::path& path) {
    std::ifstream file(path, std::ios::binary);
    const std::string bytes{std::istreambuf_iterator<char>(file), {}};
    std::u16string text;
    std::transform(bytes.begin(), bytes.end(), std::back_inserter(text),
                   [](char byte) { return static_cast<char16_t>(static_cast<unsigned char>(byte)); });
    return text;
}

/// Whether other programs can follow the text: every block is closed. After a file whose functions have no
/// `end` each level would be deeper than the one before, and the result would be mostly whitespace.
bool isClosed(const std::u16string& text) {
    using namespace ca::formatting::legacy;
    LegacyFormatter formatter({1, UINT32_MAX, 1, 4, 4, FunctionStyle::All, BlankLineStyle::Trim});
    formatter.indentCode(ca::lexer::lex(text));
    return formatter.nestingStack.empty();
}

/// Whether other programs can be before the text and after it: it is a script, functions included.
bool isScript(const std::u16string& text) {
    try {
        ca::createSingleFileAnalyzer()->parseSourceCode(u"x = 1;\n" + text + u'\n' + text);
        return true;
    } catch (const ca::SyntaxErrorException&) {
        return false;
    }
}

std::u16string readExamples(bool (*isWanted)(const std::u16string& text)) {
    std::vector<fs::path> paths;
    for (const auto& entry : fs::directory_iterator(fs::path(OMBREL_SOURCE_DIR) / "examples")) {
        if (entry.path().extension() == ".omb") {
            paths.push_back(entry.path());
        }
    }
    std::sort(paths.begin(), paths.end());
    std::u16string all;
    for (const fs::path& path : paths) {
        if (const std::u16string text = readWidened(path); isWanted(text)) {
            all += text + u'\n';
        }
    }
    if (all.empty()) {
        throw std::runtime_error("no example programs to measure on");
    }
    return all;
}

} // namespace

std::u16string repeat(std::u16string_view piece, std::size_t count) {
    std::u16string text;
    text.reserve(piece.size() * count);
    for (; count > 0; --count) {
        text += piece;
    }
    return text;
}

std::u16string makeOrdinaryText(std::size_t size) {
    static const std::u16string examples = readExamples(isClosed);
    std::u16string text = repeat(examples, size / examples.size() + 1);
    text.resize(size);
    return text;
}

std::u16string makeScriptText(std::size_t size) {
    static const std::u16string examples = readExamples(isScript);
    return u"x = 1;\n" + repeat(examples, size / examples.size() + 1);
}

const std::vector<NastyFamily>& getNastyFamilies() {
    static const std::vector<NastyFamily> families = {
        {"one_line",
         [](std::size_t scale) { return u"x = " + repeat(u"alpha + 1.5*beta' - ", scale * 500'000); }},
        {"blank_lines", [](std::size_t scale) { return repeat(u"\n", scale * 1'000'000); }},
        {"open_brackets", [](std::size_t scale) { return repeat(u"[", scale * 1'000'000); }},
        {"one_token_lines", [](std::size_t scale) { return repeat(u"a\n", scale * 1'000'000); }},
        {"comments",
         [](std::size_t scale) { return repeat(u"% what the next line is for\n", scale * 350'000); }},
        {"dense", [](std::size_t scale) { return repeat(u"x=1+2*3;", scale * 125'000); }},
    };
    return families;
}
