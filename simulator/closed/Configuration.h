// What a closed library keeps for the whole process.
#pragma once

#include <platform/Mutex.h>

#include <optional>
#include <utility>

namespace simulator {

// A configuration that is not there until it is set. Any thread may set, clear and read it: readers take a copy.
template <typename T>
class Configuration {
public:
    void set(T newValue) {
        const platform::Lock guard(mutex);
        value = std::move(newValue);
    }

    void clear() {
        const platform::Lock guard(mutex);
        value.reset();
    }

    std::optional<T> get() const {
        const platform::Lock guard(mutex);
        return value;
    }

private:
    mutable platform::Mutex mutex;
    std::optional<T> value PLATFORM_GUARDED_BY(mutex);
};

}  // namespace simulator
