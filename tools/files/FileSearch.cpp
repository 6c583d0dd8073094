// The paths are looked at in the order in which they were named, folders from the top down and by name.
// Everything that the search comes across is recorded with a verdict and a reason, so that a user can be told
// why a file was left out. Whether two paths lead to the same file, or a link leads out of the named folders,
// is decided by real paths; shown is always the path that the user would write:
//
//     named       src, src/b.omb
//     recorded    src/a.omb  taken
//                 src/b.omb  taken
//                 src/old/   left: excluded by a pattern
//                 src/b.omb  left: taken before

#include "files/FileSearch.h"

#include "files/Exclusion.h"
#include "files/Folder.h"
#include "files/Paths.h"
#include "files/RepositoryNames.h"

#include <algorithm>
#include <filesystem>
#include <string_view>
#include <system_error>
#include <unordered_set>
#include <utility>

#include <fmt/format.h>

namespace ombrel {

namespace {

namespace fs = std::filesystem;
using Verdict = FoundFile::Verdict;

/// Without symbolic links; as it is if it doesn't exist.
std::string getRealPath(const std::string& path) {
    std::error_code error;
    const fs::path real = fs::canonical(path, error);
    return error ? path : real.string();
}

/// The same for a name of which only folders have to exist.
std::string getRealName(const std::string& name) {
    std::error_code error;
    const fs::path real = fs::weakly_canonical(fs::absolute(name, error), error);
    return error ? name : real.string();
}

/// Whether a folder is a `.git` or in one, unless the current folder is too: that can't be by mistake.
bool isInGit(const std::string& real) {
    std::error_code error;
    const std::string current = fs::current_path(error).string();
    const std::string path = isBelow(current, real) ? getShortPath(current, real) : real;
    return ('/' + path + '/').find("/.git/") != std::string::npos && current != real;
}

/// Of a link; empty, which is outside of all folders, if it can't be told.
std::string getTarget(const std::string& link) {
    std::error_code error;
    const fs::path target = fs::canonical(link, error);
    return error ? std::string() : target.string();
}

/// What is shown before the names found in a folder; nothing for the current one.
std::string getShownFolder(std::string path) {
    while (path.size() > 1 && path.ends_with('/')) {
        path.pop_back();
    }
    return path == "." ? "" : path;
}

/// A file with the name that means standard input is shown as what it is.
std::string getShownPath(const std::string& folder, const std::string& name) {
    if (folder.empty()) {
        return name == "-" ? "./-" : name;
    }
    return folder + (folder.ends_with('/') ? "" : "/") + name;
}

using Entry = FolderEntry;

/// By name, in the order of bytes.
std::vector<Entry> readFolder(const fs::path& folder, std::error_code& error) {
    std::vector<Entry> entries = readEntries(folder, error);
    std::sort(entries.begin(), entries.end(), [](const Entry& a, const Entry& b) { return a.name < b.name; });
    return entries;
}

class Search {
public:
    /// `folders` are the real paths of the folders that were named.
    Search(const SearchOptions& options, FileSystem& files, IgnoredFiles& ignored,
           std::vector<std::string> folders)
        : options(options), exclusion(options, files, ignored), names(files), folders(std::move(folders)) {}

    void addStandardInput() {
        const bool isLeft = options.forcesExclusion && !options.stdinName.empty();
        const auto decision =
            isLeft ? exclusion.decideFromTop(getRealName(options.stdinName), false) : Exclusion::Decision{};
        if (decision.isExcluded) {
            leaveNamed("-", decision.reason);
        } else {
            record("-", Verdict::Taken, "named");
        }
    }

    void addFile(const std::string& path) {
        std::error_code error;
        if (options.listsOnly && !fs::exists(path, error)) {
            refuse(path, path, "there is no such file");
        } else if (!isForcedOut(path, false)) {
            start = currentFolder;
            take(path, getRealPath(path), "named");
        }
    }

    void addFolder(const std::string& path) {
        result.hasFolder = true;
        const std::string real = getRealPath(path);
        if (isInGit(real)) {
            leaveNamed(path, "it belongs to git");
            return;
        }
        if (isForcedOut(path, true)) {
            return;
        }
        start = real;
        exclusion.begin(real);
        walk(real, getShownFolder(path));
    }

    SearchResult finish() {
        result.warnings = exclusion.getWarnings();
        return std::move(result);
    }

private:
    bool isForcedOut(const std::string& path, bool isFolder) {
        if (!options.forcesExclusion) {
            return false;
        }
        const auto decision = exclusion.decideFromTop(getRealPath(path), isFolder);
        if (decision.isExcluded) {
            leaveNamed(path, decision.reason);
        }
        return decision.isExcluded;
    }

    void leaveNamed(const std::string& path, const std::string& reason) {
        record(path, Verdict::Left, reason);
        result.files.back().isNamed = true;
    }

