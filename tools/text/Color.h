#pragma once

namespace ombrel {

/// Whether a text for people is written with the color codes of terminals.
enum class Color { Off, On };

} // namespace ombrel
