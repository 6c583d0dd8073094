#pragma once

#include <string>
#include <unordered_map>
#include <unordered_set>
#include <vector>

namespace ombrel {

/// Knows which files git ignores, from git itself, which is asked once for each repository that matters.
/// Without git nothing is ignored.
class GitIgnore {
public:
    /// `scope` are the files and folders, absolute and without symbolic links, that will be asked about, and
    /// with them all that is below them.
    explicit GitIgnore(std::vector<std::string> scope) : scope(std::move(scope)) {}

    /// Both are absolute and without symbolic links. Of what is below an ignored folder only the folder is
    /// known to be ignored.
    bool isIgnored(const std::string& repository, const std::string& path, bool isFolder);

    /// The folder of the repository that a folder belongs to, empty if it belongs to none.
    static std::string findRepository(const std::string& folder);

    /// Repositories for which git failed.
    const std::vector<std::string>& getFailures() const { return failures; }

private:
    using Paths = std::unordered_set<std::string>; ///< relative to the repository; folders end in a slash

    const Paths& getIgnored(const std::string& repository);
    std::vector<std::string> getScopeIn(const std::string& repository) const;

    std::vector<std::string> scope;
    std::unordered_map<std::string, Paths> repositories;
    std::vector<std::string> failures;
};

} // namespace ombrel
