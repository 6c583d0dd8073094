#pragma once

#include "files/IgnoredFiles.h"
#include "process/Process.h"

#include <map>
#include <optional>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <vector>

namespace ombrel {

/// Which files git ignores, from git itself, which is asked once for each repository that matters, and once
/// for each name in the scope that isn't on the disk. Nothing is ignored where there is no git.
class GitIgnore : public IgnoredFiles {
public:
    void setScope(std::vector<std::string> paths) override;
    bool isIgnored(const std::string& repository, const std::string& path, bool isFolder) override;
    std::vector<std::string> getWarnings() const override;

private:
    using Paths = std::unordered_set<std::string>; ///< relative to the repository; folders end in a slash

    std::optional<ProcessResult> ask(const std::string& repository, const std::vector<std::string>& words,
                                     int highestStatus);
    const Paths& getIgnored(const std::string& repository);
    bool isNameIgnored(const std::string& repository, const std::string& name);
    std::vector<std::string> getScopeIn(const std::string& repository) const;

    std::vector<std::string> scope;
    std::unordered_set<std::string> missing; ///< of the scope, what isn't on the disk
    std::unordered_map<std::string, Paths> repositories;
    std::map<std::string, std::string> failures; ///< repositories for which git failed, and what it said
};

} // namespace ombrel
