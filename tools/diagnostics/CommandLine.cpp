#include "diagnostics/CommandLine.h"

#include "text/Printable.h"

#include <CLI/CLI.hpp>

namespace ombrel {

Result<std::optional<PrintedText>> readCommandLine(CLI::App& app, int argc, const char* const* argv) {
    try {
        app.parse(argc, argv);
    } catch (const CLI::CallForHelp&) {
        return PrintedText{app.help()};
    } catch (const CLI::CallForVersion& version) {
        return PrintedText{std::string(version.what()) + '\n'};
    } catch (const CLI::ParseError& error) {
        return fail(Code::UsageError, getPrintableName(error.what()));
    }
    return std::nullopt;
}

} // namespace ombrel
