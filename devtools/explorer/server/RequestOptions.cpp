#include "explorer/server/RequestOptions.h"

#include "options/OptionsFile.h"

namespace ombrel {

RequestOptions readOptions(const ApiRequest& request) {
    OptionsFile file = readOptionsFile(request.options);
    OptionValues values;
    for (const Setting& setting : file.settings) {
        values.set(*setting.option, setting.value);
    }
    for (const Extension& extension : file.extensions) {
        file.problems.push_back(makeProblem(Code::InvalidExtends, extension.place, "no files are read here"));
    }
    if (!file.overrides.empty()) {
        Problem problem(Code::InvalidValue, "overrides are ignored here: there are no file names");
        problem.severity = Severity::Warning;
        file.problems.push_back(std::move(problem));
    }
    RequestOptions options{makeFileOptions(values), std::move(file.problems)};
    options.values.engine = request.engine.value_or(options.values.engine);
    return options;
}

} // namespace ombrel
