#include <ombrel/devtools.h>

#include <entry/FormattingExplorerBridge.h>

#include <atomic>

namespace {

// Set once while the formatter's library is loaded, then read by any thread.
std::atomic<FormattingExplorerBridge*> theBridge = nullptr;

} // namespace

void setFormattingExplorerBridge(FormattingExplorerBridge* bridge) {
    theBridge = bridge;
}

bool hasExplorerBridge() {
    return theBridge != nullptr;
}

void formatThroughExplorerBridge(const std::u16string& sourceText, const std::u16string& jsonText,
                                 std::u16string& result) {
    result = theBridge.load()->format(sourceText, jsonText);
}

void formatParsedThroughExplorerBridge(const ca::formatting::TreeFormatRequest& request,
                                       ca::formatting::TreeFormatResult& result) {
    result = theBridge.load()->formatParsed(request);
}
