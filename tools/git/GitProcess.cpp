#include "git/GitProcess.h"

#include "text/ListSplitter.h"
#include "text/Printable.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <filesystem>
#include <system_error>

#include <fmt/format.h>

namespace ombrel {

// A repository that somebody else made must not be able to run a program through us. These are the keys of
// git's configuration that can name one, and why none of them is run here.
//
// Switched off for every command:
//
// - core.fsmonitor: set to false
// - core.hooksPath, and the folder hooks/: hooks are looked for in /dev/null
// - core.pager, pager.*: --no-pager, and our end of git's output is no terminal
// - filter.*.clean, .smudge, .process; diff.*.command, .textconv; hook.*.command: disableDrivers()
// - diff.external: --no-ext-diff and --no-textconv
//
// Only for connections, and there are none, since GIT_ALLOW_PROTOCOL allows a protocol that doesn't exist,
// whatever protocol.*.allow says; else reading an object that extensions.partialClone promises elsewhere
// would fetch it:
//
// - core.sshCommand, ssh.variant, core.gitProxy, core.askPass, credential.helper, credential.*.helper
// - remote.*.uploadpack, .receivepack, .vcs; url.*; uploadpack.packObjectsHook; imap.tunnel
// - core.alternateRefsCommand
//
// Only in commands that aren't used here:
//
// - core.editor, sequence.editor: those that write commits or tags
// - alias.*: never looked up for the names of git's own commands
// - gpg.program, gpg.*.program, gpg.ssh.defaultKeyCommand: those that make or show signatures
// - merge.*.driver, mergetool.*, merge.tool: merges of contents; "apply" gets no --3way
// - submodule.*.update: "submodule". --ignore-submodules=all keeps git from asking submodules, which have
//   their own settings
// - gc.recentObjectsHook, gc.auto, maintenance.*: after fetching and committing
// - difftool.*, interactive.diffFilter, trailer.*, sendemail.*, browser.*, man.*, instaweb.*, guitool.*,
//   tar.*.command, receive.*, init.templateDir: the commands of these names
//
// The user's own configuration is switched off in the same way, since git doesn't tell the two apart.

namespace {

constexpr std::chrono::seconds timeLimit{60};
constexpr std::chrono::seconds patience{1}; // longer than git takes for all but the largest repositories

/// Of git's variables these are kept, besides those that configure it for one call (GIT_CONFIG_...): where
/// git itself is, and how far it looks for a repository.
constexpr std::array<std::string_view, 3> keptAlways = {"GIT_EXEC_PATH", "GIT_CEILING_DIRECTORIES",
                                                        "GIT_DISCOVERY_ACROSS_FILESYSTEM"};

/// These name a repository, or a part of it.
constexpr std::array<std::string_view, 7> keptForRepository = {"GIT_DIR",
                                                               "GIT_WORK_TREE",
                                                               "GIT_INDEX_FILE",
                                                               "GIT_COMMON_DIR",
                                                               "GIT_OBJECT_DIRECTORY",
                                                               "GIT_ALTERNATE_OBJECT_DIRECTORIES",
                                                               "GIT_QUARANTINE_PATH"};

constexpr const char* nothing = "OMBREL_FORMAT_NOTHING"; // a variable without text

bool isKept(std::string_view name, RepositoryChoice choice) {
    if (!name.starts_with("GIT_") || name.starts_with("GIT_CONFIG_")) {
        return true;
    }
    const auto contains = [&](const auto& names) {
        return std::find(names.begin(), names.end(), name) != names.end();
    };
    return contains(keptAlways) || (choice == RepositoryChoice::Environment && contains(keptForRepository));
}

namespace fs = std::filesystem;

/// The top of the work tree that a folder is in; the folder itself if it is in none.
fs::path findTop(const std::string& folder) {
    std::error_code error;
    const fs::path start = fs::canonical(folder, error);
    for (fs::path top = start; top != top.parent_path(); top = top.parent_path()) {
        if (fs::exists(top / ".git", error)) {
            return top;
        }
    }
    return start;
}

/// Whether git would open it, and then wait without an end.
bool isTrap(const fs::directory_entry& entry) {
    std::error_code error;
    const fs::path name = entry.path().filename();
    const bool isRead = name == ".gitignore" || name == ".gitattributes" || name == ".gitmodules" ||
                        entry.path().native().find("/.git/") != std::string::npos;
    return isRead && (entry.is_fifo(error) || entry.is_character_file(error));
}

/// Throws GitError with the name of the first pipe or device that git may be waiting for.
void refuseTraps(const std::string& folder) {
    const fs::path top = findTop(folder);
    std::error_code error;
    for (fs::recursive_directory_iterator entry(top, fs::directory_options::skip_permission_denied, error);
         !error && entry != fs::recursive_directory_iterator(); entry.increment(error)) {
        if (isTrap(*entry)) {
            throw GitError(fmt::format("git would wait for {}, which is no regular file",
                                       getPrintableName(entry->path().lexically_relative(top).string())));
        }
    }
}

} // namespace

std::string getPrintableLines(std::string_view text) {
    std::string lines;
    for (const std::string& line : splitList(text, '\n')) {
        lines += (lines.empty() ? "" : "\n") + getPrintableName(line);
    }
    return lines;
}

std::vector<std::string> makeGitEnvironment(RepositoryChoice choice) {
    std::vector<std::string> lines = getEnvironment();
    std::erase_if(lines, [&](const std::string& line) {
        return !isKept(std::string_view(line).substr(0, line.find('=')), choice);
    });
    lines.insert(lines.end(), {"GIT_ALLOW_PROTOCOL=none", "GIT_NO_LAZY_FETCH=1", "GIT_OPTIONAL_LOCKS=0",
                               "GIT_TERMINAL_PROMPT=0", std::string(nothing) + '='});
    return lines;
}

ProcessResult runGit(const std::vector<std::string>& words, const std::vector<std::string>& environment,
                     std::string_view input) {
    std::vector<std::string> all{
        "git", "--no-pager",           "-c", "core.fsmonitor=false", "-c", "core.hooksPath=/dev/null",
        "-c",  "protocol.allow=never", "-c", "credential.helper=",   "-c", "safe.bareRepository=explicit"};
    all.insert(all.end(), words.begin(), words.end());
    try {
        const std::string folder = words.size() > 1 && words.front() == "-C" ? words[1] : ".";
        return runProcess(all, environment, input, {timeLimit, patience, [&] { refuseTraps(folder); }});
    } catch (const std::system_error& error) {
        if (error.code() == std::errc::no_such_file_or_directory) {
            throw GitError("git isn't installed");
        }
        throw GitError(error.code() == std::errc::timed_out
                           ? fmt::format("git took longer than {} seconds", timeLimit.count())
                           : fmt::format("can't start git: {}", error.what()));
    }
}

std::vector<std::string> disableDrivers(const std::string& folder,
                                        const std::vector<std::string>& environment) {
    const ProcessResult result = runGit(
        {"-C", folder, "config", "-z", "--name-only", "--get-regexp",
         R"(^(filter\..*\.(clean|smudge|process|required)|diff\..*\.(command|textconv)|hook\..*\.command)$)"},
        environment);
    constexpr int noSuchKey = 1;
    if (result.status != 0 && result.status != noSuchKey) {
        throw GitError(
            fmt::format("git config failed ({}): {}", result.status, getPrintableLines(result.err)));
    }
    std::vector<std::string> options;
    for (std::string key : splitList(result.out, '\0')) {
        if (key.starts_with("hook.")) {
            key.replace(key.rfind('.') + 1, std::string::npos, "enabled");
        }
        // The value, nothing, comes from a variable, since an equals sign is allowed in a key's middle part.
        options.push_back("--config-env=" + key + '=' + nothing);
    }
    return options;
}

} // namespace ombrel
