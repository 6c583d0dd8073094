// Drivers for the promises that are about texts and not about files:
//
//     ombrel_reliability CLASS CASES [FAULT [SEED]]
//
// tries CASES random cases, prints how many were tried, accepted (they reached what is under test) and
// checked, and stops at the first broken promise with its seed. FAULT, from 1, plants a fault into the result
// that is under test: then the class has to fail, or it doesn't see what it claims to see.

#include "AllocationFailure.h"
#include "OptionCases.h"

#include "entry/FormattingExplorerBridgeImpl.h"
#include "support/ClaimChecker.h"
#include "support/ExampleFiles.h"
#include "support/LineFormatting.h"
#include "support/ProgramGenerator.h"
#include "support/TokenContractChecker.h"

#include "format/LineEngine.h"
#include "format/TreeEngine.h"
#include "format/TreeSafetyCheck.h"
#include "options/FileOptions.h"
#include "options/OptionsFile.h"
#include "text/TextEncoding.h"

#include <ca/Analyzer.h>
#include <ca/formatting/TreeOptions.h>
#include <ca/lexer/lex.h>
#include <ca/utils/JsonDocument.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <iterator>
#include <random>
#include <stdexcept>
#include <thread>

namespace {

using Random = std::minstd_rand;
using Text = std::u16string;

/// A broken promise.
struct Broken : std::runtime_error {
    using std::runtime_error::runtime_error;
};

void promise(bool isKept, const std::string& what) {
    if (!isKept) {
        throw Broken(what);
    }
}

std::size_t pick(Random& random, std::size_t count) {
    return count == 0 ? 0 : random() % count;
}

// Faults of a formatter, from 1. Those that would leave a text as it is do something to another one.

void eraseFirst(Text& text, std::u16string_view characters) {
    if (const std::size_t at = text.find_first_of(characters); at != text.npos) {
        text.erase(at, 1);
    }
}

using Fault = void (*)(Text& text, Random& random);

constexpr Fault faults[] = {
    [](Text& text, Random&) { text.pop_back(); },
    [](Text& text, Random& random) { text.insert(pick(random, text.size()), 1, u'q'); },
    [](Text& text, Random& random) { text.erase(pick(random, text.size())); },
    [](Text& text, Random&) { eraseFirst(text, u"([{"); },
    [](Text& text, Random&) { eraseFirst(text, u")]}"); },
    [](Text& text, Random&) { eraseFirst(text, u"%"); },
    [](Text& text, Random&) { text.erase(std::min(text.find(u'%'), text.size()), 2); },
    [](Text& text, Random&) { eraseFirst(text, u"0123456789"); },
    [](Text& text, Random&) { eraseFirst(text, u"'\""); },
    [](Text& text, Random&) { eraseFirst(text, u"+-*/^=<>&|~"); },
    [](Text& text, Random&) { eraseFirst(text, u"abcdefghijklmnopqrstuvwxyz"); },
    [](Text& text, Random&) { std::replace(text.begin(), text.end(), u'1', u'2'); },
    [](Text& text, Random&) { std::replace(text.begin(), text.end(), u'+', u'-'); },
    [](Text& text, Random&) { std::replace(text.begin(), text.end(), u'\n', u' '); },
    [](Text& text, Random&) { std::reverse(text.begin(), text.end()); },
    [](Text& text, Random&) { text += text; },
    [](Text& text, Random&) { text += u"\nx"; },
    [](Text& text, Random&) { text += u"% c"; },
    [](Text& text, Random&) { text.insert(0, u"end\n"); },
    [](Text& text, Random& random) {
        const std::size_t at = pick(random, text.size());
        std::swap(text[at], text[at + 1 < text.size() ? at + 1 : 0]);
    },
};

class Trial {
public:
    Trial(std::uint32_t seed, std::size_t fault) : random(seed), seed(seed), fault(fault) {}

    bool hasFault(std::size_t number) const { return fault == number; }

    /// The result under test, with the planted fault in it.
    Text spoil(Text text) {
        if (fault > 0 && fault <= std::size(faults) && text.size() > 1) {
            faults[fault - 1](text, random);
        }
        return text;
    }

