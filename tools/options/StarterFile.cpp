#include "options/StarterFile.h"

#include "options/OptionValue.h"
#include "options/OptionsFile.h"
#include "options/VersionRange.h"

#include <algorithm>
#include <iterator>

#include <fmt/format.h>
#include <fmt/ranges.h>

namespace ombrel {

namespace {

constexpr std::string_view head =
    R"(// Options of ombrel-format for the files of this folder and those below. All are at their defaults: take the
// slashes away to change one. What holds for a file, and why: ombrel-format --print-config FILE
)";

std::string describeRange(const Option& option) {
    switch (option.type) {
    case TreeOptionType::Boolean:
        return "true or false";
    case TreeOptionType::Number:
        return fmt::format("{} to {}", option.low, option.high);
    case TreeOptionType::Word:
        return joinWords(option.words);
    case TreeOptionType::PerConstruct:
        break;
    }
    return joinWords(option.words) + "; an object sets the constructs one by one";
}

std::string makeLines(const Option& option, std::string_view indentation) {
    const auto value = parseValue(option, option.factory).value();
    return fmt::format("{0}// {1}\n{0}// \"{2}\": {3}, // {4}\n", indentation, option.description, option.key,
                       getJson(value), describeRange(option));
}

std::string makeLines(std::string_view section, std::string_view indentation) {
    std::string lines;
    for (const Option& option : getOptions()) {
        lines += option.section == section ? makeLines(option, indentation) : "";
    }
    return lines;
}

/// The keys that aren't options, with values that a project could have.
std::string makeFileKeyLines() {
    const std::string thisVersion = fmt::format("\"^{}\"", describe(getProgramVersion()));
    const std::string_view examples[][2] = {
        {"$schema", "\"ombrel-format.schema.json\""},
        {"requiredVersion", thisVersion},
        {"root", "false"},
        {"extends", "\"../shared.json\""},
        {"overrides", "[{\"files\": \"gen/**\", \"line\": {\"indentSize\": 2}}]"},
    };
    std::string lines;
    for (const FileKey& key : getFileKeys()) {
        const auto* example = std::find_if(std::begin(examples), std::end(examples),
                                           [&](const auto& row) { return row[0] == key.name; });
        if (example != std::end(examples)) {
            lines += fmt::format("    // {}\n    // \"{}\": {},\n", key.description, key.name, (*example)[1]);
        }
    }
    return lines;
}

} // namespace

std::string makeStarterFile() {
    std::string text = fmt::format("{}{{\n{}{}", head, makeFileKeyLines(), makeLines("", "    "));
    for (const Section& section : getSections()) {
        text += fmt::format("    // {}.\n    \"{}\": {{\n{}    }},\n", section.description, section.name,
                            makeLines(section.name, "        "));
    }
    return text + "}\n";
}

} // namespace ombrel
