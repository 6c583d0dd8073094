#include "support/TemporaryFolder.h"

#include <cstdlib>
#include <fstream>
#include <iterator>
#include <stdexcept>

namespace fs = std::filesystem;

std::string readFile(const fs::path& path) {
    std::ifstream stream(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

TemporaryFolder::TemporaryFolder() {
    std::string pattern = fs::canonical(fs::temp_directory_path()) / "ombrel-XXXXXX";
    if (::mkdtemp(pattern.data()) == nullptr) {
        throw std::runtime_error("can't make a temporary folder");
    }
    folder = pattern;
}

TemporaryFolder::~TemporaryFolder() {
    fs::remove_all(folder);
}

void TemporaryFolder::write(const std::string& name, const std::string& bytes) const {
    fs::create_directories((folder / name).parent_path());
    std::ofstream(folder / name) << bytes;
}

std::string TemporaryFolder::read(const std::string& name) const {
    return readFile(folder / name);
}

struct stat TemporaryFolder::getStatus(const std::string& name) const {
    struct stat status {};
    ::stat((folder / name).c_str(), &status);
    return status;
}

std::size_t TemporaryFolder::countFiles() const {
    return static_cast<std::size_t>(std::distance(fs::directory_iterator(folder), {}));
}

int TemporaryFolder::shell(const std::string& script) const {
    const std::string program = OMBREL_FORMAT_PROGRAM;
    const std::string command = "cd '" + folder.string() + "' && format() { '" + program +
                                "' \"$@\"; } && program='" + program + "' && { " + script + "\n}";
    const int status = std::system(command.c_str());
    return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
}
