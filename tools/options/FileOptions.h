#pragma once

#include "format/Options.h"
#include "options/OptionTable.h"

#include <ca/utils/JsonValue.h>

#include <optional>
#include <vector>

namespace ombrel {

/// A value, or none, for each option of the table.
class OptionValues {
public:
    OptionValues() : values(getOptions().size()) {}

    void set(const Option& option, const ca::utils::JsonValue& value) { values[getIndex(option)] = value; }

    /// Null if the option has its default.
    const ca::utils::JsonValue* get(const Option& option) const {
        const auto& value = values[getIndex(option)];
        return value ? &*value : nullptr;
    }

private:
    static std::size_t getIndex(const Option& option) {
        return static_cast<std::size_t>(&option - getOptions().data());
    }

    std::vector<std::optional<ca::utils::JsonValue>> values;
};

FileOptions makeFileOptions(const OptionValues& values);

} // namespace ombrel
