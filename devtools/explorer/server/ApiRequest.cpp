#include "explorer/server/ApiRequest.h"

#include <limits>

#include <fmt/format.h>
#include <nlohmann/json.hpp>

namespace ombrel {

namespace {

using Json = nlohmann::ordered_json;
using Failure = tl::unexpected<std::string>;

/// No request needs more, and printing an object needs more of the call stack for a deeper one.
constexpr int maximalDepth = 32;

/// Nothing if the text is no JSON, or is nested too deeply.
std::optional<Json> parseJson(std::string_view text) {
    bool isTooDeep = false;
    const auto check = [&](int depth, Json::parse_event_t, Json&) {
        isTooDeep = isTooDeep || depth > maximalDepth;
        return !isTooDeep;
    };
    Json json = Json::parse(text, check, false);
    return isTooDeep || json.is_discarded() ? std::nullopt : std::optional(std::move(json));
}

class RequestReader {
public:
    explicit RequestReader(const Json& json) : json(json) {}

    tl::expected<ApiRequest, std::string> read() {
        readText();
        readEngine();
        readOptions();
        readLines();
        readRows();
        if (!fault.empty()) {
            return Failure(std::move(fault));
        }
        return std::move(request);
    }

private:
    /// Null if there is no such field, or it is null.
    const Json* find(const char* key) const {
        const auto found = json.find(key);
        return found == json.end() || found->is_null() ? nullptr : &*found;
    }

    void expect(bool isRight, const char* text) {
        if (!isRight && fault.empty()) {
            fault = text;
        }
    }

    void readText() {
        const Json* text = find("text");
        expect(text != nullptr && text->is_string(), "\"text\" has to be a string");
        if (fault.empty()) {
            request.text = text->get_ref<const std::string&>();
        }
    }

    void readEngine() {
        const Json* engine = find("engine");
        if (engine == nullptr) {
            return;
        }
        expect(*engine == "line" || *engine == "tree", "\"engine\" has to be \"line\" or \"tree\"");
        request.engine = *engine == "tree" ? Engine::Tree : Engine::Line;
    }

    void readOptions() {
        const Json* options = find("options");
        if (options == nullptr) {
            request.options = "{}";
            return;
        }
        expect(options->is_object() || options->is_string(),
               "\"options\" has to be an object, or the text of an options file");
        request.options = options->is_string() ? options->get<std::string>() : options->dump(4);
    }

    void readLines() {
        const Json* lines = find("lines");
        if (lines == nullptr) {
            return;
        }
        expect(lines->is_array(), "\"lines\" has to be a list of [first, last]");
        for (const Json& range : lines->is_array() ? *lines : Json::array()) {
            readRange(range);
        }
    }

    void readRange(const Json& range) {
        const bool isPair = range.is_array() && range.size() == 2 && range[0].is_number_unsigned() &&
                            range[1].is_number_unsigned();
        const std::uint64_t first = isPair ? range[0].get<std::uint64_t>() : 0;
        const std::uint64_t last = isPair ? range[1].get<std::uint64_t>() : 0;
        expect(first >= 1 && first <= last && last <= std::numeric_limits<std::uint32_t>::max(),
               "\"lines\" has to be a list of [first, last], counted from 1");
        request.lines.push_back({static_cast<std::uint32_t>(first), static_cast<std::uint32_t>(last)});
    }

    void readRows() {
        if (const Json* stage = find("stage")) {
            expect(stage->is_string(), "\"stage\" has to be a string");
            request.stage = stage->is_string() ? stage->get<std::string>() : "";
        }
        request.around = readSize("around");
        request.limit = readSize("limit").value_or(request.limit);
    }

    std::optional<std::size_t> readSize(const char* key) {
        const Json* size = find(key);
        expect(size == nullptr || size->is_number_unsigned(),
               "\"around\" and \"limit\" have to be numbers from 0");
        return size != nullptr && size->is_number_unsigned() ? std::optional(size->get<std::size_t>())
                                                             : std::nullopt;
    }

    const Json& json;
    ApiRequest request;
    std::string fault;
};

} // namespace

tl::expected<ApiRequest, std::string> readApiRequest(std::string_view body) {
    const auto json = parseJson(body);
    if (!json || !json->is_object()) {
        return Failure("the body has to be a JSON object in UTF-8, nested at most 32 deep");
    }
    return RequestReader(*json).read();
}

} // namespace ombrel
