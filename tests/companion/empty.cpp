// A companion library that doesn't offer what the formatter's library looks for.
