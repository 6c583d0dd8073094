// A companion library whose formatter has a fault: its result has one more character than the program.

#include <ombrel/devtools.h>

#include <variant>

// The real one, renamed by the build.
extern "C" void formatWell(const ca::formatting::TreeFormatRequest& request, ca::formatting::TreeFormatResult& result);

void formatParsedThroughExplorerBridge(const ca::formatting::TreeFormatRequest& request,
                                       ca::formatting::TreeFormatResult& result) {
    formatWell(request, result);
    if (auto* text = std::get_if<std::u16string>(&result)) {
        text->insert(0, u"1");
    }
}
