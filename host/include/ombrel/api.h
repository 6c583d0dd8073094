#pragma once

/// Marks what the host library exports. Everything else has hidden visibility.
#define OMBREL_HOST_API __attribute__((visibility("default")))
