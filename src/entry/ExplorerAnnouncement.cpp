// When the library is loaded, the one bridge object is handed to the development-only companion library, if
// that is there. Without it nothing is made, and the tree formatter can't be reached.

#include "entry/FormattingExplorerBridgeImpl.h"

#include <ca/astapi/symbols.h>

namespace {

FormattingExplorerBridge* getBridge() {
    static FormattingExplorerBridge* const bridge = new FormattingExplorerBridgeImpl;
    return bridge;
}

class ExplorerAnnouncement {
public:
    explicit ExplorerAnnouncement(const char* functionName) {
        using SetBridge = void (*)(FormattingExplorerBridge*);
        void* function = utFindSymbolInLibrary(ca::astapi::getNonshippingLibraryHandle(), functionName);
        if (function != nullptr) {
            reinterpret_cast<SetBridge>(function)(getBridge());
        }
    }
};

const ExplorerAnnouncement announcement("setFormattingExplorerBridge");

} // namespace
