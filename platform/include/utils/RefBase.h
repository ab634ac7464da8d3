// SPDX-License-Identifier: Apache-2.0
// Base of all objects that are held by strong pointers.
#pragma once

#include <atomic>
#include <cstdint>

#include <utils/StrongPointer.h>

namespace android {

// Counts its strong references; releasing the last one deletes the object. Created with new and held only through sp.
// The count may be changed from any thread.
class RefBase {
public:
    void incStrong(const void* id) const;
    void decStrong(const void* id) const;
    int32_t getStrongCount() const { return strongCount; }

    RefBase(const RefBase&) = delete;
    RefBase& operator=(const RefBase&) = delete;

protected:
    RefBase() = default;
    virtual ~RefBase();

private:
    mutable std::atomic<int32_t> strongCount{0};
};

// A weak reference. Only the empty one exists on the host.
template <typename T>
class wp {};

}  // namespace android
