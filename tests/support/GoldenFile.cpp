#include "support/GoldenFile.h"

#include <unicode/unistr.h>

#include <algorithm>
#include <array>
#include <fstream>
#include <regex>
#include <stdexcept>

namespace {

constexpr char16_t noLineEnd = u'␄';

struct Marker {
    char16_t meaning;
    char16_t visible;
};
constexpr std::array<Marker, 3> markers = {{{u' ', u'·'}, {u'\t', u'→'}, {u'\r', u'␍'}}};

char16_t getVisible(char16_t c) {
    const auto* const marker =
        std::find_if(markers.begin(), markers.end(), [c](const Marker& m) { return m.meaning == c; });
    return marker == markers.end() ? c : marker->visible;
}

char16_t getMeaning(char16_t c) {
    const auto* const marker =
        std::find_if(markers.begin(), markers.end(), [c](const Marker& m) { return m.visible == c; });
    return marker == markers.end() ? c : marker->meaning;
}

std::u16string decode(const std::string& text) {
    const icu::UnicodeString wide = icu::UnicodeString::fromUTF8(text);
    return {wide.getBuffer(), static_cast<std::size_t>(wide.length())};
}

std::u16string readText(const std::string& visible) {
    std::u16string text = decode(visible);
    std::transform(text.begin(), text.end(), text.begin(), getMeaning);
    if (text.size() >= 2 && text[text.size() - 2] == noLineEnd) {
        text.resize(text.size() - 2);
    }
    return text;
}

/// Parses "{ key: value, key: value }".
GoldenOptions readOptions(const std::string& text) {
    static const std::regex pair(R"((\w+): *([^,}]*[^,} ]))");
    GoldenOptions options;
    for (std::sregex_iterator match(text.begin(), text.end(), pair), end; match != end; ++match) {
        options[(*match)[1]] = (*match)[2];
    }
    return options;
}

class Reader {
public:
    explicit Reader(const std::filesystem::path& path) : file{path, {}, {}} {}

    GoldenFile run() {
        std::ifstream stream(file.path);
        for (std::string text; std::getline(stream, text);) {
            ++line;
            readLine(text);
        }
        finishCase();
        return std::move(file);
    }

private:
    [[noreturn]] void fail(const std::string& message) const {
        throw std::runtime_error(file.path.string() + ":" + std::to_string(line) + ": " + message);
    }

    void readLine(const std::string& text) {
        if (text.find_first_of("\t\r") != std::string::npos || text.ends_with(' ')) {
            fail("write tabs, CRs and spaces at the line end as \u2192, \u240d and \u00b7");
        }
        if (line == 1) {
            readHead(text);
        } else if (text.starts_with(">>> ")) {
            startCase(text);
        } else if (file.cases.empty()) {
            fail("text outside of a case");
        } else if (text.starts_with("<<<")) {
            startResult(text);
        } else {
            visible += text + '\n';
        }
    }

    void readHead(const std::string& text) {
        if (!text.starts_with("{ formatter: ")) {
            fail("the first line has to name the formatter");
        }
        file.head = text;
        fileOptions = readOptions(text);
    }

    void startCase(const std::string& text) {
        finishCase();
        caseOptions = fileOptions;
        static const std::regex range(R"(\(lines (\d+-\d+)\))");
        std::smatch match;
        if (std::regex_search(text, match, range)) {
            caseOptions["lines"] = match[1];
        }
        const bool isUnstable = text.find("(unstable: ") != std::string::npos;
        file.cases.push_back({file.path, line, text.substr(4), isUnstable, {}, {}});
    }

    void startResult(const std::string& text) {
        takeText();
        GoldenResult result{line, readOptions(text.substr(3)), caseOptions, {}};
        for (const auto& [key, value] : result.ownOptions) {
            result.options[key] = value;
        }
        file.cases.back().results.push_back(std::move(result));
    }

    /// Gives the lines read since the last marker to the input or result that they belong to.
    void takeText() {
        GoldenCase& golden = file.cases.back();
        (golden.results.empty() ? golden.input : golden.results.back().text) = readText(visible);
        visible.clear();
    }

    void finishCase() {
        if (file.cases.empty()) {
            return;
        }
        takeText();
        GoldenCase& golden = file.cases.back();
        if (golden.results.empty()) {
            golden.results.push_back({golden.line, {}, caseOptions, golden.input});
        }
    }

    GoldenFile file;
    std::size_t line = 0;
    GoldenOptions fileOptions;
    GoldenOptions caseOptions;
    std::string visible;
};

std::string writeOptions(const GoldenOptions& options) {
    std::string text;
    for (const auto& [key, value] : options) {
        text += (text.empty() ? " { " : ", ") + key + ": " + value;
    }
    return text.empty() ? text : text + " }";
}

void writeCase(std::ostream& stream, const GoldenCase& golden) {
    stream << ">>> " << golden.sentence << '\n' << showGoldenText(golden.input);
    const GoldenResult& first = golden.results.front();
    if (golden.results.size() == 1 && first.ownOptions.empty() && first.text == golden.input) {
        return;
    }
    for (const GoldenResult& result : golden.results) {
        stream << "<<<" << writeOptions(result.ownOptions) << '\n' << showGoldenText(result.text);
    }
}

} // namespace

GoldenFile readGoldenFile(const std::filesystem::path& path) {
    return Reader(path).run();
}

std::vector<GoldenFile> readGoldenFolder(const std::filesystem::path& folder) {
    std::vector<std::filesystem::path> paths;
    for (const auto& entry : std::filesystem::directory_iterator(folder)) {
        if (entry.path().extension() == ".txt") {
            paths.push_back(entry.path());
        }
    }
    std::sort(paths.begin(), paths.end());
    std::vector<GoldenFile> files;
    std::transform(paths.begin(), paths.end(), std::back_inserter(files), readGoldenFile);
    return files;
}

void writeGoldenFile(const GoldenFile& file) {
    std::ofstream stream(file.path);
    stream << file.head << '\n';
    for (const GoldenCase& golden : file.cases) {
        writeCase(stream, golden);
    }
}

std::string showGoldenText(const std::u16string& text) {
    std::u16string visible = text;
    bool isAtLineEnd = true;
    for (auto c = visible.rbegin(); c != visible.rend(); ++c) {
        const bool isBlank = *c == u' ' || *c == u'\t';
        if (!isBlank) {
            isAtLineEnd = *c == u'\n' || *c == u'\r';
        }
        if (*c != u' ' || isAtLineEnd) {
            *c = getVisible(*c);
        }
    }
    if (!text.empty() && text.back() != u'\n') {
        visible += {noLineEnd, u'\n'};
    }
    std::string bytes;
    icu::UnicodeString(visible.data(), static_cast<std::int32_t>(visible.size())).toUTF8String(bytes);
    return bytes;
}
