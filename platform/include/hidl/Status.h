// SPDX-License-Identifier: Apache-2.0
// Result of a call through the transport: a status, and a value if the status is OK.
#pragma once

#include <cstdint>
#include <string>
#include <utility>

#include <utils/Errors.h>

namespace android::hardware {

// Transport status of a call.
class Status {
public:
    enum Exception : int32_t {
        EX_NONE = 0,
        EX_ILLEGAL_STATE = -5,
        EX_TRANSACTION_FAILED = -129,
    };

    static Status ok() { return {}; }
    // A failed transaction unless status is OK.
    static Status fromStatusT(status_t status);
    // A failure reported by the other side. message may be null.
    static Status fromExceptionCode(int32_t exceptionCode, const char* message);

    bool isOk() const { return exception == EX_NONE; }
    int32_t exceptionCode() const { return exception; }
    status_t transactionError() const { return exception == EX_TRANSACTION_FAILED ? errorCode : OK; }
    std::string description() const;

private:
    int32_t exception = EX_NONE;
    status_t errorCode = OK;
    std::string message;
};

namespace details {

// A status that must be examined: destroying a failed one that was not examined ends the process with a message.
class return_status {
public:
    return_status(return_status&& other) noexcept;
    return_status& operator=(return_status&& other) noexcept;
    ~return_status();

    // Marks the status as examined.
    bool isOk() const;
    std::string description() const;

protected:
    return_status() = default;
    explicit return_status(Status other) : status(std::move(other)) {}

    // Ends the process with a message if the status is a failure.
    void assertOk() const;

private:
    Status status;
    mutable bool checked = false;
};

}  // namespace details

// A value of type T, or a failed status.
template <typename T>
class Return : public details::return_status {
public:
    Return(T other) : value(std::move(other)) {}                            // NOLINT(google-explicit-constructor)
    Return(Status failure) : details::return_status(std::move(failure)) {}  // NOLINT(google-explicit-constructor)

    // The value; ends the process if the transport failed.
    operator T() const {  // NOLINT(google-explicit-constructor): as on the phone
        assertOk();
        return value;
    }
    // The value, or other if the transport failed.
    T withDefault(T other) { return isOk() ? value : std::move(other); }

private:
    T value{};
};

template <>
class Return<void> : public details::return_status {
public:
    Return() = default;
    Return(Status failure) : details::return_status(std::move(failure)) {}  // NOLINT(google-explicit-constructor)
};

inline Return<void> Void() {
    return {};
}

}  // namespace android::hardware