    Random random;
    const std::uint32_t seed;
    const std::size_t fault;
};

const std::vector<ExampleFile>& getExamples() {
    static const std::vector<ExampleFile> examples = readExamples();
    return examples;
}

/// A sequence of pieces that mean something to one stage or another, and of anything else.
Text makeSoup(Random& random) {
    // clang-format off
    static constexpr std::u16string_view pieces[] = {
        u"if a\n", u"end\n", u"function f\n", u"classdef c\n", u"else ", u"case 1\n", u"x = [1, ...\n", u"{2 3\n",
        u"]", u"};\n", u"(...\n", u")", u"% c\n", u"%{\n", u" %}\n", u"\n", u"   \n", u"\r\n", u"\r", u"\t", u"  ",
        u"'s'", u"\"s", u"a'", u"1e", u"\u2028", u"\xD83D\xDE00", u"\xD83D", u"\uFEFF", u"ä", u"!ls\n", u"hold on\n"};
    // clang-format on
    Text text;
    for (std::size_t count = pick(random, 24); count > 0; --count) {
        if (pick(random, 4) == 0) {
            text += static_cast<char16_t>(pick(random, pick(random, 2) == 0 ? 128 : 65536));
        } else {
            text += pieces[pick(random, std::size(pieces))];
        }
    }
    return text;
}

/// Some lines of an example, and at times with a piece cut out, doubled or moved.
Text makeExcerpt(Random& random) {
    const Text& example = getExamples()[pick(random, getExamples().size())].text;
    Text text = example.substr(pick(random, example.size()), 600);
    text.erase(0, std::min(text.find(u'\n'), text.size() - 1) + 1);
    if (pick(random, 2) == 0) {
        const Text piece = text.substr(pick(random, text.size()), pick(random, 20));
        text.insert(pick(random, text.size()), piece);
        text.erase(pick(random, text.size()), pick(random, 4));
    }
    return text;
}

Text makeText(Random& random) {
    return pick(random, 2) == 0 ? makeSoup(random) : makeExcerpt(random);
}

/// The lines of a text as the formatters count them, at least one.
std::uint32_t countLines(const Text& text) {
    return std::max(1U, static_cast<std::uint32_t>(std::count(text.begin(), text.end(), u'\n')));
}

// Each class gives false for a case that doesn't reach what is under test.

bool tryLexer(Trial& trial) {
    const Text text = makeText(trial.random);
    auto tokens = ca::lexer::lex(text);
    auto& victim = tokens[pick(trial.random, tokens.size() - 1)];
    victim.lexeme = trial.spoil(victim.lexeme);
    for (const std::string& broken : checkTokenContract(text, tokens)) {
        promise(false, broken);
    }
    promise(tokens.size() <= text.size() + 1, "more tokens than characters");
    return true;
}

LineOptions makeLineOptions(Random& random) {
    static constexpr std::u16string_view styles[] = {u"ClassicFunctionIndent", u"MixedFunctionIndent",
                                                     u"All"};
    static constexpr std::u16string_view blankLines[] = {u"Ignore", u"Indent", u"Trim"};
    LineOptions options;
    options.useSpaces = pick(random, 2) == 0;
    options.tabSize = static_cast<std::uint32_t>(1 + pick(random, 16));
    options.indentSize = static_cast<std::uint32_t>(pick(random, 17));
    options.functionIndentStyle = styles[pick(random, 3)];
    options.blankLineStyle = blankLines[pick(random, 3)];
    return options;
}

bool checkLines(Trial& trial, const Text& text, const LineOptions& options, const LineOptions& used) {
    const auto edited = formatWithEngine(text, used);
    if (!edited) {
        return false;
    }
    const Text once = trial.spoil(*edited);
    const std::string change = findForeignChange(text, once, options);
    promise(change.empty(), change);
    promise(formatWithEngine(once, options) == once, "formatting again changes the text");
    return true;
}

bool tryLines(Trial& trial) {
    const LineOptions options = makeLineOptions(trial.random);
    return checkLines(trial, makeText(trial.random), options, options);
}

/// Faults: one line too many at either end, or no range at all.
bool tryRange(Trial& trial) {
    const Text text = makeText(trial.random);
    const std::uint32_t count = countLines(text);
    LineOptions options = makeLineOptions(trial.random);
    options.firstLine = static_cast<std::uint32_t>(1 + pick(trial.random, count));
    options.lastLine = options.firstLine + static_cast<std::uint32_t>(pick(trial.random, count));
    LineOptions used = options;
    used.lastLine += trial.hasFault(21) ? 1 : 0;
    used.firstLine -= trial.hasFault(22) && used.firstLine > 1 ? 1 : 0;
    used.firstLine = trial.hasFault(23) ? 1 : used.firstLine;
    const bool isAccepted = checkLines(trial, text, options, used);
    options.firstLine = 1;
    options.lastLine = UINT32_MAX;
    LineOptions all = options;
    all.lastLine = 2 * countLines(text) + static_cast<std::uint32_t>(text.size());
    promise(formatWithEngine(text, options) == formatWithEngine(text, all),
            "a range of all lines is no full run");
    return isAccepted;
}

/// Faults: a token is missing, two are swapped, or one says that it is elsewhere.
bool tryParser(Trial& trial) {
    const Text text = pick(trial.random, 3) == 0 ? generateProgram(trial.seed) : makeText(trial.random);
    auto tokens = ca::lexer::lex(text);
    const std::size_t at = pick(trial.random, tokens.size());
    if (trial.hasFault(1)) {
        tokens.erase(tokens.begin() + static_cast<std::ptrdiff_t>(at));
    } else if (trial.hasFault(2)) {
        std::swap(tokens[at], tokens.front());
    } else if (trial.hasFault(3)) {
        ++tokens[at].line;
    }
    try {
        const auto result = ca::createSingleFileAnalyzer()->parseSourceCode(text);
        const std::string broken = checkClaims(*result->getProgramFile(), tokens);
        promise(broken.empty(), broken);
        return true;
    } catch (const ca::SyntaxErrorException& exception) {
        promise(!exception.getErrors().empty(), "refused without a reason");
        return false;
    }
}

/// Every example parses. Faults of a tokenizer: what it leaves out or gets wrong is an error somewhere.
bool tryExamples(Trial& trial) {
    const ExampleFile& example = getExamples()[trial.seed % getExamples().size()];
    const auto errors = ca::formatting::parseSource(trial.spoil(example.text)).errors;
    promise(errors.empty(), example.path.string() + " has errors");
    return true;
}

/// A value of each option, as a JSON text.
Text makeTreeOptions(Random& random) {
    std::string json = R"({"formatting": {)";
    for (const auto& option : ca::formatting::treeOptions) {
        const std::uint32_t number =
            std::min<std::uint32_t>(option.high, static_cast<std::uint32_t>(pick(random, 90)));
        const std::string value =
            option.type == ca::formatting::TreeOptionType::Boolean ? (pick(random, 2) == 0 ? "true" : "false")
            : option.type == ca::formatting::TreeOptionType::Number
                ? std::to_string(std::max(option.low, option.key == "indentWidth" ? number % 9 : number))
                : '"' + std::string(option.words[pick(random, option.words.size())]) + '"';
        json += (json.ends_with('{') ? "\"" : ", \"") + std::string(option.key) + "\": " + value;
    }
    json += "}}";
    return {json.begin(), json.end()};
}

ca::formatting::TreeFormatResult formatByBridge(const ca::formatting::TreeFormatRequest& request) {
    return FormattingExplorerBridgeImpl().formatParsed(request);
}

/// A program, nothing if the text is none.
bool isProgram(const Text& text) {
    return ca::formatting::parseSource(text).errors.empty();
}

Text makeProgram(Trial& trial) {
    switch (pick(trial.random, 3)) {
    case 0:
        return makeExcerpt(trial.random);
    case 1:
        return getExamples()[pick(trial.random, getExamples().size())].text;
    default:
        return generateProgram(trial.seed);
    }
}

Text formatProgram(const Text& text, const Text& options, const ombrel::TreeFormatter& formatter) {
    const auto result = ombrel::formatTree(text, ombrel::getTreeOptions(options), formatter);
    if (!result) {
        throw Broken(result.error().front().text);
    }
    return applyEdits(text, result->edits);
}

bool tryTree(Trial& trial) {
    const Text text = makeProgram(trial);
    if (!isProgram(text)) {
        return false;
    }
    const Text options = makeTreeOptions(trial.random);
    const Text once = trial.spoil(formatProgram(text, options, formatByBridge));
    const auto difference = checkSameProgram(ombrel::ParsedText(text), once);
    promise(!difference, difference ? difference->text : "");
    promise(formatProgram(once, options, formatByBridge) == once, "formatting again changes the text");
    return true;
}

ombrel::FileOptions readOptions(const std::string& text) {
    const ombrel::OptionsFile file = ombrel::readOptionsFile(text);
    promise(file.problems.empty(), "refused options: " + text);
    ombrel::OptionValues values;
    for (const ombrel::Setting& setting : file.settings) {
        values.set(*setting.option, setting.value);
    }
    return ombrel::makeFileOptions(values);
}

Text formatByLines(const Text& text, const ombrel::FileOptions& options) {
    const auto edits = ombrel::formatLines(text, options.line, {}, {});
    return edits ? applyEdits(text, *edits) : text; // with 64 columns a level, some are indented too far
}

using Formatting = std::function<Text(const Text& text, const ombrel::FileOptions& options)>;

/// Each row of option values with each file, in turn with each value alone.
struct OptionCase {
    explicit OptionCase(std::uint32_t number)
        : rows(number % 2 == 0 ? getPairwiseRows() : getSingleRows()), row(rows[number / 2 % rows.size()]),
          text(makeFile(number / 2 / rows.size())) {}

