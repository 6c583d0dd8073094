#pragma once

#include <chrono>
#include <ctime>

namespace ombrel {

/// Adds up how long one thread is busy with something: elapsed time, and its own time on the processor.
class Stopwatch {
public:
    using Duration = std::chrono::nanoseconds;

    /// The watch runs while this lives. Null: nothing is measured, and it costs nothing.
    class Lap {
    public:
        explicit Lap(Stopwatch* watch) : watch(watch) {
            if (watch != nullptr) {
                watch->subtractNow();
            }
        }
        Lap(const Lap&) = delete;
        Lap& operator=(const Lap&) = delete;
        ~Lap() {
            if (watch != nullptr) {
                watch->addNow();
            }
        }

    private:
        Stopwatch* watch;
    };

    Duration getElapsed() const { return elapsed; }
    Duration getProcessorTime() const { return processorTime; }

    void add(const Stopwatch& other) {
        elapsed += other.elapsed;
        processorTime += other.processorTime;
    }

    /// Takes away a part that has been measured in another watch too.
    void subtract(const Stopwatch& part) {
        elapsed -= part.elapsed;
        processorTime -= part.processorTime;
    }

private:
    static Duration read(clockid_t clock) {
        timespec time{};
        ::clock_gettime(clock, &time);
        return std::chrono::seconds(time.tv_sec) + std::chrono::nanoseconds(time.tv_nsec);
    }

    void addNow() {
        elapsed += read(CLOCK_MONOTONIC);
        processorTime += read(CLOCK_THREAD_CPUTIME_ID);
    }

    void subtractNow() {
        elapsed -= read(CLOCK_MONOTONIC);
        processorTime -= read(CLOCK_THREAD_CPUTIME_ID);
    }

    Duration elapsed{};
    Duration processorTime{};
};

} // namespace ombrel
