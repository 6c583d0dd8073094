#pragma once

#include "ca/astapi/StringId.h"
#include "ca/config/ConfigIssue.h"
#include "ca/config/ConfigSource.h"
#include "ombrel/api.h"

#include <memory>
#include <mutex>
#include <unordered_map>
#include <unordered_set>

namespace ca::config {

/// A configuration: a source, and the sections that were made from it. A section belongs to one consumer, is
/// made when it is asked for the first time, and never changes: to see a changed file, make a new `Config`.
///
/// All operations may be called from any thread.
class OMBREL_HOST_API Config {
public:
    /// The source may be empty; such a configuration has no issues and no usable sections.
    explicit Config(std::shared_ptr<ConfigSource> source);

    /// The section of a consumer; the same object each time. Empty if its consumer can make nothing of the
    /// source. The consumer specialises this for its section type.
    ///
    /// A section is made under the lock of its configuration, and while that is held the configurations
    /// below are asked for theirs: locks are taken from the top layer downward only.
    template <class Section>
    std::shared_ptr<Section> get() const;

    /// What is wrong with the source itself, whatever its sections say.
    std::unordered_set<ConfigIssue> getSourceIssues() const;

    /// May be empty.
    const std::shared_ptr<ConfigSource>& getSource() const { return source; }

private:
    /// Makes a section, for `get`, which holds the lock. The pointer is to the complete object, whose first
    /// and only base has to be `Section`. The consumer specialises this too.
    template <class Section>
    std::shared_ptr<void> create() const;

    std::shared_ptr<ConfigSource> source;
    mutable std::unordered_map<ca::astapi::StringId, std::shared_ptr<void>> sections;
    mutable std::mutex lock; ///< guards `sections`
};

} // namespace ca::config
