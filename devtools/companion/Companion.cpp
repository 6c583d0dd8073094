#include <ombrel/devtools.h>

#include <pass/FormattingExplorerBridge.h>

#include <atomic>

namespace {

// Set once while the formatter's library is loaded, then read by any thread.
std::atomic<FormattingExplorerBridge*> theBridge = nullptr;

} // namespace

void setFormattingExplorerBridge(FormattingExplorerBridge* bridge) {
    theBridge = bridge;
}

bool formatThroughExplorerBridge(const std::u16string& sourceText, const std::u16string& jsonText,
                                 std::u16string& result) {
    FormattingExplorerBridge* bridge = theBridge;
    if (bridge == nullptr) {
        return false;
    }
    result = bridge->format(sourceText, jsonText);
    return true;
}
