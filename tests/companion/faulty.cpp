// A companion library whose formatter has a fault. OMBREL_FORMATTER says which: it "throws", "refuses" all
// options, or "misreads" each program. Otherwise its result has one more character than the program.

#include <ombrel/devtools.h>

#include <cstdlib>
#include <stdexcept>
#include <string_view>
#include <variant>

// The real one, renamed by the build.
extern "C" void formatWell(const ca::formatting::TreeFormatRequest& request,
                           ca::formatting::TreeFormatResult& result);

void formatParsedThroughExplorerBridge(const ca::formatting::TreeFormatRequest& request,
                                       ca::formatting::TreeFormatResult& result) {
    const char* name = std::getenv("OMBREL_FORMATTER");
    const std::string_view fault = name == nullptr ? "" : name;
    if (fault == "throws") {
        throw std::runtime_error("thrown by a faulty formatter");
    }
    if (fault == "refuses") {
        result = std::vector{ca::config::ConfigIssue({}, ca::config::Severity::Error, {}, {}, {})};
        return;
    }
    if (fault == "misreads") {
        result = std::vector{ca::SyntaxError{u"None", u"misread by a faulty formatter", 1, 1, 1}};
        return;
    }
    formatWell(request, result);
    if (auto* text = std::get_if<std::u16string>(&result)) {
        text->insert(0, u"1");
    }
}
