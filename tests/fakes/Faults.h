// Services that fail to order.
#pragma once

#include <hidl/Status.h>

#include <atomic>
#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <utility>

#include "tests/fakes/Journal.h"

namespace fakes {

// How a call goes wrong.
enum class Fault {
    NONE,
    REFUSES,            // answers kRefusal, with its values all the same
    SILENT,             // returns without calling back
    UNREACHABLE,        // the transport fails before the call
    DIES_AFTER_ANSWER,  // calls back, then the transport fails
};
constexpr int32_t kRefusal = -42;

// The common part of the fakes: journals every call and answers it, well or with the fault asked for. Faults are set
// while no other thread calls.
template <typename Result>
class FaultyService {
public:
    explicit FaultyService(std::string word) : journalWord(std::move(word)) {}

    // From now on this happens to every call whose journal form, without the service's word, begins with call.
    void fault(const std::string& call, Fault what) { faults[call] = what; }
    // The same with one call whatever it is, or with every one from there on. The first call after this is 1.
    void faultAt(size_t call, Fault what) { schedule(call, call, what); }
    void faultFrom(size_t call, Fault what) { schedule(call, SIZE_MAX, what); }
    size_t calls() const { return made; }  // since faultAt or faultFrom

    ::android::hardware::Return<Result> answer(const std::string& call) {
        const Fault fault = begin(call);
        if (fault == Fault::UNREACHABLE || fault == Fault::DIES_AFTER_ANSWER) return deadObject();
        return resultOf(fault);
    }
    ::android::hardware::Return<void> answer(const std::string& call, const std::function<void(Result)>& callback) {
        const Fault fault = begin(call);
        const Result result = resultOf(fault);
        if (fault == Fault::UNREACHABLE) return deadObject();
        if (fault == Fault::SILENT) return {};
        callback(result);
        if (fault == Fault::DIES_AFTER_ANSWER) return deadObject();
        return {};
    }

private:
    Fault begin(const std::string& call) {
        journal::add(journalWord + " " + call);
        const size_t number = ++made;
        if (scheduled != Fault::NONE && number >= firstFaulty && number <= lastFaulty) return scheduled;
        for (const auto& [beginning, what] : faults) {
            if (what != Fault::NONE && call.compare(0, beginning.size(), beginning) == 0) return what;
        }
        return Fault::NONE;
    }

    void schedule(size_t first, size_t last, Fault what) {
        made = 0;
        firstFaulty = first;
        lastFaulty = last;
        scheduled = what;
    }

    static Result resultOf(Fault fault) { return static_cast<Result>(fault == Fault::REFUSES ? kRefusal : 0); }
    static ::android::hardware::Status deadObject() {
        return ::android::hardware::Status::fromStatusT(::android::DEAD_OBJECT);
    }

    const std::string journalWord;
    std::map<std::string, Fault> faults;
    std::atomic<size_t> made{0};
    size_t firstFaulty = 0;
    size_t lastFaulty = 0;
    Fault scheduled = Fault::NONE;
};

}  // namespace fakes
