#include "options/OptionsSchema.h"

#include "options/OptionValue.h"
#include "options/OptionsFile.h"
#include "options/VersionRange.h"

#include <nlohmann/json.hpp>

namespace ombrel {

namespace {

using Json = nlohmann::ordered_json;

Json describeWords(const Option& option) {
    return {{"enum", option.words}};
}

/// A word for the whole group, or an object that names every part of it.
Json describeGroup(const Option& option, const Construct& group) {
    Json object = {{"type", "object"}, {"additionalProperties", false}};
    for (const Construct& child : group.children) {
        object["required"].push_back(child.name);
        object["properties"][std::string(child.name)] =
            child.children.empty() ? describeWords(option) : describeGroup(option, child);
    }
    return {{"anyOf", {describeWords(option), object}}};
}

Json describeType(const Option& option) {
    switch (option.type) {
    case TreeOptionType::Boolean:
        return {{"type", "boolean"}};
    case TreeOptionType::Number:
        return {{"type", "integer"}, {"minimum", option.low}, {"maximum", option.high}};
    case TreeOptionType::Word:
        return describeWords(option);
    case TreeOptionType::PerConstruct:
        break;
    }
    return describeGroup(option, ca::formatting::treeConstructs);
}

Json describeOption(const Option& option) {
    const auto value = parseValue(option, option.factory).value();
    Json schema = {{"description", option.description}, {"default", Json::parse(getJson(value))}};
    schema.update(describeType(option));
    return schema;
}

Json describeSection(const Section& section) {
    Json schema = {{"description", section.description}, {"type", "object"}};
    for (const Option& option : getOptions()) {
        if (option.section == section.name) {
            schema["properties"][std::string(option.key)] = describeOption(option);
        }
    }
    schema["additionalProperties"] = false;
    return schema;
}

/// What both a file and an override may hold is told once, in the definitions.
Json makeDefinitions() {
    Json definitions;
    for (const Option& option : getOptions()) {
        if (option.section.empty()) {
            definitions[std::string(option.key)] = describeOption(option);
        }
    }
    for (const Section& section : getSections()) {
        definitions[std::string(section.name)] = describeSection(section);
    }
    return definitions;
}

Json makeReferences(const Json& definitions) {
    Json properties = Json::object();
    for (const auto& item : definitions.items()) {
        properties[item.key()] = {{"$ref", "#/$defs/" + item.key()}};
    }
    return properties;
}

Json describeStrings(std::size_t fewest) {
    const Json string = {{"type", "string"}, {"minLength", 1}};
    return {{"anyOf", {string, {{"type", "array"}, {"items", string}, {"minItems", fewest}}}}};
}

Json describeOverrides(const Json& definitions) {
    const std::string files(getFilesKey().name);
    Json properties = {{files, describeStrings(1)}};
    properties[files]["description"] = getFilesKey().description;
    properties.update(makeReferences(definitions));
    return {{"type", "array"},
            {"items",
             {{"type", "object"},
              {"properties", properties},
              {"required", Json::array({files})},
              {"additionalProperties", false}}}};
}

Json describeFileKey(std::string_view name, const Json& definitions) {
    if (name == "root") {
        return {{"type", "boolean"}, {"default", true}};
    }
    if (name == "requiredVersion") {
        return {{"type", "string"}, {"pattern", getVersionRangePattern()}};
    }
    if (name == "extends") {
        return describeStrings(0);
    }
    return name == "overrides" ? describeOverrides(definitions) : Json{{"type", "string"}};
}

} // namespace

std::string makeOptionsSchema() {
    const Json definitions = makeDefinitions();
    Json properties = Json::object();
    for (const FileKey& key : getFileKeys()) {
        Json schema = {{"description", key.description}};
        schema.update(describeFileKey(key.name, definitions));
        properties[std::string(key.name)] = schema;
    }
    properties.update(makeReferences(definitions));
    const Json schema = {{"$schema", "https://json-schema.org/draft/2020-12/schema"},
                         {"title", "Options of ombrel-format"},
                         {"type", "object"},
                         {"properties", properties},
                         {"additionalProperties", false},
                         {"$defs", definitions}};
    return schema.dump(2) + '\n';
}

} // namespace ombrel
