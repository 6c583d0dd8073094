// Configurations: any texts, layered in any way, come to options and issues. The input is cut into files at
// its U+001E; a file's name is its number as one digit, and the first is the top layer.

#include "FuzzText.h"

#include "config/FormattingSection.h"
#include "support/MemoryConfigManager.h"

#include <ca/config/ConfigSource.h>
#include <fl/i18n/MessageCatalog.h>

#include <algorithm>
#include <map>

using ca::config::Config;
using ca::config::JsonConfigSource;
using ca::formatting::FormattingConfig;
using ca::utils::JsonValue;

/// The character at a place, found by counting lines from the start; U+0000 after the end of the text.
static char16_t getCharacter(const std::u16string& text, ca::utils::JsonPosition position) {
    std::size_t offset = text.starts_with(u'\uFEFF') ? 1 : 0;
    for (std::uint32_t line = 1; line < position.first; ++line) {
        offset = text.find_first_of(u"\r\n", offset);
        if (offset == std::u16string::npos) {
            fail("a place is after the last line");
        }
        offset += text.compare(offset, 2, u"\r\n") == 0 ? 2 : 1;
    }
    offset += position.second - 1;
    if (offset > text.size()) {
        fail("a place is after the text");
    }
    return text[offset];
}

/// A value starts and ends with the characters of its kind, and so do those inside it.
static void checkPlaces(const std::u16string& text, const JsonValue& value) {
    const char16_t first = getCharacter(text, value.getSpan()->start);
    auto [line, column] = value.getSpan()->end;
    const char16_t last = getCharacter(text, {line, column - 1});
    const std::u16string_view starts[] = {u"n", u"tf", u"\"", u"-0123456789", u"[", u"{"};
    const std::u16string_view ends[] = {u"l", u"e", u"\"", u"0123456789", u"]", u"}"};
    const auto kind = static_cast<std::size_t>(value.getKind());
    if (starts[kind].find(first) == std::u16string_view::npos ||
        ends[kind].find(last) == std::u16string_view::npos) {
        fail("a value isn't where it says");
    }
    if (value.getKind() == JsonValue::ArrayKind) {
        for (const JsonValue& element : value.getElements()) {
            checkPlaces(text, element);
        }
    } else if (value.getKind() == JsonValue::ObjectKind) {
        for (const auto& [name, field] : value.getObject().getFields()) {
            if (getCharacter(text, field.nameSpan->start) != u'"') {
                fail("a name isn't where it says");
            }
            checkPlaces(text, field.value);
        }
    }
}

static void checkIssues(const std::unordered_set<ca::config::ConfigIssue>& issues,
                        std::map<std::u16string, std::u16string>& files) {
    for (const ca::config::ConfigIssue& issue : issues) {
        const auto words =
            fl::i18n::MessageCatalog::get_message(*issue.message, fl::i18n::QrLocale::global());
        if (words.empty() || words.find(u"CodeAnalyzer") == 0) {
            fail("an issue has no words");
        }
        const auto file = files.find(issue.path.value().string());
        if (file == files.end()) {
            fail("an issue is about a file that isn't there");
        }
        getCharacter(file->second, {issue.start.value().line, issue.start.value().column});
    }
}

static void checkOptions(const FormattingConfig& config) {
    for (int i = 0; i < static_cast<int>(FormattingConfig::ContainerKind::None); ++i) {
        const auto kind = static_cast<FormattingConfig::ContainerKind>(i);
        if (static_cast<std::uint32_t>(config.getLineBreakBehavior(kind)) > 2 ||
            static_cast<std::uint32_t>(config.getSeparatorPlacement(kind)) > 1) {
            fail("an option has a value that there isn't");
        }
    }
    if (static_cast<std::uint32_t>(config.getFunctionIndentStyle()) > 2 ||
        static_cast<std::uint32_t>(config.getIndentCharacter()) > 1) {
        fail("an option has a value that there isn't");
    }
}

static std::map<std::u16string, std::u16string> cutIntoFiles(const std::u16string& text) {
    std::map<std::u16string, std::u16string> files;
    std::size_t start = 0;
    for (char16_t name = u'0'; name <= u'9' && start <= text.size(); ++name) {
        const std::size_t end = std::min(text.find(u'\x1E', start), text.size());
        files[std::u16string(1, name)] = text.substr(start, end - start);
        start = end + 1;
    }
    return files;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    auto files = cutIntoFiles(makeText(data, size));
    for (const auto& [name, text] : files) {
        const ca::utils::JsonDocument document = ca::utils::readJson(text);
        if (!document.root && document.faults.empty()) {
            fail("a text is refused without a reason");
        }
        for (const ca::utils::JsonFault& fault : document.faults) {
            getCharacter(text, fault.start);
        }
        if (document.root) {
            for (const auto& [field, value] : document.root->getFields()) {
                checkPlaces(text, value.value);
            }
        }
    }
    const auto manager = std::make_shared<MemoryConfigManager>(files);
    auto config = std::make_shared<Config>(
        std::make_shared<JsonConfigSource>(fl::filesystem::path(u"0"), files[u"0"], manager));
    std::size_t layers = 0;
    while (const auto source = std::dynamic_pointer_cast<JsonConfigSource>(config->getSource())) {
        const auto section = config->get<FormattingConfig>();
        checkOptions(*section);
        checkIssues(section->getIssues(), files);
        checkIssues(source->getIssues(), files);
        config = source->getBaseConfig();
        ++layers;
    }
    if (layers > files.size()) {
        fail("a file is in two layers");
    }
    return 0;
}
