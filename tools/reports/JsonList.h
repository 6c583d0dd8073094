#pragma once

#include <iosfwd>
#include <string>
#include <utility>

#include <nlohmann/json_fwd.hpp>

namespace ombrel {

/// The one long list of a JSON document, kept as text while it grows: its values would need several times the
/// memory.
class JsonList {
public:
    /// `key` is the name of the list, the first of this name in the document; `depth` is how many objects and
    /// lists its elements are inside of.
    JsonList(std::string key, std::size_t depth) : key(std::move(key)), indentation(2 * depth, ' ') {}

    void add(const nlohmann::ordered_json& element);

    /// Writes the document, in which the list is empty, with the elements in it, as one that is indented
    /// by 2.
    void write(std::ostream& stream, const nlohmann::ordered_json& document) const;

private:
    std::string key;
    std::string indentation; ///< of an element
    std::string elements;    ///< each after a line end, with commas between them
};

} // namespace ombrel
