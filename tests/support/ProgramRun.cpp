#include "support/ProgramRun.h"

#include "cli/Run.h"

#include <sstream>
#include <variant>

ProgramOutcome runProgram(const std::vector<std::string>& words, const std::string& input) {
    ombrel::DiskFileSystem files;
    return runProgram(words, input, files);
}

ProgramOutcome runProgram(const std::vector<std::string>& words, const std::string& input,
                          ombrel::FileSystem& files) {
    std::vector<const char*> argv = {"ombrel-format"};
    for (const std::string& word : words) {
        argv.push_back(word.c_str());
    }
    const auto parsed = ombrel::parseArguments(static_cast<int>(argv.size()), argv.data());
    if (!parsed) {
        const ombrel::Problem& problem = parsed.error().front();
        return {static_cast<int>(getExitStatus(problem)), {}, problem.text};
    }
    if (const auto* printed = std::get_if<ombrel::PrintedText>(&*parsed)) {
        return {0, {}, printed->text};
    }
    std::istringstream in(input);
    std::ostringstream out;
    std::ostringstream err;
    ombrel::Console console{in, out, err};
    const auto status = run(std::get<ombrel::Arguments>(*parsed), console, files);
    return {static_cast<int>(status), out.str(), err.str()};
}
