#pragma once

#include "files/IgnoredFiles.h"

#include <string>
#include <unordered_map>
#include <unordered_set>
#include <utility>
#include <vector>

namespace ombrel {

/// Which files git ignores, from git itself, which is asked once for each repository that matters. Nothing is
/// ignored where there is no git.
class GitIgnore : public IgnoredFiles {
public:
    void setScope(std::vector<std::string> paths) override { scope = std::move(paths); }
    bool isIgnored(const std::string& repository, const std::string& path, bool isFolder) override;
    std::vector<std::string> getWarnings() const override;

private:
    using Paths = std::unordered_set<std::string>; ///< relative to the repository; folders end in a slash

    const Paths& getIgnored(const std::string& repository);
    std::vector<std::string> getScopeIn(const std::string& repository) const;

    std::vector<std::string> scope;
    std::unordered_map<std::string, Paths> repositories;
    std::vector<std::pair<std::string, std::string>>
        failures; ///< repositories for which git failed, and what it said
};

} // namespace ombrel
