#include "support/ClaimChecker.h"
#include "support/GoldenFile.h"

#include <ca/Analyzer.h>
#include <ca/lexer/lex.h>
#include <lf/astapi/visitFields.h>

#include <gtest/gtest.h>

#include <pthread.h>

#include <cstdlib>
#include <fstream>
#include <functional>
#include <iterator>
#include <sstream>

// Trees and faults are golden files; whatever parses has its claims checked against its tokens.

namespace {

using ca::astapi::CA;
using SyntaxNode = lf::astapi::Node<CA>;
using SyntaxList = lf::astapi::NodeList<CA>;

std::shared_ptr<ca::AnalysisResult> parse(const std::u16string& text) {
    return ca::createSingleFileAnalyzer()->parseSourceCode(text);
}

void expectClaims(const std::u16string& text) {
    EXPECT_EQ("", checkClaims(*parse(text)->getProgramFile(), ca::lexer::lex(text))) << showGoldenText(text);
}

/// The cases are ASCII.
std::string toBytes(std::u16string_view text) {
    std::string bytes;
    for (const char16_t c : text) {
        bytes += static_cast<char>(c);
    }
    return bytes;
}

std::u16string toText(const std::string& text) {
    return {text.begin(), text.end()};
}

/// Writes a tree as `Kind(field field)`: names as themselves, lists in brackets, `-` for what is absent.
class Sketch {
public:
    explicit Sketch(std::string& out) : out(out) {}

    void child(const char*, const SyntaxNode* node) {
        startField();
        add(node);
    }

    void list(const char*, const SyntaxList& nodes) {
        startField();
        const char* separator = "[";
        for (const SyntaxNode* node : nodes) {
            out += std::exchange(separator, " ");
            add(node);
        }
        out += nodes.empty() ? "[]" : "]";
    }

    void words(const char* name, const SyntaxList& nodes) { list(name, nodes); }

    void number(const char*, std::int32_t value) {
        startField();
        out += std::to_string(value);
    }

    void flag(const char*, bool value) {
        startField();
        out += value ? "true" : "false";
    }

    void text(const char*, std::u16string_view value) { out += '(' + toBytes(value); }

    void validation(const char* name, const lf::astapi::ValidationSpec<CA>* spec) {
        if (spec == nullptr) {
            return child(name, nullptr);
        }
        list(name, spec->dimensions);
        child(name, spec->classType);
        list(name, spec->validators);
    }

    void add(const SyntaxNode* node) {
        if (node == nullptr) {
            out += '-';
        } else if (node->kind == lf::astapi::NodeKind::Identifier) {
            out += toBytes(lf::astapi::as<lf::astapi::Identifier>(*node).text);
        } else {
            addNode(*node);
        }
    }

private:
    void addNode(const SyntaxNode& node) {
        out += lf::astapi::getNodeKindName(node.kind);
        Sketch inner(out);
        lf::astapi::visitFields(node, inner);
        out += inner.hasFields ? ")" : "";
    }

    void startField() { out += std::exchange(hasFields, true) ? ' ' : '('; }

    std::string& out;
    bool hasFields = false;
};

std::string sketch(const std::u16string& text) {
    const auto result = parse(text);
    std::string out;
    for (const SyntaxNode* statement : result->getProgramFile()->statements) {
        Sketch(out).add(statement);
        out += '\n';
    }
    return out;
}

std::string listErrors(const std::u16string& text) {
    try {
        parse(text);
        return "";
    } catch (const ca::SyntaxErrorException& exception) {
        std::string out;
        for (const ca::SyntaxError& error : exception.getErrors()) {
            out += std::to_string(error.line) + ":" + std::to_string(error.column) + " " +
                   toBytes(error.identifier) + ": " + toBytes(error.message) + "\n";
        }
        return out;
    }
}

/// With OMBREL_UPDATE_GOLDEN set, what the parser does now becomes what the files want.
void runGoldenFolder(const char* folder, std::string (*show)(const std::u16string&)) {
    const auto path = std::filesystem::path(OMBREL_SOURCE_DIR) / "tests/golden" / folder;
    std::size_t cases = 0;
    for (GoldenFile& file : readGoldenFolder(path)) {
        for (GoldenCase& golden : file.cases) {
            GoldenResult& result = golden.results.front();
            const std::string shown = show(golden.input);
            if (std::getenv("OMBREL_UPDATE_GOLDEN") != nullptr) {
                result.text = toText(shown);
            }
            EXPECT_EQ(toBytes(result.text), shown)
                << golden.path.string() << ':' << golden.line << ": " << golden.sentence;
            ++cases;
        }
        if (std::getenv("OMBREL_UPDATE_GOLDEN") != nullptr) {
            writeGoldenFile(file);
        }
    }
    EXPECT_GT(cases, 0u);
}

/// Runs on a thread with so small a stack that nothing may recurse without a limit.
void runOnSmallStack(std::function<void()> work) {
    pthread_attr_t attributes;
    pthread_attr_init(&attributes);
    ASSERT_EQ(0, pthread_attr_setstacksize(&attributes, 1024 * 1024));
    pthread_t thread;
    const auto start = [](void* argument) -> void* {
        (*static_cast<std::function<void()>*>(argument))();
        return nullptr;
    };
    ASSERT_EQ(0, pthread_create(&thread, &attributes, start, &work));
    pthread_join(thread, nullptr);
    pthread_attr_destroy(&attributes);
}

std::u16string repeat(std::u16string_view piece, std::size_t count) {
    std::u16string text;
    for (std::size_t i = 0; i < count; ++i) {
        text += piece;
    }
    return text;
}

} // namespace

