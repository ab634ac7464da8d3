#include <platform/VirtualClock.h>

#include <algorithm>
#include <utility>

namespace platform {

namespace {

thread_local const VirtualClock* startedBy = nullptr;  // the clock that started this thread, if one did

}  // namespace

Clock::Duration VirtualClock::now() {
    const std::lock_guard guard(mutex);
    return time;
}

void VirtualClock::sleepFor(Duration duration) {
    if (startedBy != this) {
        advance(duration);
        return;
    }
    std::mutex ownMutex;
    std::condition_variable own;
    std::unique_lock lock(ownMutex);
    Waiter waiter{now() + duration, &own, &ownMutex, false};
    while (!waiter.due) block(waiter, lock);
}

void VirtualClock::waitUntil(std::condition_variable& condition, std::unique_lock<std::mutex>& lock,
                             Duration deadline) {
    Waiter waiter{deadline, &condition, lock.mutex(), false};
    block(waiter, lock);
}

// A waiter holds its own mutex from before it is listed until the wait releases it, and advance() takes that mutex
// before it notifies: so no wake-up comes too early.
void VirtualClock::block(Waiter& waiter, std::unique_lock<std::mutex>& lock) {
    {
        const std::lock_guard guard(mutex);
        waiters.push_back(&waiter);
        --running;
    }
    idle.notify_all();
    waiter.condition->wait(lock);
    const std::lock_guard guard(mutex);
    if (waiter.due) return;  // advance() has taken it off the list and counted it as running
    waiters.remove(&waiter);
    ++running;
}

std::thread VirtualClock::startThread(std::function<void()> body) {
    const auto changeRunning = [this](int change) {
        {
            const std::lock_guard guard(mutex);
            running += change;
        }
        idle.notify_all();
    };
    changeRunning(+1);
    try {
        return std::thread([this, changeRunning, body = std::move(body)] {
            startedBy = this;
            body();
            changeRunning(-1);
        });
    } catch (...) {
        changeRunning(-1);
        throw;
    }
}

std::list<VirtualClock::Waiter*>::iterator VirtualClock::earliest() {
    return std::min_element(waiters.begin(), waiters.end(),
                            [](const Waiter* a, const Waiter* b) { return a->deadline < b->deadline; });
}

void VirtualClock::advance(Duration duration) {
    std::unique_lock guard(mutex);
    const Duration end = time + duration;
    while (true) {
        idle.wait(guard, [this] { return running == 0; });
        const auto next = earliest();
        if (next == waiters.end() || (*next)->deadline > end) break;
        Waiter* const waiter = *next;
        std::condition_variable* const condition = waiter->condition;
        std::mutex* const conditionMutex = waiter->conditionMutex;
        waiters.erase(next);
        waiter->due = true;
        time = std::max(time, waiter->deadline);
        ++running;
        guard.unlock();
        {
            const std::lock_guard waiterGuard(*conditionMutex);
            condition->notify_all();
        }
        guard.lock();
    }
    time = end;
}

void VirtualClock::settle() {
    std::unique_lock guard(mutex);
    idle.wait(guard, [this] { return running == 0; });
}

}  // namespace platform
