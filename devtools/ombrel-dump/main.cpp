#include "Stages.h"

#include <ca/SyntaxError.h>
#include <ombrel-format/FileSystem.h>
#include <ombrel-format/Message.h>
#include <ombrel-format/Suggestion.h>
#include <ombrel-format/SyntaxCheck.h>
#include <ombrel-format/TextEncoding.h>

#include <algorithm>
#include <exception>
#include <iomanip>
#include <iostream>

namespace {

using namespace ombrel;

void printUsage(std::ostream& stream) {
    stream << "ombrel-dump STAGE [FILE|-]\n\nPrints one stage of a text's way through the formatter.\n";
    for (const Stage& stage : getStages()) {
        stream << "  " << std::left << std::setw(11) << stage.name << "   " << stage.help << '\n';
    }
}

const Stage* findStage(const std::string& name) {
    const auto& stages = getStages();
    const auto found =
        std::find_if(stages.begin(), stages.end(), [&](const Stage& stage) { return stage.name == name; });
    return found == stages.end() ? nullptr : &*found;
}

ExitStatus rejectStage(const std::string& name) {
    std::vector<std::string> names;
    for (const Stage& stage : getStages()) {
        names.push_back(stage.name);
    }
    printUsageError(std::cerr, "ombrel-dump", "unknown stage " + name + suggest(name, names), Color::Off);
    printUsage(std::cerr);
    return ExitStatus::Usage;
}

std::string readInput(const std::string& path) {
    return DiskFileSystem().read(path == "-" ? "/dev/stdin" : path, maximalByteCount);
}

ExitStatus printErrors(const std::string& path, const std::vector<Problem>& problems,
                       const std::u16string& text) {
    for (const Problem& problem : problems) {
        printProblem(std::cerr, path, problem, text, Color::Off);
    }
    return ExitStatus::Unparsable;
}

ExitStatus dump(const Stage& stage, const std::string& path) {
    const std::string bytes = readInput(path);
    const auto decoded = decode(bytes);
    if (const auto* problem = std::get_if<Problem>(&decoded)) {
        printProblem(std::cerr, path, *problem, decodeLossy(bytes), Color::Off);
        return problem->status;
    }
    const StageInput input{path, std::get<DecodedText>(decoded).text};
    try {
        stage.print(std::cout, input);
    } catch (const ca::SyntaxErrorException& exception) {
        return printErrors(path, describe(exception.getErrors()), input.text);
    }
    if (std::cout.flush()) {
        return ExitStatus::Done;
    }
    printUsageError(std::cerr, "ombrel-dump", "can't write standard output", Color::Off);
    return ExitStatus::WriteFailed;
}

ExitStatus runProgram(const std::vector<std::string>& arguments) {
    if (arguments.empty() || arguments.size() > 2) {
        printUsage(std::cerr);
        return ExitStatus::Usage;
    }
    if (arguments[0] == "--help" || arguments[0] == "-h") {
        printUsage(std::cout);
        return ExitStatus::Done;
    }
    const Stage* stage = findStage(arguments[0]);
    if (stage == nullptr) {
        return rejectStage(arguments[0]);
    }
    const std::string path = arguments.size() == 2 ? arguments[1] : "-";
    try {
        return dump(*stage, path);
    } catch (const FileError& error) {
        printProblem(std::cerr, path, {ExitStatus::Usage, error.what()}, {}, Color::Off);
        return error.kind == FileError::Kind::TooLarge ? ExitStatus::Refused : ExitStatus::Usage;
    }
}

} // namespace

int main(int argc, char** argv) {
    std::ios::sync_with_stdio(false);
    try {
        return static_cast<int>(runProgram({argv + 1, argv + argc}));
    } catch (const std::exception& error) {
        printUsageError(std::cerr, "ombrel-dump", error.what(), Color::Off);
        return static_cast<int>(ExitStatus::Refused);
    }
}
