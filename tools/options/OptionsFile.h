#pragma once

#include "diagnostics/Problem.h"
#include "files/IgnoreRules.h"
#include "options/OptionValue.h"

#include <ca/utils/JsonValue.h>

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace ombrel {

/// A key of an options file, or of one of its overrides, that is no option and no section of options.
struct FileKey {
    std::string_view name;
    std::string_view description;
};

/// "$schema", "requiredVersion", "root", "extends", "overrides".
std::span<const FileKey> getFileKeys();

/// "files", the one key that an override has to have.
const FileKey& getFilesKey();

/// A file that is the base of another, as it is named in "extends".
struct Extension {
    std::string name; ///< UTF-8, not empty
    std::optional<ca::utils::JsonSpan> place;
};

/// Settings for some of the files.
struct Override {
    std::vector<IgnoreRule> rules; ///< of "files", the last that matches decides
    std::vector<Setting> settings;

    /// `path` is relative to the folder of the options file.
    bool isFor(std::string_view path) const;
};

/// What one options file says. Where it is wrong there is a problem, and the rest is read all the same. If it
/// is for other versions of this program, that is the only problem: what else it says may well be right
/// there.
struct OptionsFile {
    std::u16string text;
    bool isRoot = true; ///< options files in folders above are ignored
    std::vector<Extension> extensions;
    std::vector<Setting> settings;
    std::vector<Override> overrides;
    Problems problems;
};

/// Reads the bytes of an options file: JSON with comments and trailing commas, in UTF-8.
OptionsFile readOptionsFile(std::string_view bytes);

} // namespace ombrel
