// A companion library that takes the bridge and offers the tool nothing to call it by.

#include <cstdio>

class FormattingExplorerBridge;

extern "C" __attribute__((visibility("default"))) void
setFormattingExplorerBridge(FormattingExplorerBridge* bridge) {
    std::fprintf(stderr, "%s bridge\n", bridge == nullptr ? "no" : "a");
}
