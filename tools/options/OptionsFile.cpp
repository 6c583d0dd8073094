// Reads one options file. Nothing ends the reading but a fault of JSON: each unknown key and wrong value
// becomes a problem at its place, and what is right besides is kept, so that one run shows all that is wrong.
#include "options/OptionsFile.h"

#include "diagnostics/Suggestion.h"
#include "options/VersionRange.h"
#include "text/Printable.h"
#include "text/TextEncoding.h"

#include <ca/utils/JsonDocument.h>
#include <fl/i18n/MessageCatalog.h>

#include <algorithm>
#include <functional>
#include <utility>
#include <variant>

#include <fmt/format.h>

namespace ombrel {

namespace {

using ca::utils::JsonField;
using ca::utils::JsonObject;
using ca::utils::JsonValue;

constexpr FileKey fileKeys[] = {
    {"$schema", "For editors: where the schema of this file is"},
    {"requiredVersion",
     "The versions of ombrel-format that this file is for, such as \">=1.2 <2\" or \"^1.2.0\"; "
     "any other one refuses to run"},
    {"root", "Whether options files in folders above are ignored (true), or the next one is the base of this "
             "file (false)"},
    {"extends",
     "Options files that this file extends, by paths from its folder; later ones override earlier ones"},
    {"overrides", "Options for some of the files only; later ones win"},
};

constexpr FileKey filesKey = {
    "files", "Patterns of file names, or of paths from this file's folder, as in the ignore files of git"};

/// True if the rule is about the file or about one of the folders that it is in.
bool matchesFileOrFolder(const IgnoreRule& rule, std::string_view path) {
    if (rule.matches(path, false)) {
        return true;
    }
    for (std::size_t slash = path.find('/'); slash != std::string_view::npos;
         slash = path.find('/', slash + 1)) {
        if (rule.matches(path.substr(0, slash), true)) {
            return true;
        }
    }
    return false;
}

std::vector<std::string> getKeys(std::string_view section) {
    std::vector<std::string> keys;
    for (const Option& option : getOptions()) {
        if (option.section == section) {
            keys.emplace_back(option.key);
        }
    }
    return keys;
}

/// A name that is right elsewhere is a better hint than one that looks similar here.
std::string suggestKey(std::string_view key, const std::vector<std::string>& known) {
    for (const Option& option : getOptions()) {
        if (option.key == key) {
            return fmt::format("; did you mean {}?", option.getName());
        }
    }
    return suggest(key, known);
}

class FileReader {
public:
    OptionsFile read(std::string_view bytes) {
        auto decoded = decode(bytes);
        if (decoded) {
            file.text = std::move(decoded->text);
            readText();
        } else {
            const DecodingError& error = decoded.error();
            file.text = decodeLossy(bytes);
            file.problems.push_back({Code::InvalidJson, error.text, error.line, error.column});
        }
        return std::move(file);
    }

private:
    void readText() {
        const ca::utils::JsonDocument document = ca::utils::readJson(file.text);
        for (const ca::utils::JsonFault& fault : document.faults) {
            const std::u16string text =
                fl::i18n::MessageCatalog::get_message(*fault.message, fl::i18n::QrLocale::global());
            file.problems.push_back(
                {Code::InvalidJson, encodeLossy(text), fault.start.first, fault.start.second});
        }
        if (document.root) {
            readTopLevel(*document.root);
            keepUnmetRequirement();
        }
    }

    void readTopLevel(const JsonObject& root) {
        std::vector<std::string> known;
        for (const FileKey& key : fileKeys) {
            known.emplace_back(key.name);
        }
        for (const auto& [name, field] : getOrderedFields(root)) {
            if (!readFileKey(name, field->value) && !readOptions(name, *field, file.settings)) {
                refuseKey(name, *field, known);
            }
        }
    }

    bool readFileKey(std::string_view name, const JsonValue& value) {
        if (name == "$schema") {
            expect(value.getKind() == JsonValue::StringKind, value, "expected a string");
        } else if (name == "requiredVersion") {
            readRequiredVersion(value);
        } else if (name == "root") {
            if (expect(value.getKind() == JsonValue::BooleanKind, value, "expected true or false")) {
                file.isRoot = value.getBoolean();
            }
        } else if (name == "extends") {
            for (const JsonValue& element : readStrings(value, "a path")) {
                file.extensions.push_back({encodeLossy(element.getString()), element.getSpan()});
            }
        } else if (name == "overrides") {
            readOverrides(value);
        } else {
            return false;
        }
        return true;
    }

    void readRequiredVersion(const JsonValue& value) {
        if (!expect(value.getKind() == JsonValue::StringKind, value,
                    "expected a range of versions as a string")) {
            return;
        }
        const std::string text = encodeLossy(value.getString());
        const auto range = VersionRange::parse(text);
        if (!range) {
            addProblem(Code::InvalidValue, value.getSpan(), range.error().front().text);
        } else if (const Version version = getProgramVersion(); !range->contains(version)) {
            addProblem(Code::RequiredVersion, value.getSpan(),
                       fmt::format("this file is for ombrel-format {}, and this is {}",
                                   getPrintableName(text), describe(version)));
        }
    }

    void keepUnmetRequirement() {
        const auto isUnmet = [](const Problem& problem) { return problem.code == Code::RequiredVersion; };
        if (std::any_of(file.problems.begin(), file.problems.end(), isUnmet)) {
            std::erase_if(file.problems, std::not_fn(isUnmet));
        }
    }

