#include "explorer/server/AnswerJson.h"

#include "diagnostics/SourceText.h"

namespace ombrel {

Json makeJson(const Problem& problem, std::string_view place) {
    return {{"code", getInfo(problem.code).name},
            {"severity", getWord(problem.severity)},
            {"message", problem.text},
            {"in", place},
            {"line", problem.line},
            {"column", problem.column}};
}

std::string print(const Json& json) {
    return json.dump(-1, ' ', false, Json::error_handler_t::replace);
}

RequestText readText(std::string_view bytes) {
    auto decoded = decodeSource(bytes);
    if (!decoded) {
        return {{}, 0, std::move(decoded.error())};
    }
    return {std::move(decoded->text), decoded->hasByteOrderMark ? std::size_t{1} : 0, {}};
}

} // namespace ombrel
