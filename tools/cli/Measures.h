#pragma once

#include "text/Stopwatch.h"

#include <array>
#include <cstddef>

namespace ombrel {

/// The stages of a run, in their order.
enum class Stage {
    Options, ///< reading options files, and finding the options for a file
    Search,
    Reading, ///< bytes, and making characters of them
    Formatting,
    Checking, ///< the tree engine's comparison of result and source; with --check-syntax, parsing
    Writing,  ///< writing back, or making the text to print
    Reporting,
};

class StageTimes {
public:
    static constexpr std::size_t count = 7;

    Stopwatch& operator[](Stage stage) { return watches[static_cast<std::size_t>(stage)]; }
    const Stopwatch& operator[](Stage stage) const { return watches[static_cast<std::size_t>(stage)]; }

    void add(const StageTimes& other) {
        for (std::size_t i = 0; i < count; ++i) {
            watches[i].add(other.watches[i]);
        }
    }

private:
    std::array<Stopwatch, count> watches;
};

/// What was measured of one file or of several.
struct FileMeasures {
    StageTimes times;
    std::size_t byteCount = 0; ///< read
    std::size_t lineCount = 0;

    void add(const FileMeasures& other) {
        times.add(other.times);
        byteCount += other.byteCount;
        lineCount += other.lineCount;
    }
};

} // namespace ombrel