    /// Looks through a folder that the exclusion has just begun with or entered.
    void walk(const std::string& real, const std::string& shown) {
        std::error_code error;
        for (const Entry& entry : readFolder(real, error)) {
            if (entry.name != ".git") {
                visit(entry, (fs::path(real) / entry.name).string(), getShownPath(shown, entry.name));
            }
        }
        if (error) {
            refuse(shown.empty() ? "." : shown, real, "can't read this folder: " + error.message());
        }
    }

    void visit(const Entry& entry, const std::string& real, const std::string& shown) {
        if (entry.kind == Entry::Kind::Folder) {
            visitFolder(real, shown);
        } else if (entry.kind == Entry::Kind::LinkToFolder) {
            record(shown, Verdict::Left, "a symbolic link to a folder");
        } else if (entry.name.ends_with(".omb") || !options.patterns.empty()) {
            visitFile(entry, real, shown);
        }
    }

    void visitFolder(const std::string& real, const std::string& shown) {
        const auto decision = exclusion.decide(real, true);
        if (decision.isExcluded) {
            record(shown + '/', Verdict::Left, decision.reason);
            return;
        }
        exclusion.enter(real);
        walk(real, shown);
        exclusion.leave();
    }

    void visitFile(const Entry& entry, const std::string& real, const std::string& shown) {
        const auto decision = exclusion.decide(real, false);
        if (!decision.isWanted && !entry.name.ends_with(".omb")) {
            return;
        }
        if (decision.isExcluded) {
            record(shown, Verdict::Left, decision.reason);
        } else if (entry.kind == Entry::Kind::DeadLink) {
            record(shown, Verdict::Left, "a symbolic link to nothing");
        } else if (entry.kind == Entry::Kind::Other) {
            record(shown, Verdict::Left, "not a regular file");
        } else if (const std::string target = entry.isLink ? getTarget(real) : real; isInNamed(target)) {
            take(shown, target, decision.reason.empty() ? "found" : decision.reason);
        } else {
            record(shown, Verdict::Left, "a symbolic link to a file outside");
        }
    }

    /// A tree can have links to any file of the machine, and to what belongs to git and not to its user.
    bool isInNamed(const std::string& real) const {
        const auto isIn = [&](const std::string& folder) {
            return isBelow(folder, real) &&
                   ('/' + getShortPath(folder, real)).find("/.git/") == std::string::npos;
        };
        return std::any_of(folders.begin(), folders.end(), isIn);
    }

    void take(const std::string& path, const std::string& real, const std::string& reason) {
        if (!taken.insert(real).second) {
            record(path, Verdict::Left, "taken before");
        } else if (!isForOtherShard(path, real)) {
            record(path, Verdict::Taken, reason);
        }
    }

    void refuse(const std::string& path, const std::string& real, const std::string& reason) {
        if (!unreadable.insert(real).second) {
            record(path, Verdict::Left, "reported before");
        } else if (!isForOtherShard(path, real)) {
            record(path, Verdict::Unreadable, reason);
        }
    }

    bool isForOtherShard(const std::string& path, const std::string& real) {
        const Shard& shard = options.shard;
        if (shard.count == 1) {
            return false;
        }
        const std::uint32_t number = getShardNumber(names.getName(real, start), shard.count);
        if (number == shard.number) {
            return false;
        }
        result.hasOtherShards = true;
        record(path, Verdict::Left, fmt::format("in shard {}/{}", number, shard.count));
        return true;
    }

    void record(const std::string& path, Verdict verdict, const std::string& reason) {
        result.files.push_back({path, verdict, reason});
    }

    const SearchOptions& options;
    Exclusion exclusion;
    RepositoryNames names;
    std::vector<std::string> folders;
    const std::string currentFolder = getRealPath(".");
    std::string start;                     ///< the named folder that is looked through, or the current one
    std::unordered_set<std::string> taken; ///< real paths
    std::unordered_set<std::string> unreadable; ///< real paths too, where there are any
    SearchResult result;
};

} // namespace

SearchResult findFiles(const std::vector<std::string>& paths, const SearchOptions& options, FileSystem& files,
                       IgnoredFiles& ignored) {
    std::vector<bool> isFolder;
    std::vector<std::string> folders;
    std::vector<std::string> scope;
    for (const std::string& path : paths) {
        isFolder.push_back(path != "-" && files.isFolder(path));
        if (isFolder.back() || options.forcesExclusion) {
            scope.push_back(getRealPath(path));
        }
        if (isFolder.back()) {
            folders.push_back(scope.back());
        }
    }
    if (options.forcesExclusion && !options.stdinName.empty()) {
        scope.push_back(getRealName(options.stdinName));
    }
    ignored.setScope(std::move(scope));
    Search search(options, files, ignored, std::move(folders));
    for (std::size_t i = 0; i < paths.size(); ++i) {
        if (paths[i] == "-") {
            search.addStandardInput();
        } else if (isFolder[i]) {
            search.addFolder(paths[i]);
        } else {
            search.addFile(paths[i]);
        }
    }
    return search.finish();
}

} // namespace ombrel
