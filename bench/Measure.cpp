#include "Measure.h"

#include <malloc.h>

#include <chrono>
#include <fstream>
#include <map>
#include <utility>

namespace {

double getSeconds(const std::function<void()>& work) {
    const auto start = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
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

} // namespace

void measure(benchmark::State& state, const std::string& family, const std::u16string& text,
             const std::function<void()>& work) {
    static std::map<std::pair<std::string, std::size_t>, double> earlierRuns;

    const double peak = getPeakBytes(work);
    double best = getSeconds(work);
    for (auto _ : state) {
        best = std::min(best, getSeconds(work));
    }
    const auto size = static_cast<double>(text.size());
    state.counters["chars/s"] = size / best;
    state.counters["x_copy"] = best / getSecondsOfCopy(text);
    state.counters["bytes/char"] = peak / size;
    earlierRuns[{family, text.size()}] = best;
    for (std::size_t half = text.size() / 2 - 8; half <= text.size() / 2 + 8; ++half) {
        if (const auto run = earlierRuns.find({family, half}); run != earlierRuns.end()) {
            state.counters["growth"] = best / run->second;
        }
    }
}