    static Text makeFile(std::size_t number) {
        return number < getExamples().size() ? getExamples()[number].text
                                             : generateProgram(static_cast<std::uint32_t>(number));
    }

    const std::vector<OptionRow>& rows;
    const OptionRow& row;
    const Text text;
};

/// No value of an option, and no two of them, changes the program, and how they are written changes nothing.
/// Faults: those of a text, and an option that is lost.
bool tryOptions(Trial& trial) {
    const OptionCase attempt(trial.seed - 1);
    if (!isProgram(attempt.text)) {
        return false;
    }
    const ombrel::FileOptions options = readOptions(writeOptions(attempt.row));
    const ombrel::FileOptions respelled =
        readOptions(respellOptions(attempt.row, trial.random, trial.hasFault(21)));
    const auto formatByTree = [&](const Text& text, const ombrel::FileOptions& used) {
        return formatProgram(text, used.formattingJson, formatByBridge);
    };
    for (const auto& format : {Formatting(formatByLines), Formatting(formatByTree)}) {
        const Text once = trial.spoil(format(attempt.text, options));
        const auto difference = checkSameProgram(ombrel::ParsedText(attempt.text), once);
        promise(!difference, difference ? difference->text : "");
        promise(format(once, options) == once, "formatting again changes the text");
        promise(format(attempt.text, respelled) == once, "another spelling of the options changes the text");
    }
    return true;
}

/// Damaged options files are refused with a place. Faults: they aren't refused, good values are lost with
/// them, the place is missing.
bool trySettings(Trial& trial) {
    static const std::string whole = writeOptions(getPairwiseRows().back());
    const std::size_t start = whole.find("\"formatting\""); // what is before it is enough most of the time
    std::string text = pick(trial.random, 8) == 0 ? whole : whole.substr(0, start - 1) + "}";
    damageOptions(text, trial.random);
    ombrel::OptionsFile file = ombrel::readOptionsFile(text);
    if (trial.hasFault(21)) {
        file.problems.clear();
    }
    promise(!file.problems.empty() || !isSurelyWrong(text), "accepted: " + text);
    const auto lines = static_cast<std::uint32_t>(1 + std::count(text.begin(), text.end(), '\n'));
    for (const ombrel::Problem& problem : file.problems) {
        const std::uint32_t line = problem.line + (trial.hasFault(22) ? 2 : 0);
        promise(line >= 1 && line <= lines && !problem.text.empty(), "no place in " + text);
    }
    for (const ombrel::Setting& setting : file.settings) {
        const bool isRight = checkValue(*setting.option, setting.value).empty() && !trial.hasFault(23);
        promise(isRight, "a wrong value in " + text);
    }
    return true;
}

/// A formatter with a fault must not get it through the engine: the text is refused, or what is left of the
/// formatter's result is the same program. An engine that trusts its formatter is the planted fault.
bool tryRefusal(Trial& trial) {
    const Text text = makeProgram(trial);
    if (!isProgram(text)) {
        return false;
    }
    Text wrong;
    const Text options = makeTreeOptions(trial.random);
    const Fault fault = faults[pick(trial.random, std::size(faults))];
    const auto formatter = [&](const ca::formatting::TreeFormatRequest& request) {
        auto result = formatByBridge(request);
        if (auto* formatted = std::get_if<Text>(&result); formatted != nullptr && !formatted->empty()) {
            const Text right = *formatted;
            fault(*formatted, trial.random);
            wrong = *formatted == right ? Text() : *formatted;
        }
        return result;
    };
    const auto result = ombrel::formatTree(text, ombrel::getTreeOptions(options), formatter);
    if (wrong.empty()) {
        return false;
    }
    if (result || trial.fault > 0) {
        const Text after = trial.fault > 0 ? wrong : applyEdits(text, result->edits);
        promise(!checkSameProgram(ombrel::ParsedText(text), after), "a fault of the formatter got through");
    } else {
        promise(result.error().front().line > 0, "the first difference has no place");
    }
    return true;
}

/// One operation of the library or an engine, and its result as a text.
using Operation = std::function<Text(const Text& text)>;

Text formatFresh(const Text& text, const Text& json) {
    FormattingExplorerBridgeImpl bridge;
    return bridge.format(text, json);
}

const std::vector<Operation>& getOperations() {
    static const Text options =
        uR"({"formatting": {"indentationEnabled": true, "lineBreakingEnabled": true}})";
    static const std::vector<Operation> operations = {
        [](const Text& text) { return formatLines(text, {}); },
        [](const Text& text) { return formatWithEngine(text, {}).value_or(u""); },
        [](const Text& text) { return formatFresh(text, options); },
        [](const Text& text) { return formatProgram(text, options, formatByBridge); },
        [](const Text& text) {
            const auto document =
                ca::utils::readJson(u"{\"a\": [[{}, 1, \"" + Text(text.size(), u'x') + u"\"]], \"a\": 2}");
            return Text(document.root ? u"read " : u"not read ") +
                   static_cast<char16_t>(u'0' + document.faults.size());
        },
    };
    return operations;
}

constexpr std::u16string_view smallProgram =
    u"if a % why\n  x = [1, 2\n3 4]; y='s';\nend\nswitch b, case {1}\nz\nend\n";

/// What an operation does while memory runs out. Faults: another text, memory that is never freed, success
/// anyway.
class Shortage {
public:
    Shortage(Trial& trial, const Operation& operation) : trial(trial), operation(operation) {}

