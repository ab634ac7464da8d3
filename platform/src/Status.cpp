// SPDX-License-Identifier: Apache-2.0
#include <hidl/Status.h>

#include <android/log.h>

#include <cstdio>
#include <cstdlib>

namespace android::hardware {

namespace {

[[noreturn]] void endProcess(const char* reason, const std::string& description) {
    __android_log_print(ANDROID_LOG_FATAL, "HidlStatus", "%s: %s", reason, description.c_str());
    fprintf(stderr, "%s: %s\n", reason, description.c_str());  // also when the log suppresses the line
    abort();
}

}  // namespace

Status Status::fromStatusT(status_t status) {
    Status result;
    result.exception = status == OK ? EX_NONE : EX_TRANSACTION_FAILED;
    result.errorCode = status;
    return result;
}

Status Status::fromExceptionCode(int32_t exceptionCode, const char* message) {
    Status result;
    result.exception = exceptionCode;
    result.message = message == nullptr ? "" : message;
    return result;
}

std::string Status::description() const {
    if (isOk()) return "Status(EX_NONE)";
    if (exception == EX_TRANSACTION_FAILED) return "Status(EX_TRANSACTION_FAILED): error " + std::to_string(errorCode);
    return "Status(" + std::to_string(exception) + "): '" + message + "'";
}

namespace details {

return_status::return_status(return_status&& other) noexcept
    : status(std::move(other.status)), checked(std::exchange(other.checked, true)) {}

return_status& return_status::operator=(return_status&& other) noexcept {
    if (!checked && !status.isOk()) endProcess("Failed HIDL return status not checked", description());
    status = std::move(other.status);
    checked = std::exchange(other.checked, true);
    return *this;
}

return_status::~return_status() {
    if (!checked && !status.isOk()) endProcess("Failed HIDL return status not checked", description());
}

bool return_status::isOk() const {
    checked = true;
    return status.isOk();
}

std::string return_status::description() const {
    return status.description();
}

void return_status::assertOk() const {
    if (!isOk()) endProcess("Attempted to retrieve value from failed HIDL call", description());
}

}  // namespace details

}  // namespace android::hardware
