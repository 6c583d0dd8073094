#include "lsp/OnTypeFormatting.h"

#include "format/LineEngine.h"
#include "format/Suppression.h"
#include "lsp/Formatting.h"
#include "lsp/ProgramText.h"
#include "text/TextEncoding.h"
#include "text/Whitespace.h"

#include <ca/lexer/lex.h>

#include <algorithm>
#include <array>
#include <optional>
#include <string_view>
#include <utility>
#include <vector>

namespace ombrel::lsp {

namespace {

using ca::formatting::legacy::BlankLineStyle;
using ca::formatting::legacy::FunctionStyle;

constexpr std::array<std::u16string_view, 7> borderWords = {u"end",   u"else",      u"elseif",  u"case",
                                                            u"catch", u"otherwise", u"function"};

/// The options of the tree engine as the line engine can follow them.
std::optional<LineOptions> makeLineOptions(const std::u16string& formattingJson) {
    const Json all = Json::parse(encodeLossy(formattingJson)).value("formatting", Json::object());
    if (!all.value("indentationEnabled", false) || !all.value("indentCaseBlocks", true)) {
        return std::nullopt;
    }
    LineOptions options;
    const auto width = all.value("indentWidth", 4U);
    options.useTabs = all.value("indentCharacter", "Space") == "Tab";
    options.indentSize = std::min(options.useTabs ? width * options.tabSize : width, 64U);
    const std::string style = all.value("functionIndentStyle", "IndentAll");
    options.functionStyle = style == "Classic"        ? FunctionStyle::Classic
                            : style == "IndentNested" ? FunctionStyle::Mixed
                                                      : FunctionStyle::All;
    options.blankLines = all.value("indentBlankLines", false) ? BlankLineStyle::Indent : BlankLineStyle::Trim;
    return options;
}

std::optional<LineOptions> findLineOptions(const Question& question) {
    const auto editorOptions = readFormattingOptions(question.params.value("options", Json::object()));
    const DocumentOptions found = question.workspace.resolve(question.getDocument(), editorOptions);
    if (!found.faults.empty()) {
        return std::nullopt;
    }
    return found.options.engine == Engine::Line ? std::optional(found.options.line)
                                                : makeLineOptions(found.options.formattingJson);
}

/// The edits of one line.
std::vector<Edit> selectLine(const Document& document, std::size_t line, const std::vector<Edit>& edits) {
    std::vector<Edit> selected;
    const std::size_t begin = document.lines.getStart(line);
    const std::size_t end = document.lines.getEnd(document.text, line);
    for (const Edit& edit : edits) {
        if (begin <= edit.offset && edit.offset <= end) {
            selected.push_back(edit);
        }
    }
    return selected;
}

std::u16string addLineEnd(const std::u16string& text) {
    return text + (text.ends_with(u'\r') ? u'\r' : u'\n'); // after a CR, an LF would be part of its line end
}

class TypedText {
public:
    /// The text gets one more line end: the line engine indents blank lines, but not the end of the text.
    TypedText(const Question& question, const LineOptions& options)
        : document(question.getDocument()), program(question.pointer), text(addLineEnd(program.get())),
          options(options), suppression(findSuppression(text)) {}

    /// A line end was typed before this line. The line before it gets its final layout; the new one gets
    /// indentation even though it is blank.
    Json indentNewLine(std::size_t line) {
        const auto number = static_cast<std::uint32_t>(line + 1);
        std::vector<Edit> edits = selectLine(document, line - 1, format({number - 1, number - 1}, options));
        LineOptions indenting = options;
        indenting.blankLines = BlankLineStyle::Indent;
        for (Edit& edit : selectLine(document, line, format({number - 1, number}, indenting))) {
            edits.push_back(std::move(edit));
        }
        return writeEdits(document, edits);
    }

    /// A letter was typed at the end of this text of a line.
    Json indentWord(std::size_t line, std::u16string_view typed) {
        typed.remove_prefix(countLeadingWhitespace(typed));
        if (std::find(borderWords.begin(), borderWords.end(), typed) == borderWords.end()) {
            return Json::array();
        }
        const auto number = static_cast<std::uint32_t>(line + 1);
        return writeEdits(document, format({number, number}, options));
    }

private:
    std::vector<Edit> format(LineRange lines, const LineOptions& chosen) const {
        if (suppression.isWholeFile) {
            return {};
        }
        auto edits = formatLines(text, chosen, {lines}, suppression);
        return edits ? program.toDocument(*edits) : std::vector<Edit>();
    }

    const Document& document;
    ProgramText program;
    std::u16string text;
    LineOptions options;
    Suppression suppression;
};

} // namespace

Json describeTypeTriggers() {
    return {{"firstTriggerCharacter", "\n"}, {"moreTriggerCharacter", {"d", "e", "f", "h", "n"}}};
}

Json formatOnType(const Question& question) {
    const Document& document = question.getDocument();
    const std::size_t place = document.findOffset(readPosition(question.params.at("position")));
    const std::size_t line = document.lines.findLine(place);
    if (!question.isAboutSource() || question.workspace.isIgnored(document)) {
        return Json::array();
    }
    const auto options = findLineOptions(question);
    if (!options) {
        return {};
    }
    TypedText text(question, *options);
    if (question.params.at("ch").get<std::string>() == "\n") {
        return line == 0 ? Json::array() : text.indentNewLine(line);
    }
    const std::size_t start = document.lines.getStart(line);
    return text.indentWord(line, std::u16string_view(document.text).substr(start, place - start));
}

} // namespace ombrel::lsp
