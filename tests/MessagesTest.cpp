#include "support/TemporaryFolder.h"

#include "diagnostics/CodePage.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>

namespace {

using namespace ombrel;

const char* getTitle(Family family) {
    switch (family) {
    case Family::Formatting:
        return "The file isn't formatted (status 1)";
    case Family::Usage:
        return "Options, paths and unreadable files (status 2)";
    case Family::Input:
        return "Files that can't be formatted (status 3)";
    case Family::Syntax:
        return "Syntax errors (status 4)";
    case Family::Safety:
        return "Faults of the formatter (status 5)";
    case Family::Writing:
        return "Results that can't be written (status 6)";
    case Family::Comments:
        break;
    }
    return "Warnings and notes (no status)";
}

std::string makePage() {
    std::ostringstream page;
    page << "# Messages\n\n"
            "Every message ends in a code in brackets. Reports have the same codes.\n";
    Family family{};
    bool isFirst = true;
    for (const CodeInfo& info : getCodes()) {
        if (isFirst || info.family != family) {
            page << "\n## " << getTitle(info.family) << '\n';
        }
        isFirst = false;
        family = info.family;
        page << '\n' << describeCode(info);
    }
    return page.str();
}

/// docs/messages.md has every code with the words of the table, and nothing else.
TEST(Messages, DocumentListsEveryCode) {
    const std::filesystem::path path = std::filesystem::path(OMBREL_SOURCE_DIR) / "docs/messages.md";
    if (std::getenv("OMBREL_UPDATE_GOLDEN") != nullptr) {
        std::ofstream(path, std::ios::binary) << makePage();
    }
    EXPECT_EQ(makePage(), readFile(path));
}

TEST(Messages, SyntaxErrorsOfTheHostHaveCodes) {
    EXPECT_EQ(getSyntaxCode(u"UnclosedBlock"), Code::UnclosedBlock);
    EXPECT_EQ(getSyntaxCode(u"SomethingNew"), Code::SyntaxError);
    EXPECT_EQ(getSyntaxCode(u"NotUtf8"), Code::SyntaxError) << "not one of the parser's";
}

} // namespace
