#pragma once

#include <functional>
#include <string>

/// Runs on a thread with a stack of a megabyte, so that nothing may recurse without a limit.
void runOnSmallStack(std::function<void()> work);

std::u16string repeat(std::u16string_view piece, std::size_t count);
