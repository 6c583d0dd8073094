#pragma once

#include "ombrel/api.h"

#include <cstddef>
#include <cstdint>
#include <functional>

namespace ca::astapi {

/// A text as one word: equal texts have equal handles, from whichever thread and library. Interned texts are
/// kept until the process ends.
class OMBREL_HOST_API StringId {
public:
    /// `text` ends with its first U+0000 and is copied. Must not be null.
    explicit StringId(const char16_t* text);

    friend bool operator==(const StringId&, const StringId&) = default;

private:
    friend std::hash<StringId>;

    const void* handle;
};

} // namespace ca::astapi

/// The word itself.
template <>
struct std::hash<ca::astapi::StringId> {
    std::size_t operator()(const ca::astapi::StringId& id) const noexcept {
        return reinterpret_cast<std::uintptr_t>(id.handle);
    }
};
