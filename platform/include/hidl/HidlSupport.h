// SPDX-License-Identifier: Apache-2.0
// Containers of the interfaces (text, vectors and fixed arrays) and the receiver of a service's death.
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <string>
#include <utility>
#include <vector>

#include <utils/RefBase.h>

namespace android::hidl::base::V1_0 {

struct IBase;

}  // namespace android::hidl::base::V1_0

namespace android::hardware {

// Receives the death of a service's process; see IBase::linkToDeath.
struct hidl_death_recipient : public virtual RefBase {
    // Called once, on a thread of the receiving process's pool. cookie is the number given to linkToDeath.
    virtual void serviceDied(uint64_t cookie, const wp<::android::hidl::base::V1_0::IBase>& who) = 0;
};

// Text that owns its bytes. It may contain zero bytes; c_str() adds a terminating one.
class hidl_string {
public:
    hidl_string() = default;
    hidl_string(const char* other) : text(other == nullptr ? "" : other) {}  // NOLINT(google-explicit-constructor)
    hidl_string(const char* other, size_t length) : text(other, length) {}
    hidl_string(std::string other) : text(std::move(other)) {}  // NOLINT(google-explicit-constructor)

    const char* c_str() const { return text.c_str(); }
    size_t size() const { return text.size(); }
    bool empty() const { return text.empty(); }
    operator std::string() const { return text; }  // NOLINT(google-explicit-constructor): as on the phone

    friend bool operator==(const hidl_string& left, const hidl_string& right) { return left.text == right.text; }
    friend bool operator!=(const hidl_string& left, const hidl_string& right) { return left.text != right.text; }

private:
    std::string text;
};

// A vector that owns its elements.
template <typename T>
class hidl_vec {
public:
    hidl_vec() = default;
    hidl_vec(std::initializer_list<T> list) : elements(list) {}
    hidl_vec(std::vector<T> other) : elements(std::move(other)) {}  // NOLINT(google-explicit-constructor)

    size_t size() const { return elements.size(); }
    void resize(size_t size) { elements.resize(size); }
    T* data() { return elements.data(); }
    const T* data() const { return elements.data(); }
    T& operator[](size_t index) { return elements[index]; }
    const T& operator[](size_t index) const { return elements[index]; }

    T* begin() { return elements.data(); }
    T* end() { return elements.data() + elements.size(); }
    const T* begin() const { return elements.data(); }
    const T* end() const { return elements.data() + elements.size(); }

    friend bool operator==(const hidl_vec& left, const hidl_vec& right) { return left.elements == right.elements; }
    friend bool operator!=(const hidl_vec& left, const hidl_vec& right) { return left.elements != right.elements; }

private:
    std::vector<T> elements;
};

// Exactly N elements, stored inline. Default construction leaves numbers uninitialised.
template <typename T, size_t N>
class hidl_array {
public:
    hidl_array() = default;
    explicit hidl_array(const T* source) { *this = source; }
    hidl_array(const std::array<T, N>& source) { *this = source.data(); }  // NOLINT(google-explicit-constructor)

    hidl_array& operator=(const T* source) {
        std::copy_n(source, N, elements);
        return *this;
    }

    static constexpr size_t size() { return N; }
    T* data() { return elements; }
    const T* data() const { return elements; }
    T& operator[](size_t index) { return elements[index]; }
    const T& operator[](size_t index) const { return elements[index]; }

private:
    T elements[N];
};

}  // namespace android::hardware
