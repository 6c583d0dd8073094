#include "ca/astapi/StringId.h"

#include <mutex>
#include <string>
#include <unordered_set>

namespace ca::astapi {

namespace {

/// The one copy of a text. Never freed, and so is its table: handles are kept by objects of any life.
const void* intern(const char16_t* text) {
    static std::mutex lock;
    static auto& texts = *new std::unordered_set<std::u16string>;
    const std::lock_guard guard(lock);
    return &*texts.emplace(text).first;
}

} // namespace

StringId::StringId(const char16_t* text) : handle(intern(text)) {}

} // namespace ca::astapi
