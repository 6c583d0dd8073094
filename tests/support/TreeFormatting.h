#pragma once

#include "support/GoldenFile.h"
#include "support/TestConfig.h"

#include <ca/formatting/TreeFormat.h>

#include <string>

/// Reads the keys of the JSON options, `formatter` aside. The two options by construct take one value for all
/// constructs, and a construct's name is a key of its own for either of them:
///
///     { lineBreakBehavior: AllowSingleLine, If: SeparateLines, PlusMinus: EndOfLine }
///
/// Throws std::runtime_error for any other key and for a value that isn't one of the key's.
TestOptions readTreeOptions(const GoldenOptions& options);

/// What a front end hands to the formatter: with indentation on, comment lines and the opening lines of block
/// comments lose their leading whitespace, which would move them right with every run.
std::u16string prepareText(const std::u16string& text, const TestOptions& options);

/// The text as the tree formatter writes it. Throws ca::SyntaxErrorException if it doesn't parse.
std::u16string formatText(const std::u16string& text, const TestOptions& options);

/// What the bridge makes of the request, but with these options.
std::u16string formatParsed(const ca::formatting::TreeFormatRequest& request, const TestOptions& options);
