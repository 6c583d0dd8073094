#pragma once

#include "format/Gap.h"

#include <cstddef>
#include <string>
#include <string_view>

namespace ombrel {

/// A gap's text in short: each comment is one `%`, and all line ends are LF. So a text that a gap may have
/// can be looked at without stumbling over the words of comments.
std::u16string getLayout(const GapList& gaps, std::size_t gap, std::u16string_view text);

/// What of a layout can be part of a program: its commas and semicolons, and a LF for each line end that no
/// continuation cancels.
std::u16string getSeparators(std::u16string_view layout);

/// The gap as it is in the source, with LF as its only line end. If trimming is on, without the whitespace
/// inside its lines and on blank lines; the starts of lines stay.
std::u16string getKeptText(const GapList& gaps, std::size_t gap, bool isTrimming);

/// Whether both are the same but for the kinds of their line ends.
bool isSameText(std::u16string_view a, std::u16string_view b);

} // namespace ombrel
