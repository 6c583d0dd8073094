#include "lsp/Arguments.h"

#include <utility>

#include <CLI/CLI.hpp>

namespace ombrel::lsp {

namespace {

constexpr const char* description =
    "A language server for Ombrel: editors start it and talk to it over standard input and output.";

constexpr const char* footer = R"(Settings, under "ombrel" in the editor:
  engine        "line" or "tree"
  options       an object as in an options file, without "extends", "overrides" and "root"
  formatOnSave  true: format a document when the editor asks for changes before saving
Engine and options, and the editor's tab size, apply to files for which neither .ombrel-format.json nor
.editorconfig says anything.

Exit status: 0 after shutdown and exit; 1 if the editor is gone, or after exit without shutdown; 2 wrong
options.)";

} // namespace

Result<std::variant<Arguments, PrintedText>> parseArguments(int argc, const char* const* argv) {
    Arguments arguments;
    CLI::App app(description, "ombrel-lsp");
    app.footer(footer);
    app.set_help_flag("-h,--help", "print this help and stop");
    app.set_version_flag("--version", "ombrel-lsp " OMBREL_VERSION, "print the version and stop");
    app.add_flag_callback(
        "--stdio", [] {}, "talk over standard input and output, which is the default and the only way");
    app.add_option("--log", arguments.logFile, "append all messages to this file, to report a fault")
        ->type_name("FILE");
    app.add_option("--clientProcessId", arguments.processId, "end when this process ends")->type_name("N");
    auto printed = readCommandLine(app, argc, argv);
    if (!printed) {
        return fail(std::move(printed.error()));
    }
    if (*printed) {
        return **std::move(printed);
    }
    return arguments;
}

} // namespace ombrel::lsp
