#include "files/Exclusion.h"

#include "files/Paths.h"

#include <cstdint>
#include <filesystem>
#include <string_view>
#include <utility>

#include <fmt/format.h>

namespace ombrel {

namespace {

constexpr std::uint64_t maximalSize = 1 << 20; // bytes of one ignore file

} // namespace

Exclusion::Exclusion(const SearchOptions& options, FileSystem& files, IgnoredFiles& ignored)
    : files(files), ignored(ignored), honorsGitignore(options.honorsGitignore) {
    currentFolder = getCurrentFolder();
    for (const std::string& pattern : options.patterns) {
        commandLine.add(pattern);
    }
}

void Exclusion::begin(const std::string& folder) {
    levels.clear();
    const std::string repository = files.findRepository(folder);
    const std::string top = repository.empty() ? "/" : repository;
    std::filesystem::path path = top;
    levels.push_back({top, repository, readRules(top)});
    if (folder == top) {
        return;
    }
    for (const std::filesystem::path& part : std::filesystem::path(getPathFrom(top, folder))) {
        path /= part;
        levels.push_back({path, repository, readRules(path)});
    }
}

void Exclusion::enter(const std::string& folder) {
    const bool isRepository = files.isThere(std::filesystem::path(folder) / ".git");
    levels.push_back({folder, isRepository ? folder : levels.back().repository, readRules(folder)});
}

IgnoreRules Exclusion::readRules(const std::string& folder) {
    const std::filesystem::path path = std::filesystem::path(folder) / ignoreFileName;
    if (!files.isThere(path)) {
        return {};
    }
    try {
        return IgnoreRules(files.readRegular(path, maximalSize));
    } catch (const FileError& error) {
        unreadable.push_back(
            fmt::format("{}: {}, so its rules don't apply", getShortPath(currentFolder, path), error.what()));
        return {};
    }
}

std::optional<Exclusion::Decision> Exclusion::askCommandLine(const std::string& path, bool isFolder) const {
    if (commandLine.isEmpty()) {
        return std::nullopt;
    }
    const auto match = commandLine.match(getPathFrom(currentFolder, path), isFolder);
    if (!match) {
        return std::nullopt;
    }
    if (match->isIgnored) {
        return Decision{true, false, "--exclude " + match->pattern};
    }
    return Decision{false, true, "--include " + match->pattern.substr(1)};
}

std::optional<Exclusion::Decision> Exclusion::askIgnoreFiles(const std::string& path, bool isFolder) const {
    for (auto level = levels.rbegin(); level != levels.rend(); ++level) {
        if (level->rules.isEmpty() || !isBelow(level->folder, path)) {
            continue;
        }
        if (const auto match = level->rules.match(getPathFrom(level->folder, path), isFolder)) {
            const auto file = std::filesystem::path(level->folder) / ignoreFileName;
            return Decision{
                match->isIgnored, false,
                fmt::format("{}:{}: {}", getShortPath(currentFolder, file), match->line, match->pattern)};
        }
    }
    return std::nullopt;
}

Exclusion::Decision Exclusion::decide(const std::string& path, bool isFolder) {
    if (auto decision = askCommandLine(path, isFolder)) {
        return *decision;
    }
    if (auto decision = askIgnoreFiles(path, isFolder)) {
        return *decision;
    }
    const std::string& repository = levels.back().repository;
    const bool isIgnored = honorsGitignore && !repository.empty() && isBelow(repository, path) &&
                           ignored.isIgnored(repository, path, isFolder);
    return {isIgnored, false, isIgnored ? "ignored by git" : ""};
}

Exclusion::Decision Exclusion::decideFromTop(const std::string& path, bool isFolder) {
    begin(std::filesystem::path(path).parent_path());
    std::filesystem::path part = levels.front().folder;
    for (const std::filesystem::path& name : std::filesystem::path(getPathFrom(part, path))) {
        part /= name;
        Decision decision = decide(part, part != path || isFolder);
        if (decision.isExcluded || part == path) {
            return decision;
        }
    }
    return {};
}

std::vector<std::string> Exclusion::getWarnings() const {
    std::vector<std::string> warnings = unreadable;
    for (std::string& warning : ignored.getWarnings()) {
        warnings.push_back(std::move(warning));
    }
    return warnings;
}

} // namespace ombrel
