#include "files/RepositoryNames.h"

#include "files/Paths.h"

#include <utility>

namespace ombrel {

std::string RepositoryNames::getName(const std::string& path, const std::string& start) {
    std::string folder = getFolder(path);
    if (folder != lastFolder) {
        lastRepository = files->findRepository(folder);
        lastFolder = std::move(folder);
    }
    return getShortPath(lastRepository.empty() ? start : lastRepository, path);
}

} // namespace ombrel
