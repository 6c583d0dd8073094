#include "lsp/Worker.h"

#include <utility>

namespace ombrel::lsp {

void ThreadedWorker::post(Lane lane, Urgency urgency, std::function<void()> job) {
    (lane == Lane::Large ? large : quick).post(urgency, std::move(job));
}

ThreadedWorker::Thread::Thread() : thread([this](const std::stop_token& stop) { run(stop); }) {}

void ThreadedWorker::Thread::post(Urgency urgency, std::function<void()> job) {
    {
        const std::lock_guard guard(mutex);
        (urgency == Urgency::Request ? requests : background).push_back(std::move(job));
    }
    isWorkThere.notify_one();
}

void ThreadedWorker::Thread::run(const std::stop_token& stop) {
    std::unique_lock lock(mutex);
    while (isWorkThere.wait(lock, stop, [this] { return !requests.empty() || !background.empty(); }) &&
           !stop.stop_requested()) {
        auto& queue = requests.empty() ? background : requests;
        std::function<void()> job = std::move(queue.front());
        queue.pop_front();
        lock.unlock();
        job();
        job = nullptr; // what it holds is freed outside of the lock
        lock.lock();
    }
}

} // namespace ombrel::lsp
