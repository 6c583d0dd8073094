#include "reports/JsonList.h"

#include "reports/JsonText.h"

#include <ostream>
#include <string_view>

namespace ombrel {

void JsonList::add(const nlohmann::ordered_json& element) {
    if (!elements.empty()) {
        elements += ',';
    }
    const std::string text = '\n' + makeJsonText(element); // a line end in a text is escaped
    for (const char c : text) {
        elements += c;
        if (c == '\n') {
            elements += indentation;
        }
    }
}

void JsonList::write(std::ostream& stream, const nlohmann::ordered_json& document) const {
    const std::string text = makeJsonText(document);
    const std::string opening = '"' + key + "\": ["; // quotes in a text are escaped
    const std::size_t middle = text.find(opening) + opening.size();
    stream << std::string_view(text).substr(0, middle) << elements;
    if (!elements.empty()) {
        stream << '\n' << std::string_view(indentation).substr(2);
    }
    stream << std::string_view(text).substr(middle) << '\n';
}

} // namespace ombrel
