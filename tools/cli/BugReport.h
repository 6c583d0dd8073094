#pragma once

#include "cli/FileFormatter.h"
#include "options/OptionsResolver.h"

#include <cstddef>
#include <memory>
#include <string>

#include <nlohmann/json_fwd.hpp>

namespace ombrel {

/// What a report about a fault of the formatter needs, for the files that ended with status 5: their
/// problems, the options that apply to them and where each comes from, their text, and the text that the
/// formatter made of it. At most 20 files, so that a formatter that fails everywhere doesn't fill the memory.
class BugReport {
public:
    /// Keeps the options by reference.
    explicit BugReport(const OptionsResolver& options);
    ~BugReport();

    /// Files that haven't failed in this way don't count.
    void add(const FileResult& result);

    std::size_t getFileCount() const { return count; }

    /// A JSON document in ASCII, which arrives as it is whatever it is sent through.
    std::string make() const;

private:
    static constexpr std::size_t most = 20;

    const OptionsResolver& options;
    std::unique_ptr<nlohmann::ordered_json> files;
    std::size_t count = 0; ///< that failed
};

} // namespace ombrel
