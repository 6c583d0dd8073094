#include "format/LineEngine.h"

#include "support/DeepInput.h"

#include <gtest/gtest.h>

#include <optional>

namespace {

using ombrel::LineRange;

/// The line at which the text is refused, 0 if it is not; its message in `message`.
std::uint32_t findRunaway(const std::u16string& text, std::uint32_t indentSize, std::string& message,
                          const std::vector<LineRange>& ranges = {}) {
    const auto result = ombrel::formatLines(text, {.indentSize = indentSize}, ranges, {});
    const ombrel::Problem* problem = result ? nullptr : &result.error().front();
    message = problem == nullptr ? "" : problem->text;
    return problem == nullptr ? 0 : problem->line;
}

TEST(IndentationGuard, FindsRunawayTexts) {
    const std::u16string deep = repeat(u"if a, ", 1'563) + u"\nx\n";
    struct Row {
        std::u16string text;
        std::uint32_t indentSize;
        std::uint32_t line;
        const char* message;
    };
    const Row rows[] = {
        {deep, 4, 0, ""},
        {deep, 64, 2, "this line would be indented by 100032 columns"},
        {u"if a, if a, if a, if a\nx = [\nend\nend\nx = [\nend\ny", 4, 7, "by 4294967292 columns"},
        {repeat(u"if a\n", 900) + repeat(u"x\n", 800), 64, 1'617, "would add 67190400 characters"},
        {repeat(u"else\n", 5'800), 4, 0, ""},
        {repeat(u"[\ncase ]\n", 5'000), 4, 8'214, "characters"},
    };
    for (const Row& row : rows) {
        std::string message;
        EXPECT_EQ(findRunaway(row.text, row.indentSize, message), row.line) << message;
        EXPECT_NE(message.find(row.message), message.npos) << message;
    }
}

TEST(IndentationGuard, CountsWhatARangeWrites) {
    std::string message;
    const std::u16string wide = std::u16string(200'000, u' ') + u"x ...\ny\n" + repeat(u"z\n", 10);
    EXPECT_EQ(findRunaway(wide, 4, message, {{3, 9}}), 0U);
    EXPECT_EQ(findRunaway(wide, 4, message, {{2, 2}}), 2U) << "indented like the line before the range";
}

} // namespace
