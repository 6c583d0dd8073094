#pragma once

#include <string>
#include <vector>

namespace ombrel {

/// What the repositories of a search ignore. A search knows no version control: whoever starts it hands in
/// what does. All paths are absolute and without symbolic links.
class IgnoredFiles {
public:
    virtual ~IgnoredFiles() = default;

    /// Called once before the first question: files and folders that the search starts from. It asks about
    /// nothing else than them and what is below them.
    virtual void setScope(std::vector<std::string> paths) = 0;

    /// `repository` is the folder of the innermost repository that `path` is in. Of what is below an ignored
    /// folder only the folder is known to be ignored.
    virtual bool isIgnored(const std::string& repository, const std::string& path, bool isFolder) = 0;

    /// Why some repositories could not be asked, as sentences.
    virtual std::vector<std::string> getWarnings() const = 0;
};

} // namespace ombrel
