// SPDX-License-Identifier: Apache-2.0
#include <platform/VirtualClock.h>

#include <algorithm>
#include <utility>

namespace platform {

namespace {

thread_local const VirtualClock* startedBy = nullptr;  // the clock that started this thread

}  // namespace

Clock::Duration VirtualClock::now() {
    const Lock lock(mutex);
    return time;
}

void VirtualClock::sleepFor(Duration duration) {
    if (startedBy != this) {
        advance(duration);
        return;
    }
    Mutex ownMutex;
    Condition own;
    Lock lock(ownMutex);
    waitUntil(own, lock, now() + duration);
}

// A waiter holds its condition's mutex until the wait releases it, and step() locks that mutex before it notifies: so
// no wake-up is lost.
void VirtualClock::waitUntil(Condition& condition, Lock& lock, Duration deadline) {
    const uint64_t before = condition.notifications();
    Waiter waiter{deadline, condition, lock.mutex(), before, false};
    {
        const Lock own(mutex);
        if (deadline <= time) return;
        if (isNext(deadline)) {
            time = deadline;
            return;
        }
        waiters.push_back(&waiter);
        --running;
        idle.notifyAll();
    }
    while (condition.notifications() == before) condition.wait(lock);
    const Lock own(mutex);
    if (waiter.due) return;  // step() has removed it from the list and counted it as running
    waiters.remove(&waiter);
    ++running;
}

std::unique_ptr<Thread> VirtualClock::startThread(std::function<void()> body) {
    if (threadsRefused) return nullptr;
    const Lock lock(mutex);  // the thread is counted before it ends
    auto thread = Thread::start([this, body = std::move(body)] {
        startedBy = this;
        body();
        const Lock own(mutex);
        alive.erase(pthread_self());
        --running;
        idle.notifyAll();
    });
    if (thread == nullptr) return nullptr;
    alive.insert(thread->id());
    ++running;
    return thread;
}

std::list<VirtualClock::Waiter*>::iterator VirtualClock::earliest() {
    return std::min_element(waiters.begin(), waiters.end(),
                            [](const Waiter* a, const Waiter* b) { return a->deadline < b->deadline; });
}

bool VirtualClock::step(Duration end) {
    Waiter* waiter = nullptr;
    {
        const Lock lock(mutex);
        const auto next = earliest();
        if (next == waiters.end() || (*next)->deadline > end) return false;
        waiter = *next;
        waiters.erase(next);
        waiter->due = true;
        time = std::max(time, waiter->deadline);
        ++running;
    }
    const Lock lock(waiter->conditionMutex);
    waiter->condition.notifyAll();
    return true;
}

void VirtualClock::advance(Duration duration) {
    const Duration end = now() + duration;
    do settleUntil(end);
    while (step(end));
    const Lock lock(mutex);
    time = std::max(time, end);
}

void VirtualClock::settle() {
    settleUntil(Duration::min());
}

void VirtualClock::settleUntil(Duration end) {
    Lock lock(mutex);
    horizon = end;
    while (!isIdle()) idle.wait(lock);
    horizon = Duration::min();
}

bool VirtualClock::isNext(Duration deadline) {
    return running == 1 && deadline <= horizon &&
           std::all_of(waiters.begin(), waiters.end(), [deadline](const Waiter* waiter) {
               return deadline < waiter->deadline && waiter->condition.notifications() == waiter->before;
           });
}

// A waiter that was notified counts as running.
bool VirtualClock::isIdle() {
    return running == 0 && std::none_of(waiters.begin(), waiters.end(), [](const Waiter* waiter) {
               return waiter->condition.notifications() != waiter->before;
           });
}

void VirtualClock::join(Thread& thread) {
    do settle();
    while (isAlive(thread.id()) && step(Duration::max()));
    thread.join();
}

bool VirtualClock::hasThreads() {
    const Lock lock(mutex);
    return !alive.empty();
}

bool VirtualClock::isAlive(pthread_t id) {
    const Lock lock(mutex);
    return alive.count(id) != 0;
}

}  // namespace platform
