#pragma once

#include "diagnostics/Message.h"
#include "reports/Changes.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace ombrel {

enum class FileStatus {
    Unchanged, ///< already formatted, or only checked for syntax
    Formatted, ///< written back or printed
    WouldChange,
    Failed, ///< nothing was written
};

/// What became of one file.
struct FileOutcome {
    std::string path; ///< as the user knows it: bytes, not always UTF-8
    FileStatus status = FileStatus::Unchanged;
    std::uint32_t firstChangedLine = 0; ///< of a file that would change, from 1; 0 if it isn't known
    std::vector<Message> messages;      ///< errors and warnings
    std::vector<Change> changes = {};   ///< of a file that would change, in order; empty if they aren't known
};

/// The word for a status: "unchanged", "formatted", "would-change", "failed".
const char* getWord(FileStatus status);

/// All that is wrong with a file: its messages, and what would change. Of changes the first 20 are findings
/// of their own, and one finding counts the others. If they aren't known there is one with a line but no
/// column.
Problems getFindings(const FileOutcome& outcome);

/// The same without its changes, unless they aren't known.
Problems getOtherFindings(const FileOutcome& outcome);

/// The finding that a change is.
Problem makeFinding(const Change& change);

/// Reports how a run went. One reporter serves one run, and is called on one thread at a time.
class Reporter {
public:
    virtual ~Reporter() = default;

    /// Called once for each file, in the order of the input whatever order they were formatted in.
    virtual void add(const FileOutcome& outcome) = 0;

    /// Called for a problem that belongs to no file and kept the run from formatting any.
    virtual void addFailure(const Problem& problem) = 0;

    /// Called once, after the last file.
    virtual void finish() {}
};

/// A reporter with a list of findings, whatever they are from.
class FindingReporter : public Reporter {
public:
    void add(const FileOutcome& outcome) override;
    void addFailure(const Problem& problem) override { addFinding(".", problem); }

private:
    /// A problem with the run as a whole is one of the current folder.
    virtual void addFinding(const std::string& path, const Problem& problem) = 0;

    /// All changes of a file. As they are in getFindings(), unless a reporter has more to say of them.
    virtual void addChanges(const std::string& path, const std::vector<Change>& changes);
};

} // namespace ombrel
