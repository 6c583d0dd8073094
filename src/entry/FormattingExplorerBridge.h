#pragma once

#include <ca/formatting/TreeFormat.h>

#include <stdexcept>
#include <string>

/// The one door to the tree formatter. A development-only companion library is handed the one object of this
/// class when the formatter's library is loaded, and calls it as often as it likes.
///
/// The two libraries meet at the places of the operations in the table of virtual operations, so a new one
/// has to come after all others. The object is never destroyed.
class FormattingExplorerBridge {
public:
    virtual ~FormattingExplorerBridge() = default;

    /// Formats the text of a file with the options of a JSON text, its section "formatting". Any number of
    /// threads may call it at once.
    ///
    /// What is returned is either the formatted text or the reasons why there is none. Syntax errors come
    /// first:
    ///
    ///     Syntax errors:
    ///        MESSAGE line: 3 column: 7
    ///
    /// Without any, every issue of the configuration ends the call, a warning too. Each is a line with its
    /// message and, where its place is known, one with the line and one with the column, all counted from 1:
    ///
    ///     MESSAGE
    ///       line: 1
    ///       column: 18
    ///
    /// Throws what the host's libraries throw for any other reason, std::bad_alloc above all.
    virtual std::u16string format(const std::u16string& sourceText, const std::u16string& jsonText) = 0;

    /// Formats a text that is parsed already, with a configuration that is read already. Gives the reasons
    /// why there is no formatted text as values: syntax errors first, as above. Any number of threads may
    /// call it at once, with the same configuration too.
    ///
    /// The text of each token of code is printed unchanged and in order, whatever the options are. A line end
    /// inside whitespace that the options leave alone is printed as it is in the source, every other one
    /// as LF.
    ///
    /// A bridge that offers only the operation above throws std::logic_error.
    virtual ca::formatting::TreeFormatResult formatParsed(const ca::formatting::TreeFormatRequest&) {
        throw std::logic_error("this bridge formats texts only");
    }
};
