// What a closed library keeps for the whole process.
#pragma once

#include <mutex>
#include <optional>
#include <utility>

namespace simulator {

// A configuration that is not there until it is set. Any thread may set, clear and read it: mutex guards the value, and
// readers take a copy.
template <typename T>
class Configuration {
public:
    void set(T newValue) {
        const std::lock_guard guard(mutex);
        value = std::move(newValue);
    }

    void clear() {
        const std::lock_guard guard(mutex);
        value.reset();
    }

    std::optional<T> get() const {
        const std::lock_guard guard(mutex);
        return value;
    }

private:
    mutable std::mutex mutex;
    std::optional<T> value;
};

}  // namespace simulator
