#pragma once

#include <cstddef>
#include <deque>
#include <memory>
#include <string_view>
#include <unordered_set>
#include <vector>

namespace ca::lexer {

/// The names that have been assigned so far: of each open function its own, and of the script around them.
///
/// Nearly every statement adds a name and hardly any asks for one, so adding is only noted down, and the set
/// is made of the notes when a question comes. The names point into the text.
class AssignedNames {
public:
    AssignedNames() { enterFunction(); }

    void enterFunction() { scopes.push_back({notes.size(), nullptr}); }

    /// Back to the names of what is around it.
    void leaveFunction() {
        notes.resize(scopes.back().firstNote);
        scopes.pop_back();
    }

    bool isInFunction() const { return scopes.size() > 1; }

    /// Adds a name of the innermost function. One that is assigned over and over again is noted once.
    void add(std::u16string_view name) {
        if (notes.size() == scopes.back().firstNote || notes.back() != name) {
            notes.push_back(name);
        }
    }

    /// Whether it is a name of the innermost function.
    bool contains(std::u16string_view name) {
        auto& [firstNote, names] = scopes.back();
        if (!names) {
            names = std::make_unique<std::unordered_set<std::u16string_view>>();
        }
        names->insert(notes.begin() + static_cast<std::ptrdiff_t>(firstNote), notes.end());
        notes.resize(firstNote);
        return names->contains(name);
    }

private:
    struct Scope {
        std::size_t firstNote;
        std::unique_ptr<std::unordered_set<std::u16string_view>> names; ///< but the notes; null: none
    };

    std::deque<std::u16string_view> notes; ///< of all scopes
    std::vector<Scope> scopes;             ///< innermost last
};

} // namespace ca::lexer