    /// False if the operation makes fewer allocations.
    bool fail(std::uint64_t number, bool failsRest) {
        Text result;
        bool isRefused = false;
        failAllocation(number, failsRest);
        try {
            result = operation(text);
        } catch (const std::bad_alloc&) {
            isRefused = true;
        } catch (const Broken&) { // the engine says that there is no memory
            isRefused = true;
        }
        const bool hasFailed = stopFailing();
        const std::string place = " at allocation " + std::to_string(number);
        isRefused = isRefused && !trial.hasFault(22);
        promise(isRefused || trial.spoil(result) == wanted, "a wrong text" + place);
        promise(hasFailed || !isRefused, "refused without a failure" + place);
        promise(operation(text) == wanted, "unusable" + place);
        if (trial.hasFault(21)) {
            lost.emplace_back(100, u'x');
        }
        return hasFailed;
    }

private:
    Trial& trial;
    const Operation& operation;
    const Text text{smallProgram};
    const Text wanted = operation(text);
    std::vector<Text> lost;
};

/// Fails allocation after allocation until the operation ends without a failure. Each fails
/// twice, since the first time may fill what is kept.
void failAllocations(Trial& trial, const Operation& operation, bool failsRest) {
    Shortage shortage(trial, operation);
    for (std::uint64_t number = 1; shortage.fail(number, failsRest); ++number) {
        const std::int64_t before = countLiveAllocations();
        shortage.fail(number, failsRest);
        const bool hasLostMemory = countLiveAllocations() > before;
        promise(!hasLostMemory, "lost memory at allocation " + std::to_string(number));
    }
}

bool tryMemory(Trial& trial) {
    const auto& operations = getOperations();
    failAllocations(trial, operations[trial.seed % operations.size()],
                    trial.seed / operations.size() % 2 == 1);
    return true;
}

/// Eight threads have all the results of one. Faults: a shared buffer, a thread that leaves something out.
bool tryThreads(Trial& trial) {
    std::vector<Text> texts;
    for (int i = 0; i < 8; ++i) {
        texts.push_back(makeProgram(trial));
    }
    const auto formatAll = [&](const Operation& operation, std::size_t first) {
        Text all;
        for (std::size_t i = 0; i < texts.size(); ++i) {
            const Text& text = texts[(first + i) % texts.size()];
            all += isProgram(text) ? operation(text) : u"";
        }
        return all;
    };
    for (const Operation& operation : getOperations()) {
        std::vector<Text> results(8);
        {
            std::vector<std::jthread> threads;
            for (std::size_t i = 0; i < results.size(); ++i) {
                threads.emplace_back(
                    [&, i] { results[i] = formatAll(operation, trial.hasFault(21) ? i : 0); });
            }
        }
        const Text wanted = formatAll(operation, 0);
        results[pick(trial.random, 8)] = trial.spoil(results[0]);
        promise(std::all_of(results.begin(), results.end(), [&](const Text& text) { return text == wanted; }),
                "threads have different results");
    }
    return true;
}

struct Class {
    std::string_view name;
    bool (*attempt)(Trial&);
};

constexpr Class classes[] = {{"lexer", tryLexer},     {"lines", tryLines},       {"range", tryRange},
                             {"parser", tryParser},   {"examples", tryExamples}, {"tree", tryTree},
                             {"refusal", tryRefusal}, {"memory", tryMemory},     {"threads", tryThreads},
                             {"options", tryOptions}, {"settings", trySettings}};

int run(const Class& what, std::size_t count, std::size_t fault, std::uint32_t seed) {
    std::size_t accepted = 0;
    for (std::size_t i = 0; i < count; ++i, ++seed) {
        Trial trial(seed, fault);
        try {
            accepted += what.attempt(trial) ? 1 : 0;
        } catch (const std::exception& broken) {
            std::printf("%.*s, seed %u: %s\n", static_cast<int>(what.name.size()), what.name.data(), seed,
                        broken.what());
            return 1;
        }
    }
    std::printf("tried %zu accepted %zu checked %zu\n", count, accepted, accepted);
    return 0;
}

} // namespace

int main(int argc, char** argv) {
    const auto* what = std::find_if(std::begin(classes), std::end(classes),
                                    [&](const Class& c) { return argc > 2 && c.name == argv[1]; });
    if (what == std::end(classes)) {
        std::fprintf(stderr, "usage: ombrel_reliability CLASS CASES [FAULT [SEED]]\n");
        return 2;
    }
    const auto getNumber = [&](int i, unsigned long otherwise) {
        return argc > i ? std::strtoul(argv[i], nullptr, 10) : otherwise;
    };
    return run(*what, getNumber(2, 0), getNumber(3, 0), static_cast<std::uint32_t>(getNumber(4, 1)));
}
