#include "Stages.h"

#include "diagnostics/CommandLine.h"
#include "diagnostics/Message.h"
#include "diagnostics/SourceText.h"
#include "diagnostics/Suggestion.h"
#include "text/TextEncoding.h"
#include <ca/SyntaxError.h>

#include <cerrno>
#include <exception>
#include <fstream>
#include <iomanip>
#include <iostream>
#include <new>
#include <sstream>
#include <system_error>

#include <CLI/CLI.hpp>

namespace {

using namespace ombrel;

/// What the program exits with, as the command line does for the same problems.
int getExitStatus(const Problem& problem) {
    switch (getInfo(problem.code).family) {
    case Family::Input:
        return 3;
    case Family::Syntax:
        return 4;
    case Family::Safety:
        return 5;
    case Family::Writing:
        return 6;
    default:
        return 2;
    }
}

std::string listStages() {
    std::ostringstream list;
    list << "Stages, in the order in which a text is processed:";
    for (const Stage& stage : getStages()) {
        list << "\n  " << std::left << std::setw(11) << stage.name << "   " << stage.help;
    }
    return list.str();
}

Result<const Stage*> findStage(const std::string& name) {
    std::vector<std::string> names;
    for (const Stage& stage : getStages()) {
        if (stage.name == name) {
            return &stage;
        }
        names.push_back(stage.name);
    }
    return fail(Code::UsageError, "unknown stage " + name + suggest(name, names));
}

Result<std::string> readBytes(const std::string& path) {
    std::ifstream file;
    if (path != "-") {
        file.open(path, std::ios::binary);
    }
    std::istream& stream = path == "-" ? std::cin : file;
    std::ostringstream bytes;
    errno = 0;
    if (!stream || (stream.peek() != EOF && !(bytes << stream.rdbuf())) || stream.bad()) {
        return fail(Code::UnreadableInput, "can't read: " + std::generic_category().message(errno));
    }
    return std::move(bytes).str();
}

int report(const std::string& path, const Problems& problems, std::u16string_view text) {
    for (const Problem& problem : problems) {
        printProblem(std::cerr, path, problem, text, Color::Off);
    }
    return getExitStatus(problems.front());
}

/// A text that was read, or the part of it that can be shown if there are problems.
struct Input {
    std::u16string text;
    Problems problems;
};

Input readText(const std::string& path) {
    const auto bytes = readBytes(path);
    if (!bytes) {
        return {{}, bytes.error()};
    }
    auto decoded = decodeSource(*bytes);
    return decoded ? Input{std::move(decoded->text), {}} : Input{decodeLossy(*bytes), decoded.error()};
}

Problems makeProblems(const std::vector<ca::SyntaxError>& errors) {
    Problems problems;
    for (const ca::SyntaxError& error : errors) {
        problems.push_back(
            {getSyntaxCode(error.identifier), encodeLossy(error.message), error.line, error.column});
    }
    return problems;
}

int dump(const Stage& stage, const StageInput& input) {
    try {
        stage.print(std::cout, input);
        return 0;
    } catch (const ca::SyntaxErrorException& exception) {
        return report(input.path, makeProblems(exception.getErrors()), input.text);
    }
}

/// Reports a problem with the run as a whole.
int report(const Problem& problem) {
    printRunProblem(std::cerr, "ombrel-dump", problem, Color::Off);
    return getExitStatus(problem);
}

int refuse(const Problem& problem) {
    const int status = report(problem);
    std::cerr << listStages() << '\n';
    return status;
}

/// What the command line asks for.
struct Request {
    std::string stage;
    std::string path = "-";
    std::string optionsPath; ///< empty: no options
};

int printDump(const Request& request) {
    const auto stage = findStage(request.stage);
    if (!stage) {
        return refuse(stage.error().front());
    }
    if (!request.optionsPath.empty() && !(*stage)->acceptsOptions) {
        return refuse(
            {Code::UsageError, "--config needs the stage bridge: " + request.stage + " has no options"});
    }
    if (request.path == "-" && request.optionsPath == "-") {
        return refuse({Code::UsageError, "standard input can be read only once"});
    }
    const Input input = readText(request.path);
    if (!input.problems.empty()) {
        return report(request.path, input.problems, input.text);
    }
    const Input options = request.optionsPath.empty() ? Input{u"{}", {}} : readText(request.optionsPath);
    if (!options.problems.empty()) {
        return report(request.optionsPath, options.problems, options.text);
    }
    return dump(**stage, {request.path, input.text, options.text});
}

int runProgram(int argc, char** argv) {
    CLI::App app("Prints what the formatters make of a text at one stage.", "ombrel-dump");
    Request request;
    app.add_option("STAGE", request.stage, "what to print")->required()->type_name("");
    app.add_option("FILE", request.path,
                   "the text, or a configuration for `options`; - or nothing is standard input")
        ->type_name("");
    app.add_option("--config", request.optionsPath, "options of the tree formatter for `bridge`, as JSON")
        ->type_name("FILE");
    app.set_version_flag("--version", "ombrel-dump " OMBREL_VERSION, "print the version");
    app.footer(listStages());
    const auto printed = readCommandLine(app, argc, argv);
    if (!printed) {
        return refuse(printed.error().front());
    }
    if (*printed) {
        std::cout << (*printed)->text;
        return 0;
    }
    return printDump(request);
}

} // namespace

int main(int argc, char** argv) {
    std::ios::sync_with_stdio(false);
    try {
        const int status = runProgram(argc, argv);
        return std::cout.flush() ? status : report({Code::WriteFailed, "can't write standard output"});
    } catch (const std::bad_alloc&) {
        return report({Code::OutOfMemory, "not enough memory"});
    } catch (const std::exception& error) {
        return report({Code::InternalError, error.what()});
    }
}
