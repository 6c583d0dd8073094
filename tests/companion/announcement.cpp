// The announcement of the bridge with a host of this file's own. Prints what had happened when the program
// was loaded: the name looked up, how many objects were made after that, and how many calls of the
// companion's function there were with a bridge that works. With COMPANION in the environment there is such a
// function.

#include "entry/FormattingExplorerBridgeImpl.h"

#include <ca/astapi/symbols.h>

#include <cstdio>
#include <cstdlib>
#include <new>

namespace {

bool isAnnouncing = false;
int objectCount = 0;
int callCount = 0;

void takeBridge(FormattingExplorerBridge* bridge) {
    isAnnouncing = false;
    callCount += bridge != nullptr && bridge->format(u"a", u"b") == u"ab" ? 1 : 0;
}

} // namespace

void* operator new(std::size_t size) {
    objectCount += isAnnouncing ? 1 : 0;
    void* memory = std::malloc(size);
    return memory == nullptr ? throw std::bad_alloc() : memory;
}

void operator delete(void* memory) noexcept {
    std::free(memory);
}

void operator delete(void* memory, std::size_t) noexcept {
    std::free(memory);
}

void* ca::astapi::getNonshippingLibraryHandle() {
    return nullptr;
}

void* utFindSymbolInLibrary(void*, const char* name) {
    std::printf("%s", name);
    isAnnouncing = true;
    return std::getenv("COMPANION") == nullptr ? nullptr : reinterpret_cast<void*>(&takeBridge);
}

std::u16string FormattingExplorerBridgeImpl::format(const std::u16string& sourceText,
                                                    const std::u16string& jsonText) {
    return sourceText + jsonText;
}

ca::formatting::TreeFormatResult
FormattingExplorerBridgeImpl::formatParsed(const ca::formatting::TreeFormatRequest&) {
    return {};
}

int main() {
    isAnnouncing = false;
    std::printf(" objects: %d calls: %d\n", objectCount, callCount);
}
