#pragma once

#include <ca/formatting/api.h>
#include <matrix/array.h>

#include <memory>
#include <string>
#include <string_view>

/// Does nothing: reads none of its arguments and writes nothing. It is exported for hosts that bind it by
/// name.
CA_FORMATTING_API void ca_format(int outputCount,
                                 std::unique_ptr<kzArray_tag, matrix::detail::kzDestroy_deleter>* outputs,
                                 int inputCount, kzArray_tag** inputs);

/// Reindents lines of an Ombrel file. Only whitespace at the start and the end of lines changes.
///
/// `text` is the whole file. Lines `firstLine` to `lastLine`, both from 1 and inclusive, are changed; the
/// lines before them set the level that the range starts from. If `lastLine` is less than `firstLine`,
/// nothing changes.
///
/// With `useSpaces`, indentation is spaces only; otherwise it is as many tabs as fit, then spaces. `tabSize`
/// is the number of columns from one tab stop to the next. It must be greater than 0: this is not checked,
/// and 0 ends the process with a division by zero. `indentSize`, in columns, is one level; 0 is allowed.
///
/// `functionIndentStyle` is "ClassicFunctionIndent" (no function's body is indented), "MixedFunctionIndent"
/// (bodies of functions inside functions or classes are); any other text means that all are.
/// `blankLineStyle` is "Ignore" (blank lines stay as they are), "Indent" (they are indented like code); any
/// other text means that they lose their whitespace. Case counts, and no text is an error.
///
/// Returns a new array of one row, of class `kzCHAR_CLASS`, with a column for each 16-bit character of the
/// result and no terminator. The caller owns it. Text with syntax errors is formatted too. The only failures
/// are exceptions of the host, such as std::bad_alloc, and they pass through. May be called on any number of
/// threads at once.
CA_FORMATTING_API std::unique_ptr<kzArray_tag, matrix::detail::kzDestroy_deleter>
ca_format(const std::u16string& text, unsigned int firstLine, unsigned int lastLine, bool useSpaces,
          unsigned int tabSize, std::u16string_view functionIndentStyle, unsigned int indentSize,
          std::u16string_view blankLineStyle);
