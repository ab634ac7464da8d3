// SPDX-License-Identifier: Apache-2.0
// Calls of a service that go wrong.
#pragma once

#include <hidl/Status.h>
#include <platform/Mutex.h>

#include <atomic>
#include <cstdint>
#include <functional>
#include <map>
#include <utility>

#include "simulator/Event.h"

namespace simulator {

enum class Failure {
    NONE,
    REFUSED,           // answers the Result of refuseWith: a setter has no effect, a getter delivers its values too
    NO_CALLBACK,       // a getter returns without its callback; a setter is as with NONE
    TRANSPORT_BEFORE,  // the transport fails, and the call has no effect
    TRANSPORT_AFTER,   // the call has its effect, a getter invokes its callback, then the transport fails
};

// A getter answers through a callback, a setter by what it returns.
enum class CallKind { SETTER, GETTER };

// Whether a setter changes what it sets, or a getter invokes its callback.
inline bool hasEffect(CallKind kind, Failure failure) {
    const Failure spoiling = kind == CallKind::SETTER ? Failure::REFUSED : Failure::NO_CALLBACK;
    return failure != spoiling && failure != Failure::TRANSPORT_BEFORE;
}

// Which calls of a service fail, and how. Any thread may set it at any time.
template <typename Operation, typename Result>
class Faults {
public:
    // From now on this happens to every call of the operation.
    void fail(Operation operation, Failure failure) PLATFORM_EXCLUDES(mutex) {
        const platform::Lock lock(mutex);
        byOperation[operation] = failure;
        set = true;
    }
    // This happens to one call, of whatever operation: the number-th from now on, 1 for the next.
    void failOnce(uint64_t number, Failure failure) PLATFORM_EXCLUDES(mutex) {
        const platform::Lock lock(mutex);
        byNumber[calls + number] = failure;
        set = true;
    }
    // No call fails any more, and a later refusal answers what it does without refuseWith.
    void recover() PLATFORM_EXCLUDES(mutex) {
        const platform::Lock lock(mutex);
        byOperation.clear();
        byNumber.clear();
        refusal = defaultRefusal;
        set = false;
    }
    // What refused calls answer.
    void refuseWith(Result result) PLATFORM_EXCLUDES(mutex) {
        const platform::Lock lock(mutex);
        refusal = result;
    }
    // Invoked at the beginning of every call, on the caller's thread. Set it while nobody calls.
    void onCall(std::function<void(Operation)> newHook) { hook = std::move(newHook); }

protected:
    explicit Faults(Result usualRefusal) : defaultRefusal(usualRefusal), refusal(usualRefusal) {}

    // Invokes the hook for what is not a call.
    void announce(Operation operation) {
        if (hook) hook(operation);
    }

    // What happens to the call that begins now.
    Failure begin(Operation operation, CallKind kind) PLATFORM_EXCLUDES(mutex) {
        announce(operation);
        if (!set) return Failure::NONE;
        const platform::Lock lock(mutex);
        Failure failure = Failure::NONE;
        if (const auto found = byOperation.find(operation); found != byOperation.end()) failure = found->second;
        if (const auto found = byNumber.find(++calls); found != byNumber.end()) failure = found->second;
        return kind == CallKind::SETTER && failure == Failure::NO_CALLBACK ? Failure::NONE : failure;
    }

    // The outcome of a call that answers result unless it fails.
    Outcome outcomeOf(Failure failure, Result result) const PLATFORM_EXCLUDES(mutex) {
        if (failure == Failure::NONE) return {Outcome::Kind::ANSWERED, static_cast<int32_t>(result)};
        const platform::Lock lock(mutex);
        const auto answered = static_cast<int32_t>(failure == Failure::REFUSED ? refusal : result);
        switch (failure) {
            case Failure::TRANSPORT_BEFORE:
            case Failure::TRANSPORT_AFTER:
                return {Outcome::Kind::DEAD_OBJECT, answered};
            case Failure::NO_CALLBACK:
                return {Outcome::Kind::NO_CALLBACK, answered};
            case Failure::REFUSED:
            case Failure::NONE:
                break;
        }
        return {Outcome::Kind::ANSWERED, answered};
    }

private:
    std::atomic<bool> set{false};  // something may fail: without that a call costs nothing here
    const Result defaultRefusal;
    mutable platform::Mutex mutex;
    std::map<Operation, Failure> byOperation PLATFORM_GUARDED_BY(mutex);
    std::map<uint64_t, Failure> byNumber PLATFORM_GUARDED_BY(mutex);
    uint64_t calls PLATFORM_GUARDED_BY(mutex) = 0;  // counted while something may fail
    Result refusal PLATFORM_GUARDED_BY(mutex);
    std::function<void(Operation)> hook;
};

// What a call returns after its outcome.
inline ::android::hardware::Status deadObject() {
    return ::android::hardware::Status::fromStatusT(::android::DEAD_OBJECT);
}
template <typename Result>
::android::hardware::Return<Result> returnOf(const Outcome& outcome) {
    if (outcome.kind == Outcome::Kind::DEAD_OBJECT) return deadObject();
    return static_cast<Result>(outcome.result);
}
inline ::android::hardware::Return<void> returnVoid(const Outcome& outcome) {
    if (outcome.kind == Outcome::Kind::DEAD_OBJECT) return deadObject();
    return ::android::hardware::Void();
}

}  // namespace simulator
