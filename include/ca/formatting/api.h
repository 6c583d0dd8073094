#pragma once

/// Marks what the formatter library exports. Everything else has hidden visibility.
#define CA_FORMATTING_API __attribute__((visibility("default")))