    void readOverrides(const JsonValue& value) {
        if (expect(value.getKind() == JsonValue::ArrayKind, value, "expected a list of objects")) {
            for (const JsonValue& element : value.getElements()) {
                readOverride(element);
            }
        }
    }

    void readOverride(const JsonValue& value) {
        if (!expect(value.getKind() == JsonValue::ObjectKind, value,
                    "expected an object with \"files\" and options")) {
            return;
        }
        Override entry;
        const JsonObject object = value.getObject();
        for (const auto& [name, field] : getOrderedFields(object)) {
            if (name == filesKey.name) {
                entry.rules = readPatterns(field->value);
            } else if (!readOptions(name, *field, entry.settings)) {
                refuseKey(name, *field, {std::string(filesKey.name)});
            }
        }
        expect(object.find(u"files") != nullptr, value, "this override lacks \"files\"");
        file.overrides.push_back(std::move(entry));
    }

    /// Patterns of which at least one includes files, and each of which can match.
    std::vector<IgnoreRule> readPatterns(const JsonValue& value) {
        const std::vector<JsonValue> patterns = readStrings(value, "a pattern");
        std::vector<IgnoreRule> rules;
        for (const JsonValue& pattern : patterns) {
            const IgnoreRule& rule = rules.emplace_back(encodeLossy(pattern.getString()));
            expect(rule.getFault().empty(), pattern,
                   fmt::format("this pattern never matches: {}", rule.getFault()));
        }
        const bool isEmptyList = value.getKind() == JsonValue::ArrayKind && value.getElements().empty();
        expect(!isEmptyList, value, "expected at least one pattern");
        const bool takesNone =
            !rules.empty() && std::all_of(rules.begin(), rules.end(), std::mem_fn(&IgnoreRule::isNegated));
        expect(!takesNone, value, "every pattern here begins with '!', so this override applies to no file");
        return rules;
    }

    /// One string or a list of strings, none of them empty.
    std::vector<JsonValue> readStrings(const JsonValue& value, std::string_view what) {
        const bool isList = value.getKind() == JsonValue::ArrayKind;
        std::vector<JsonValue> strings;
        for (const JsonValue& element : isList ? value.getElements() : std::vector{value}) {
            const bool isGood = element.getKind() == JsonValue::StringKind && !element.getString().empty();
            if (expect(isGood, element,
                       isList ? fmt::format("expected {}", what)
                              : fmt::format("expected {}, or a list of them", what))) {
                strings.push_back(element);
            }
        }
        return strings;
    }

    /// False if the name is neither an option outside of sections nor a section.
    bool readOptions(std::string_view name, const JsonField& field, std::vector<Setting>& settings) {
        if (const Option* option = findOption("", name)) {
            readOption(*option, field.value, settings);
            return true;
        }
        for (const Section& section : getSections()) {
            if (section.name == name) {
                readSection(section, field.value, settings);
                return true;
            }
        }
        return false;
    }

    void readSection(const Section& section, const JsonValue& value, std::vector<Setting>& settings) {
        if (!expect(value.getKind() == JsonValue::ObjectKind, value, "expected an object of options")) {
            return;
        }
        const JsonObject object = value.getObject();
        for (const auto& [key, field] : getOrderedFields(object)) {
            if (const Option* option = findOption(section.name, key)) {
                readOption(*option, field->value, settings);
            } else {
                addProblem(Code::UnknownOption, field->nameSpan,
                           fmt::format("unknown option {}{}", getPrintableName(key),
                                       suggestKey(key, getKeys(section.name))));
            }
        }
    }

    void readOption(const Option& option, const JsonValue& value, std::vector<Setting>& settings) {
        const Problems problems = checkValue(option, value);
        if (problems.empty()) {
            settings.push_back({&option, value, value.getSpan() ? value.getSpan()->start.first : 0});
        }
        file.problems.insert(file.problems.end(), problems.begin(), problems.end());
    }

    /// `known` is what there is besides options and their sections.
    void refuseKey(std::string_view name, const JsonField& field, std::vector<std::string> known) {
        const std::vector<std::string> keys = getKeys("");
        known.insert(known.end(), keys.begin(), keys.end());
        for (const Section& section : getSections()) {
            known.emplace_back(section.name);
        }
        addProblem(Code::UnknownOption, field.nameSpan,
                   fmt::format("unknown option {}{}", getPrintableName(name), suggestKey(name, known)));
    }

    bool expect(bool isGood, const JsonValue& value, std::string text) {
        if (!isGood) {
            addProblem(Code::InvalidValue, value.getSpan(), std::move(text));
        }
        return isGood;
    }

    void addProblem(Code code, const std::optional<ca::utils::JsonSpan>& place, std::string text) {
        file.problems.push_back(makeProblem(code, place, std::move(text)));
    }

    OptionsFile file;
};

} // namespace

std::span<const FileKey> getFileKeys() {
    return fileKeys;
}

const FileKey& getFilesKey() {
    return filesKey;
}

bool Override::isFor(std::string_view path) const {
    const auto decisive = std::find_if(rules.rbegin(), rules.rend(), [&](const IgnoreRule& rule) {
        return matchesFileOrFolder(rule, path);
    });
    return decisive != rules.rend() && !decisive->isNegated();
}

OptionsFile readOptionsFile(std::string_view bytes) {
    return FileReader().read(bytes);
}

} // namespace ombrel
