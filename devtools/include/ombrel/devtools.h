#pragma once

#include <ca/formatting/TreeFormat.h>

#include <string>

class FormattingExplorerBridge;

#define OMBREL_DEVTOOLS_API __attribute__((visibility("default")))

/// What the development-only companion library libca_formatting_devtools.so offers. Nothing links to it: it
/// is looked for at run time in the host library's folder, and its functions by their names.
extern "C" {

/// Called by the formatter's library when that is loaded. The bridge lives as long as the process.
OMBREL_DEVTOOLS_API void setFormattingExplorerBridge(FormattingExplorerBridge* bridge);

/// Whether there is a bridge.
OMBREL_DEVTOOLS_API bool hasExplorerBridge();

/// Calls the bridge's `format` with both texts and puts what it returns into `result`. There has to be a
/// bridge. Lets its exceptions through.
OMBREL_DEVTOOLS_API void formatThroughExplorerBridge(const std::u16string& sourceText,
                                                     const std::u16string& jsonText, std::u16string& result);

/// The same for the bridge's `formatParsed`.
OMBREL_DEVTOOLS_API void formatParsedThroughExplorerBridge(const ca::formatting::TreeFormatRequest& request,
                                                           ca::formatting::TreeFormatResult& result);
}