TEST(GoldenSyntax, Trees) {
    runGoldenFolder("syntax", [](const std::u16string& text) {
        expectClaims(text);
        return sketch(text);
    });
}

TEST(GoldenSyntax, Faults) {
    runGoldenFolder("syntax-errors", listErrors);
}

TEST(Syntax, ClaimsOfEveryExample) {
    std::size_t files = 0;
    for (const auto& entry :
         std::filesystem::directory_iterator(std::filesystem::path(OMBREL_SOURCE_DIR) / "examples")) {
        if (entry.path().extension() != ".omb") {
            continue;
        }
        std::ifstream stream(entry.path());
        std::string bytes{std::istreambuf_iterator<char>(stream), {}};
        if (bytes.starts_with("\xEF\xBB\xBF")) {
            bytes.erase(0, 3);
        }
        SCOPED_TRACE(entry.path().string());
        expectClaims(toText(bytes));
        ++files;
    }
    EXPECT_GT(files, 0u);
}

/// Every short sequence of these pieces either parses, with claims that hold, or has errors in the text's
/// order.
TEST(Syntax, SequencesOfPieces) {
    const std::u16string_view pieces[] = {
        u"a",   u"(",       u")",    u"[",     u"]",   u"{",    u"}",   u",",     u";",         u"\n",
        u" ",   u"'",       u"-",    u"@",     u".b",  u"1",    u":",   u"=",     u"~",         u"if x",
        u"end", u"for i=1", u"else", u"...\n", u"a=b", u"%c\n", u"try", u"catch", u"function f"};
    const std::size_t count = std::size(pieces);
    std::size_t parsed = 0;
    for (std::size_t number = 0; number < count * count * count * 4; ++number) {
        const std::u16string_view heads[] = {u"", u"x = [a", u"switch a, case 1, ", u"function f\n"};
        std::u16string text(heads[number % 4]);
        for (std::size_t rest = number / 4, i = 0; i < 3; ++i, rest /= count) {
            text += pieces[rest % count];
        }
        try {
            const auto result = parse(text);
            ASSERT_EQ("", checkClaims(*result->getProgramFile(), ca::lexer::lex(text)))
                << showGoldenText(text);
            ++parsed;
        } catch (const ca::SyntaxErrorException& exception) {
            ASSERT_FALSE(exception.getErrors().empty());
        }
    }
    EXPECT_GT(parsed, 1000u);
}

TEST(Syntax, NestingIsLimitedAndChainsAreNot) {
    const std::size_t many = 100'000;
    const std::u16string tooDeep[] = {repeat(u"(", many),
                                      u"x = " + repeat(u"[", many),
                                      u"x = " + repeat(u"-", many) + u"1",
                                      u"x = a" + repeat(u"(1)", many),
                                      u"x = a" + repeat(u"'", many),
                                      u"x = " + repeat(u"@() ", many) + u"1",
                                      u"x = " + repeat(u"(1 || 2 + 3 * a(", 130),
                                      u"x = 1" + repeat(u":1", many),
                                      repeat(u"if a\n", many),
                                      repeat(u"if a, try\n", many),
                                      repeat(u"function f\n", many) + u"end"};
    const std::u16string endless[] = {u"x = a" + repeat(u" + 1", many),
                                      u"x = a" + repeat(u"^1", many),
                                      u"x = [1" + repeat(u" 1;", many) + u"];",
                                      u"if a\n" + repeat(u"elseif b\n", many) + u"end",
                                      repeat(u"(", 256) + u"1" + repeat(u")", 256),
                                      repeat(u"if a\n", 255) + u"(x)\n" + repeat(u"end\n", 255)};
    runOnSmallStack([&] {
        for (const std::u16string& text : tooDeep) {
            const std::string errors = listErrors(text);
            EXPECT_NE(std::string::npos, errors.find("NestingTooDeep")) << showGoldenText(text.substr(0, 20));
            EXPECT_EQ(1, std::count(errors.begin(), errors.end(), '\n'))
                << showGoldenText(text.substr(0, 20));
        }
        for (const std::u16string& text : endless) {
            EXPECT_EQ("", listErrors(text).substr(0, 200));
        }
    });
    for (const std::u16string& text : endless) {
        expectClaims(text);
    }
}

TEST(Syntax, StopsAtAHundredFaults) {
    try {
        parse(repeat(u"x = ;\n", 1000));
        FAIL();
    } catch (const ca::SyntaxErrorException& exception) {
        ASSERT_EQ(100u, exception.getErrors().size());
        EXPECT_EQ(100u, exception.getErrors().back().line);
    }
}

TEST(Syntax, NestedFunctionsAreThoseInsideFunctions) {
    const auto result = parse(u"function f\nfunction g\nend\nx = 1;\nend\n");
    const auto& outer = lf::astapi::as<lf::astapi::Function>(*result->getProgramFile()->statements.front());
    EXPECT_FALSE(ca::astapi::isNestedFunction(&outer));
    EXPECT_TRUE(ca::astapi::isNestedFunction(outer.body[0]));
    EXPECT_FALSE(ca::astapi::isNestedFunction(outer.body[1]));
    EXPECT_EQ(2, outer.body[0]->getLine());
    EXPECT_EQ(4, outer.body[1]->getLine());
}
