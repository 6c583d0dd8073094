#pragma once

#include "syntax/Parser.h"

namespace ca::syntax {

/// Runs `parse`. After a fault in it everything is as before, but for the place, which is the end of the
/// statement: what `parse` has added to `pending` is gone. Returns whether there was no fault.
template <class Parse>
bool Parser::parseOrSkip(Parse parse) {
    const Context start = getContext();
    try {
        parse();
        return true;
    } catch (const Abandoned&) {
        skipStatement(start);
        restore(start);
        return false;
    }
}

} // namespace ca::syntax
