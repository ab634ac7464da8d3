// SPDX-License-Identifier: Apache-2.0
// Reference-counting pointer to a RefBase.
#pragma once

#include <cstddef>
#include <utility>

namespace android {

// Holds one strong reference. One thread at a time uses an sp object; the object it points to may be shared.
template <typename T>
class sp {
public:
    sp() = default;
    sp(std::nullptr_t) {}                         // NOLINT(google-explicit-constructor): as on the phone
    sp(T* other) : pointer(other) { acquire(); }  // NOLINT(google-explicit-constructor): as on the phone
    sp(const sp& other) : pointer(other.pointer) { acquire(); }
    sp(sp&& other) noexcept : pointer(std::exchange(other.pointer, nullptr)) {}
    template <typename U>
    sp(const sp<U>& other) : pointer(other.get()) {  // NOLINT(google-explicit-constructor): as on the phone
        acquire();
    }
    ~sp() { release(); }

    sp& operator=(sp other) noexcept {
        std::swap(pointer, other.pointer);
        return *this;
    }

    void clear() { *this = nullptr; }
    T* get() const { return pointer; }
    T& operator*() const { return *pointer; }
    T* operator->() const { return pointer; }
    explicit operator bool() const { return pointer != nullptr; }

private:
    void acquire() {
        if (pointer != nullptr) pointer->incStrong(this);
    }
    void release() {
        if (pointer != nullptr) pointer->decStrong(this);
    }

    T* pointer = nullptr;
};

template <typename T, typename U>
bool operator==(const sp<T>& left, const sp<U>& right) {
    return left.get() == right.get();
}
template <typename T, typename U>
bool operator!=(const sp<T>& left, const sp<U>& right) {
    return left.get() != right.get();
}
template <typename T>
bool operator==(const sp<T>& left, std::nullptr_t) {
    return left.get() == nullptr;
}
template <typename T>
bool operator!=(const sp<T>& left, std::nullptr_t) {
    return left.get() != nullptr;
}

}  // namespace android
