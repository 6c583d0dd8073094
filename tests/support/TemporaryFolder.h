#pragma once

#include <filesystem>
#include <string>

#include <sys/stat.h>

/// The bytes of any file; none if it can't be read.
std::string readFile(const std::filesystem::path& path);

/// A folder for one test, removed with everything in it at the end. Names are relative to it.
class TemporaryFolder {
public:
    TemporaryFolder();
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;
    ~TemporaryFolder();

    const std::filesystem::path& getPath() const { return folder; }

    void write(const std::string& name, const std::string& bytes) const;
    std::string read(const std::string& name) const;
    struct stat getStatus(const std::string& name) const;
    std::size_t countFiles() const;

    /// Runs a script of the shell in the folder. It can call ombrel-format as `format`, or as "$program" in
    /// what runs other programs. Returns its exit status, 128 + number if a signal ended it.
    int shell(const std::string& script) const;

private:
    std::filesystem::path folder;
};

/// A temporary folder that is the current one while it lives.
class CurrentFolder : public TemporaryFolder {
public:
    CurrentFolder() { std::filesystem::current_path(getPath()); }
    ~CurrentFolder() { std::filesystem::current_path(before); }

private:
    const std::filesystem::path before = std::filesystem::current_path();
};
