#pragma once

#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <exception>
#include <functional>
#include <mutex>
#include <new>
#include <optional>
#include <stop_token>
#include <system_error>
#include <thread>
#include <utility>
#include <vector>

namespace ombrel {

/// Computes `work(0)` to `work(count - 1)` on several threads and hands the results out in this order. At
/// most eight results for each thread wait for their turn; then the threads pause. With one thread nothing is
/// started, and each result is computed when it is asked for.
///
/// To be created, used and destroyed on one thread. The destructor waits for the work that has started and
/// starts no more.
template <class Result>
class OrderedWork {
public:
    OrderedWork(std::size_t count, std::size_t threadCount, std::function<Result(std::size_t)> work)
        : work(std::move(work)), count(count), slots(8 * threadCount) {
        if (threadCount > 1) {
            startThreads(threadCount);
        }
    }
    OrderedWork(const OrderedWork&) = delete;
    OrderedWork& operator=(const OrderedWork&) = delete;
    ~OrderedWork() {
        for (std::jthread& thread : threads) {
            thread.request_stop();
        }
    }

    /// The next result, nothing after the last. Throws what its work has thrown. Calls `onWait` ten times a
    /// second while the result isn't ready.
    std::optional<Result> getNext(const std::function<void()>& onWait) {
        if (handedOut == count) {
            return std::nullopt;
        }
        if (threads.empty()) {
            return work(handedOut++);
        }
        std::unique_lock lock(mutex);
        Slot& slot = getSlot(handedOut);
        while (
            !isResultThere.wait_for(lock, std::chrono::milliseconds(100), [&] { return slot.isReady(); })) {
            lock.unlock();
            onWait();
            lock.lock();
        }
        Slot done;
        done.swap(slot);
        ++handedOut;
        lock.unlock();
        isRoomThere.notify_one();
        if (done.fault) {
            std::rethrow_exception(done.fault);
        }
        return std::move(done.result);
    }

private:
    /// What became of one index. It is made without allocating memory, so that a thread that has none left
    /// can say so.
    struct Slot {
        std::optional<Result> result;
        std::exception_ptr fault;

        bool isReady() const { return result || fault; }
        void swap(Slot& other) {
            result.swap(other.result);
            fault.swap(other.fault);
        }
    };

    /// Starts fewer, or none, if the system refuses more.
    void startThreads(std::size_t threadCount) {
        try {
            for (std::size_t i = 0; i < threadCount; ++i) {
                threads.emplace_back([this](const std::stop_token& stop) { workUntil(stop); });
            }
        } catch (const std::system_error&) {
        } catch (const std::bad_alloc&) {
        }
    }

    Slot& getSlot(std::size_t index) { return slots[index % slots.size()]; }

    void workUntil(const std::stop_token& stop) {
        while (const auto index = takeIndex(stop)) {
            Slot done = compute(*index);
            std::unique_lock lock(mutex);
            getSlot(*index).swap(done);
            const bool isNext = *index == handedOut;
            lock.unlock();
            if (isNext) { // nobody waits for another one
                isResultThere.notify_one();
            }
        }
    }

    Slot compute(std::size_t index) const {
        try {
            return {work(index), nullptr};
        } catch (...) {
            return {std::nullopt, std::current_exception()};
        }
    }

    std::optional<std::size_t> takeIndex(const std::stop_token& stop) {
        std::unique_lock lock(mutex);
        const auto canGoOn = [&] { return taken == count || taken < handedOut + slots.size(); };
        if (!isRoomThere.wait(lock, stop, canGoOn) || stop.stop_requested() || taken == count) {
            return std::nullopt;
        }
        return taken++;
    }

    const std::function<Result(std::size_t)> work;
    const std::size_t count;
    std::size_t taken = 0;     ///< indices that threads have started
    std::size_t handedOut = 0; ///< results that were returned
    std::vector<Slot> slots;   ///< what is ready, by index modulo size
    std::mutex mutex;          ///< guards taken, handedOut and slots
    std::condition_variable_any isRoomThere;
    std::condition_variable isResultThere;
    std::vector<std::jthread> threads; ///< last, so that they end before what they use
};

} // namespace ombrel
