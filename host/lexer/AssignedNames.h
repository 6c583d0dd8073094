#pragma once

#include <cstddef>
#include <string_view>
#include <unordered_set>
#include <vector>

namespace ca::lexer {

/// The names that one function, or the script itself, has assigned so far.
///
/// Nearly every statement adds a name and hardly any asks for one, so adding is only noted down, and the set
/// is made of the notes when a question comes. The names point into the text.
class AssignedNames {
public:
    void add(std::u16string_view name) { notes.push_back(name); }

    bool contains(std::u16string_view name) {
        names.insert(notes.begin(), notes.end());
        notes.clear();
        return names.contains(name);
    }

private:
    std::vector<std::u16string_view> notes;
    std::unordered_set<std::u16string_view> names;
};

} // namespace ca::lexer
