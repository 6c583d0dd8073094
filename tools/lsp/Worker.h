#pragma once

#include <condition_variable>
#include <cstddef>
#include <deque>
#include <functional>
#include <mutex>
#include <thread>

namespace ombrel::lsp {

/// Large documents have a lane of their own, so that they never keep others waiting.
enum class Lane { Quick, Large };

enum class Urgency {
    Request,    ///< somebody waits for the answer
    Background, ///< after all requests of the lane
};

/// Runs jobs one after the other, those of different lanes at the same time.
class Worker {
public:
    virtual ~Worker() = default;

    /// A job throws nothing.
    virtual void post(Lane lane, Urgency urgency, std::function<void()> job) = 0;
};

/// A thread for each lane. The destructor waits for the jobs that run and drops the others.
class ThreadedWorker : public Worker {
public:
    ThreadedWorker() = default;
    ThreadedWorker(const ThreadedWorker&) = delete;
    ThreadedWorker& operator=(const ThreadedWorker&) = delete;

    void post(Lane lane, Urgency urgency, std::function<void()> job) override;

private:
    class Thread {
    public:
        Thread();
        Thread(const Thread&) = delete;
        Thread& operator=(const Thread&) = delete;
        ~Thread() { thread.request_stop(); }

        void post(Urgency urgency, std::function<void()> job);

    private:
        void run(const std::stop_token& stop);

        std::mutex mutex; ///< guards the queues
        std::deque<std::function<void()>> requests;
        std::deque<std::function<void()>> background;
        std::condition_variable_any isWorkThere;
        std::jthread thread; ///< last, so that it ends before what it uses
    };

    Thread quick;
    Thread large;
};

} // namespace ombrel::lsp
