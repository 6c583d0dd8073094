#include "options/EditorConfigText.h"

#include "text/LineSplitter.h"
#include "text/TextEncoding.h"

#include <algorithm>
#include <cctype>
#include <cstddef>

namespace ombrel {

namespace {

constexpr std::string_view spaces = " \t\r\n\f\v";

std::string makeLowerCase(std::string_view text) {
    std::string lower(text);
    std::transform(lower.begin(), lower.end(), lower.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return lower;
}

std::string_view trimEnd(std::string_view text) {
    return text.substr(0, text.find_last_not_of(spaces) + 1);
}

std::string_view trim(std::string_view text) {
    return trimEnd(text.substr(std::min(text.find_first_not_of(spaces), text.size())));
}

/// Without the comment, which starts a line or comes after a space.
std::string_view removeComment(std::string_view line) {
    for (std::size_t i = 0; i < line.size(); ++i) {
        const bool isApart = i == 0 || spaces.find(line[i - 1]) != std::string_view::npos;
        if (isApart && (line[i] == '#' || line[i] == ';')) {
            return line.substr(0, i);
        }
    }
    return line;
}

} // namespace

EditorConfigText readEditorConfigText(std::string_view text) {
    constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";
    text.remove_prefix(text.starts_with(byteOrderMark) ? byteOrderMark.size() : 0);
    EditorConfigText result;
    for (std::uint32_t number = 1; !text.empty(); ++number) {
        const std::string_view whole = takeLine(text);
        const std::string_view line = trim(removeComment(whole));
        const std::size_t equals = line.find_first_of("=:");
        if (line.starts_with('[')) {
            const std::size_t end = line.rfind(']');
            result.sections.emplace_back(line.substr(1, end == std::string_view::npos ? 0 : end - 1));
        } else if (equals != std::string_view::npos) {
            const std::string_view value = trim(line.substr(equals + 1));
            const auto place = static_cast<std::size_t>(value.data() - whole.data());
            result.properties.push_back(
                {result.sections.empty() ? std::string() : result.sections.back(),
                 makeLowerCase(trim(line.substr(0, equals))), std::string(value), number,
                 static_cast<std::uint32_t>(decodeLossy(whole.substr(0, place)).size() + 1)});
        }
    }
    result.isRoot = std::any_of(result.properties.begin(), result.properties.end(),
                                [](const EditorConfigProperty& property) {
                                    return property.section.empty() && property.name == "root" &&
                                           makeLowerCase(property.value) == "true";
                                });
    return result;
}

} // namespace ombrel
