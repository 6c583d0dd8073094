#include "Stages.h"

#include "diagnostics/Message.h"
#include "diagnostics/Suggestion.h"
#include "files/FileSystem.h"
#include "format/SyntaxCheck.h"
#include "text/TextEncoding.h"
#include <ca/SyntaxError.h>

#include <exception>
#include <iomanip>
#include <iostream>
#include <iterator>
#include <sstream>

#include <CLI/CLI.hpp>

namespace {

using namespace ombrel;

/// Why a run ends early, for the user.
struct Failure {
    ExitStatus status;
    std::string text;
};

std::string listStages() {
    std::ostringstream list;
    list << "Stages, in the order in which a text passes through them:";
    for (const Stage& stage : getStages()) {
        list << "\n  " << std::left << std::setw(11) << stage.name << "   " << stage.help;
    }
    return list.str();
}

const Stage& findStage(const std::string& name) {
    std::vector<std::string> names;
    for (const Stage& stage : getStages()) {
        if (stage.name == name) {
            return stage;
        }
        names.push_back(stage.name);
    }
    throw Failure{ExitStatus::Usage, "unknown stage " + name + suggest(name, names) + '\n' + listStages()};
}

std::string readStandardInput() {
    std::string bytes(std::istreambuf_iterator<char>(std::cin), {});
    if (bytes.size() > maximalByteCount) {
        throw FileError(FileError::Kind::TooLarge, "this text is too large: 4 GiB is the limit");
    }
    return bytes;
}

/// The text of a file. Prints what is wrong with it and throws the status if it can't be had.
std::u16string readText(const std::string& path) {
    std::string bytes;
    try {
        bytes = path == "-" ? readStandardInput() : DiskFileSystem().read(path, maximalByteCount);
    } catch (const FileError& error) {
        printProblem(std::cerr, path, {ExitStatus::Usage, error.what()}, {}, Color::Off);
        throw error.kind == FileError::Kind::TooLarge ? ExitStatus::Refused : ExitStatus::Usage;
    }
    auto decoded = decode(bytes);
    if (const auto* problem = std::get_if<Problem>(&decoded)) {
        printProblem(std::cerr, path, *problem, decodeLossy(bytes), Color::Off);
        throw problem->status;
    }
    return std::get<DecodedText>(std::move(decoded)).text;
}

void dump(const Stage& stage, const StageInput& input) {
    try {
        stage.print(std::cout, input);
    } catch (const ca::SyntaxErrorException& exception) {
        for (const Problem& problem : describe(exception.getErrors())) {
            printProblem(std::cerr, input.path, problem, input.text, Color::Off);
        }
        throw ExitStatus::Unparsable;
    }
}

void runProgram(int argc, char** argv) {
    CLI::App app("Prints one stage of a text's way through the formatters.", "ombrel-dump");
    std::string stage;
    std::string path = "-";
    std::string optionsPath;
    app.add_option("STAGE", stage, "what to print")->required();
    app.add_option("FILE", path,
                   "the text, or a configuration for `options`; - or nothing is standard input");
    app.add_option("--config", optionsPath, "options of the tree formatter for `bridge`, as JSON");
    app.footer(listStages());
    try {
        app.parse(argc, argv);
    } catch (const CLI::CallForHelp&) {
        std::cout << app.help();
        return;
    } catch (const CLI::ParseError& error) {
        throw Failure{ExitStatus::Usage, std::string(error.what()) + '\n' + listStages()};
    }
    const Stage& found = findStage(stage);
    dump(found, {path, readText(path), optionsPath.empty() ? u"{}" : readText(optionsPath)});
}

void flush() {
    if (!std::cout.flush()) {
        throw Failure{ExitStatus::WriteFailed, "can't write standard output"};
    }
}

int fail(ExitStatus status, const std::string& text) {
    printUsageError(std::cerr, "ombrel-dump", text, Color::Off);
    return static_cast<int>(status);
}

} // namespace

int main(int argc, char** argv) {
    std::ios::sync_with_stdio(false);
    try {
        runProgram(argc, argv);
        flush();
        return static_cast<int>(ExitStatus::Done);
    } catch (ExitStatus status) {
        return static_cast<int>(status);
    } catch (const Failure& failure) {
        return fail(failure.status, failure.text);
    } catch (const std::exception& error) {
        return fail(ExitStatus::Refused, error.what());
    }
}
