#pragma once

#include "diagnostics/Result.h"
#include "files/FileSystem.h"
#include "format/Options.h"
#include "lsp/Document.h"
#include "lsp/Settings.h"
#include "options/OptionsFileSet.h"

#include <memory>
#include <mutex>
#include <set>
#include <string>
#include <vector>

namespace ombrel::lsp {

/// What decides how a document is formatted.
struct DocumentOptions {
    std::vector<OptionsFault> faults; ///< of options files that apply: then there are no options
    FileOptions options;
    std::vector<OptionsFault> ignoredValues = {}; ///< of .editorconfig files
};

/// The folders and settings that the editor has told, and the files of the disk that options come from. The
/// disk is asked each time: so an answer is what the command line would give at that moment, whether or not
/// the editor watches files. May be used by several threads at once.
class Workspace {
public:
    /// The files have to outlive it.
    explicit Workspace(FileSystem& files) : files(files) {}

    void setFolder(std::string path);
    void setSettings(Settings newSettings);
    std::shared_ptr<const Settings> getSettings() const;

    /// The options for a document. `editorOptions` are those of one request; settings win over them, and any
    /// file that has options for the document over both.
    DocumentOptions resolve(const Document& document, const std::vector<Setting>& editorOptions) const;

    /// The same as a table for people, or the faults as lines.
    std::string explain(const Document& document, const std::vector<Setting>& editorOptions) const;

    /// Whether an ignore file leaves the document out.
    bool isIgnored(const Document& document) const;

    /// What is wrong with an open options file: with the text in the editor, whatever is on disk.
    Problems checkOptionsFile(const Document& document) const;

    /// The options files that have been read so far.
    std::set<std::string> getOptionsFiles() const;

private:
    std::string getResolvedPath(const Document& document) const;

    FileSystem& files;
    mutable std::mutex mutex; ///< guards what follows
    std::string folder;
    std::shared_ptr<const Settings> settings = std::make_shared<const Settings>();
    mutable std::set<std::string> optionsFiles;
};

} // namespace ombrel::lsp
