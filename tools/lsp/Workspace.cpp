#include "lsp/Workspace.h"

#include "files/Exclusion.h"
#include "files/Paths.h"
#include "options/OptionsReport.h"
#include "options/OptionsResolver.h"
#include "text/TextEncoding.h"

#include <filesystem>
#include <system_error>
#include <utility>

#include <fmt/format.h>

namespace ombrel::lsp {

namespace {

/// A file that is open in an editor is wanted, whatever git says about it.
class NothingIgnored : public IgnoredFiles {
public:
    void setScope(std::vector<std::string> /*paths*/) override {}
    bool isIgnored(const std::string& /*repository*/, const std::string& /*path*/,
                   bool /*isFolder*/) override {
        return false;
    }
    std::vector<std::string> getWarnings() const override { return {}; }
};

/// The disk, with the text of one document in place of its file.
class EditedFiles : public FileSystem {
public:
    EditedFiles(FileSystem& disk, std::string path, std::string bytes)
        : disk(disk), path(std::move(path)), bytes(std::move(bytes)) {}

    bool isFolder(const std::string& name) override { return disk.isFolder(name); }
    bool isThere(const std::string& name) override { return name == path || disk.isThere(name); }
    bool isForeign(const std::string& name) override { return disk.isForeign(name); }
    std::optional<FileIdentity> getIdentity(const std::string& name) override {
        return disk.getIdentity(name);
    }
    std::string read(const std::string& name, ReadLimit limit) override { return readRegular(name, limit); }
    std::string readRegular(const std::string& name, ReadLimit limit) override {
        return name == path ? bytes : disk.readRegular(name, limit);
    }
    void replace(const std::string& /*name*/, const std::string& /*before*/,
                 const std::string& /*after*/) override {
        throw FileError(FileError::Kind::Unwritable, "not written");
    }
    void write(const std::string& /*name*/, const std::string& /*text*/) override {
        throw FileError(FileError::Kind::Unwritable, "not written");
    }

private:
    FileSystem& disk;
    std::string path;
    std::string bytes;
};

} // namespace

void Workspace::setFolder(std::string path) {
    const std::lock_guard guard(mutex);
    folder = std::move(path);
}

void Workspace::setSettings(Settings newSettings) {
    const std::lock_guard guard(mutex);
    settings = std::make_shared<const Settings>(std::move(newSettings));
}

std::shared_ptr<const Settings> Workspace::getSettings() const {
    const std::lock_guard guard(mutex);
    return settings;
}

/// A document without a file has the options of a file in the folder that is open; empty without any.
std::string Workspace::getResolvedPath(const Document& document) const {
    if (document.path) {
        return *document.path;
    }
    const std::lock_guard guard(mutex);
    return folder.empty() ? "" : (std::filesystem::path(folder) / "untitled.omb").string();
}

namespace {

/// The options that apply unless a file says something: settings win over what an editor sends each time.
OptionsRequest makeRequest(const std::string& path, const std::vector<Setting>& editorOptions,
                           const Settings& settings) {
    OptionsRequest request;
    request.ignoresFiles = path.empty();
    request.fallbacks = editorOptions;
    request.fallbacks.insert(request.fallbacks.end(), settings.options.begin(), settings.options.end());
    if (request.ignoresFiles) {
        for (const Setting& setting : request.fallbacks) {
            request.settings.push_back({setting, "the editor"});
        }
    }
    return request;
}

} // namespace

DocumentOptions Workspace::resolve(const Document& document,
                                   const std::vector<Setting>& editorOptions) const {
    const std::string path = getResolvedPath(document);
    const OptionsRequest request = makeRequest(path, editorOptions, *getSettings());
    OptionsResolver resolver(request, files);
    std::vector<OptionsFault> faults = resolver.prepare({path});
    {
        const std::lock_guard guard(mutex);
        const auto read = resolver.getOptionsFiles();
        optionsFiles.insert(read.begin(), read.end());
    }
    if (!faults.empty()) {
        return {std::move(faults), {}};
    }
    return {{}, resolver.resolve(path), resolver.getEditorConfigRemarks()};
}

std::string Workspace::explain(const Document& document, const std::vector<Setting>& editorOptions) const {
    const std::string path = getResolvedPath(document);
    const OptionsRequest request = makeRequest(path, editorOptions, *getSettings());
    OptionsResolver resolver(request, files);
    const std::vector<OptionsFault> faults = resolver.prepare({path});
    if (faults.empty()) {
        return describeOptions(resolver.explain(path));
    }
    std::string lines;
    for (const OptionsFault& fault : faults) {
        for (const Problem& problem : fault.problems) {
            lines += fmt::format("{}:{}: {}\n", fault.path, problem.line, problem.text);
        }
    }
    return lines;
}

bool Workspace::isIgnored(const Document& document) const {
    if (!document.path) {
        return false;
    }
    std::error_code error;
    const auto real = std::filesystem::weakly_canonical(*document.path, error);
    NothingIgnored nothing;
    const SearchOptions options;
    Exclusion exclusion(options, files, nothing);
    return exclusion.decideFromTop(error ? *document.path : real.string(), false).isExcluded;
}

Problems Workspace::checkOptionsFile(const Document& document) const {
    const std::string path = document.path.value_or("/" + std::string(optionsFileName));
    EditedFiles edited(files, path, encodeLossy(document.text));
    OptionsFileSet set(edited);
    set.load(path, true);
    for (OptionsFault& fault : set.getFaults()) {
        if (fault.path == path) {
            return std::move(fault.problems);
        }
    }
    return {};
}

std::set<std::string> Workspace::getOptionsFiles() const {
    const std::lock_guard guard(mutex);
    return optionsFiles;
}

} // namespace ombrel::lsp
