#pragma once

#include "diagnostics/Problem.h"
#include "options/OptionValue.h"
#include "options/OptionsRequest.h"

#include <map>
#include <string>
#include <utility>
#include <vector>

namespace ombrel {

struct OptionsLayer;

/// Whose setting of an option applies to a file. At most one of the pointers isn't null.
struct SettingInForce {
    const Option* option;
    ca::utils::JsonValue value;
    bool isDefault = true;
    std::uint32_t line = 0;                      ///< in the options file
    const OptionsLayer* layer = nullptr;         ///< the options file that sets it
    bool isOverride = false;                     ///< of the layer
    bool isFallback = false;                     ///< an editor sets it
    const CommandLineSetting* command = nullptr; ///< the word of the command line that sets it
};

/// Settings for one file, one for each option in the order of the table.
using SettingsInForce = std::vector<SettingInForce>;

/// Finds options that somebody has set and that do nothing: options of the engine that isn't used, and those
/// that need another option to be on. One that has an effect on any file of the run is fine.
class EffectCheck {
public:
    /// `nearest` is the options file whose settings are looked at, besides those of the command line: files
    /// that others share may well have options for both engines. Null: there is none.
    void add(const SettingsInForce& settings, const OptionsLayer* nearest);

    struct Remark {
        const OptionsLayer* layer; ///< null: the command line
        Problem problem;           ///< with the code OptionWithoutEffect
    };

    /// In the order in which they were found.
    std::vector<Remark> getRemarks() const;

private:
    struct Finding {
        Remark remark;
        bool hasEffect;
    };
    using Setter = std::pair<const void*, const Option*>; ///< a layer or a command, and what it sets

    std::map<Setter, std::size_t> numbers; ///< of findings
    std::vector<Finding> findings;
};

} // namespace ombrel
