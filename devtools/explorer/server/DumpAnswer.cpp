#include "explorer/server/AnswerJson.h"
#include "explorer/server/Answers.h"
#include "explorer/server/RequestOptions.h"

#include "format/SyntaxCheck.h"
#include "format/TreeEngine.h"
#include "stages/SyntaxRows.h"
#include "stages/TreeRows.h"
#include "text/TextEncoding.h"

#include <algorithm>
#include <deque>

#include <fmt/format.h>
#include <fmt/ranges.h>

namespace ombrel {

namespace {

/// Everything that a stage may be made from.
struct StageSource {
    const std::u16string& text;
    const ca::formatting::ParsedSource& parsed;
    const std::u16string& formattingJson;
};

struct Stage {
    std::string_view name;
    bool needsSyntax;
    bool needsOptions;
    void (*visit)(const StageSource& source, const RowVisitor& visit);
};

constexpr Stage stages[] = {
    {"tokens", false, false,
     [](const StageSource& source, const RowVisitor& visit) { visitTokenRows(source.parsed, visit); }},
    {"syntax", true, false,
     [](const StageSource& source, const RowVisitor& visit) {
         visitSyntaxRows(source.text, source.parsed, visit);
     }},
    {"leaves", true, false,
     [](const StageSource& source, const RowVisitor& visit) { visitLeafRows(source.parsed, visit); }},
    {"text-tree", true, false,
     [](const StageSource& source, const RowVisitor& visit) { visitTextTreeRows(source.parsed, visit); }},
    {"indent-tree", true, false,
     [](const StageSource& source, const RowVisitor& visit) { visitIndentTreeRows(source.parsed, visit); }},
    {"decisions", true, true,
     [](const StageSource& source, const RowVisitor& visit) {
         visitDecisionRows(source.parsed, getTreeOptions(source.formattingJson).config, visit);
     }},
};

/// The rows around a place: as many as there may be, and half of them before it if there are enough after it.
class RowWindow {
public:
    RowWindow(std::optional<std::size_t> around, std::size_t limit)
        : around(around), limit(std::max<std::size_t>(limit, 1)) {}

    void add(const Row& row) {
        const bool isBefore = around && row.end <= *around && !isReached;
        isReached = isReached || !isBefore;
        if (isBefore && rows.size() == limit / 2 && !rows.empty()) {
            rows.pop_front();
        }
        if (isBefore ? limit > 1 : rows.size() < limit) {
            rows.push_back(row);
            last = total;
        }
        ++total;
    }

    std::size_t getFirst() const { return rows.empty() ? 0 : last + 1 - rows.size(); }
    std::size_t getTotal() const { return total; }
    const std::deque<Row>& getRows() const { return rows; }

private:
    std::optional<std::size_t> around;
    std::size_t limit;
    bool isReached = false;
    std::deque<Row> rows;
    std::size_t last = 0;
    std::size_t total = 0;
};

Json makeJson(const GapDecision& gap) {
    Json options = Json::array();
    for (const DecidingOption& option : gap.options) {
        options.push_back({{"name", option.name}, {"value", Json::parse(option.value)}});
    }
    return {{"class", gap.gapClass},
            {"construct", gap.construct},
            {"level", gap.level},
            {"depth", gap.depth},
            {"decision", gap.decision},
            {"isCandidate", gap.isCandidate},
            {"before", encodeLossy(gap.before)},
            {"after", encodeLossy(gap.after)},
            {"reason", gap.reason},
            {"options", std::move(options)}};
}

Json makeJson(const Row& row, std::size_t shift) {
    Json json = {{"begin", row.begin + shift},
                 {"end", row.end + shift},
                 {"depth", row.depth},
                 {"label", row.label},
                 {"detail", row.detail}};
    if (row.gap) {
        json["gap"] = makeJson(*row.gap);
    }
    return json;
}

void addErrors(Json& errors, const Problems& problems, std::string_view place) {
    for (const Problem& problem : problems) {
        if (problem.isError()) {
            errors.push_back(makeJson(problem, place));
        }
    }
}

std::string makeAnswer(const Stage& stage, const ApiRequest& request) {
    RequestText source = readText(request.text);
    const RequestOptions options = readOptions(request);
    Json errors = Json::array();
    addErrors(errors, source.problems, "source");
    if (stage.needsOptions) {
        addErrors(errors, options.problems, "options");
    }
    const auto parsed = ca::formatting::parseSource(source.text);
    if (stage.needsSyntax) {
        addErrors(errors, makeProblems(parsed.errors), "source");
    }
    RowWindow window(request.around ? std::optional(*request.around - std::min(*request.around, source.shift))
                                    : std::nullopt,
                     request.limit);
    if (errors.empty()) {
        stage.visit({source.text, parsed, options.values.formattingJson},
                    [&](const Row& row) { window.add(row); });
    }
    std::string rows;
    for (const Row& row : window.getRows()) {
        rows += (rows.empty() ? "" : ",") + print(makeJson(row, source.shift));
    }
    return fmt::format(R"({{"stage":"{}","first":{},"total":{},"rows":[{}],"errors":{}}})", stage.name,
                       window.getFirst(), window.getTotal(), rows, print(errors));
}

} // namespace

tl::expected<std::string, std::string> makeDumpAnswer(const ApiRequest& request) {
    for (const Stage& stage : stages) {
        if (stage.name == request.stage) {
            return makeAnswer(stage, request);
        }
    }
    std::vector<std::string_view> names;
    for (const Stage& stage : stages) {
        names.push_back(stage.name);
    }
    return tl::unexpected(fmt::format("\"stage\" has to be one of {}", fmt::join(names, ", ")));
}

} // namespace ombrel
