#include "Measure.h"

#include <malloc.h>

#include <ctime>
#include <fstream>
#include <map>

namespace {

/// Seconds on the processor, not on the wall: other work on the machine doesn't count.
double getSeconds(const std::function<void()>& work) {
    const std::clock_t start = std::clock();
    work();
    return static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC;
}

double getSecondsOfCopy(const std::u16string& text) {
    constexpr int rounds = 5;
    return getSeconds([&text] {
               for (int i = 0; i < rounds; ++i) {
                   std::u16string copy = text;
                   benchmark::DoNotOptimize(copy.data());
               }
           }) /
           rounds;
}

/// A field of this process's status, in bytes.
double getStatus(const std::string& field) {
    std::ifstream status("/proc/self/status");
    for (std::string word; status >> word;) {
        if (word == field + ":") {
            double kibibytes = 0;
            status >> kibibytes;
            return kibibytes * 1024;
        }
    }
    return 0;
}

double getPeakBytes(const std::function<void()>& work) {
    malloc_trim(0);
    std::ofstream("/proc/self/clear_refs") << "5"; // sets the peak back to what is in use now
    const double before = getStatus("VmRSS");
    work();
    return getStatus("VmHWM") - before;
}

/// How long a text of some size took.
struct Run {
    double size;
    double seconds;
};

} // namespace

void measure(benchmark::State& state, const std::string& family, const std::u16string& text,
             const std::function<void()>& work) {
    static std::map<std::string, Run> latestRuns;

    const double peak = getPeakBytes(work);
    double best = getSeconds(work);
    for (auto _ : state) {
        best = std::min(best, getSeconds(work));
    }
    const auto size = static_cast<double>(text.size());
    state.counters["chars/s"] = size / best;
    state.counters["x_copy"] = best / getSecondsOfCopy(text);
    state.counters["bytes/char"] = peak / size;
    Run& latest = latestRuns[family];
    if (latest.size > 0.45 * size && latest.size < 0.55 * size) {
        state.counters["growth"] = 2 * (best / size) / (latest.seconds / latest.size);
    }
    latest = {size, best};
}
