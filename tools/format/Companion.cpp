#include "format/Companion.h"

#include <ca/astapi/symbols.h>
#include <ombrel/devtools.h>

namespace ombrel {

const char* const missingTreeEngine = "the tree engine needs the companion library "
                                      "libca_formatting_devtools.so, which isn't there; install the package "
                                      "ombrel-devtools, or build the project and install it (cmake --install "
                                      "build/release), so that the library is "
                                      "in the folder of libombrel_host.so or in devtools/ under it";

namespace {

template <class Function>
Function* find(void* library, const char* name) {
    return reinterpret_cast<Function*>(utFindSymbolInLibrary(library, name));
}

} // namespace

TreeFormatter findTreeFormatter() {
    void* const library = ca::astapi::getNonshippingLibraryHandle();
    const auto hasBridge = find<decltype(hasExplorerBridge)>(library, "hasExplorerBridge");
    const auto format =
        find<decltype(formatParsedThroughExplorerBridge)>(library, "formatParsedThroughExplorerBridge");
    if (hasBridge == nullptr || format == nullptr || !hasBridge()) {
        return {};
    }
    return [format](const ca::formatting::TreeFormatRequest& request) {
        ca::formatting::TreeFormatResult result;
        format(request, result);
        return result;
    };
}

} // namespace ombrel
