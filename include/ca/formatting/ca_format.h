#pragma once

#include <ca/formatting/api.h>
#include <matrix/array.h>

#include <memory>
#include <string>
#include <string_view>

/// Does nothing: reads none of its arguments and writes nothing. It is there for hosts that bind it by name.
CA_FORMATTING_API void ca_format(int outputCount,
                                 std::unique_ptr<kzArray_tag, matrix::detail::kzDestroy_deleter>* outputs,
                                 int inputCount, kzArray_tag** inputs);

/// Reindents lines of an Ombrel file, and leaves everything but blanks at line edges as it is.
///
/// `text` is the whole file. Lines `firstLine` to `lastLine`, both from 1 and inclusive, are changed; lines
/// before them still set the level that the range starts from. A range that ends before it starts changes
/// nothing.
///
/// `useSpaces` asks for spaces only, otherwise indentation is tabs and then spaces. `tabSize`, in columns,
/// is the distance of tab stops and must not be 0. `indentSize`, in columns, is one level.
///
/// `functionIndentStyle` is "ClassicFunctionIndent", "MixedFunctionIndent" or anything else, which indents
/// the body of every function. `blankLineStyle` is "Ignore", "Indent" or anything else, which trims blank
/// lines. Both are compared to the letter and no text is an error.
///
/// Returns a new array of one row, of class `kzCHAR_CLASS`, with a column for each 16-bit character of the
/// result and no terminator; the caller owns it. Broken text gives a result too. Exceptions of the host (out
/// of memory, above all) pass through. Calls on different threads don't meet.
CA_FORMATTING_API std::unique_ptr<kzArray_tag, matrix::detail::kzDestroy_deleter>
ca_format(const std::u16string& text, unsigned int firstLine, unsigned int lastLine, bool useSpaces,
          unsigned int tabSize, std::u16string_view functionIndentStyle, unsigned int indentSize,
          std::u16string_view blankLineStyle);
