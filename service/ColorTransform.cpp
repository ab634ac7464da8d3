// SPDX-License-Identifier: Apache-2.0
// The composer's colour transform. Calls are forwarded; the service stores no matrix.
#include <platform/Log.h>

#include <cinttypes>

#include "service/Composer.h"
#include "service/DisplayControlImpl.h"

namespace vendor::kov::hardware::display_control::V1_0::implementation {

struct DisplayControlImpl::ColorTransformAnswer {
    Result result = Result::OK;
    ColorTransformMatrix first{};
    ColorTransformMatrix last{};
};

Return<Result> DisplayControlImpl::setColorTransformMatrix(uint64_t handle, uint64_t display,
                                                           const ColorTransformMatrix& matrix) {
    const auto& m = matrix.elements;
    PLATFORM_LOG_DEBUG("%" PRIu64, handle);
    PLATFORM_LOG_DEBUG("setColorTransformMatrix0 %f %f %f", m[0], m[1], m[2]);
    PLATFORM_LOG_DEBUG("setColorTransformMatrix1 %f %f %f", m[3], m[4], m[5]);
    PLATFORM_LOG_DEBUG("setColorTransformMatrix2 %f %f %f", m[6], m[7], m[8]);
    return sendColorTransform(display, toComposer(firstCtm), toComposer(matrix));
}

Return<Result> DisplayControlImpl::setColorTransformMatrix2(uint64_t handle, uint64_t display,
                                                            const ColorTransformMatrix& first,
                                                            const ColorTransformMatrix& last) {
    const auto& f = first.elements;
    const auto& l = last.elements;
    PLATFORM_LOG_DEBUG("%" PRIu64, handle);
    PLATFORM_LOG_DEBUG("first %f %f %f", f[0], f[1], f[2]);
    PLATFORM_LOG_DEBUG("first %f %f %f", f[3], f[4], f[5]);
    PLATFORM_LOG_DEBUG("first %f %f %f", f[6], f[7], f[8]);
    PLATFORM_LOG_DEBUG("last %f %f %f", l[0], l[1], l[2]);
    PLATFORM_LOG_DEBUG("last %f %f %f", l[3], l[4], l[5]);
    PLATFORM_LOG_DEBUG("last %f %f %f", l[6], l[7], l[8]);
    return sendColorTransform(display, toComposer(first), toComposer(last));
}

Return<void> DisplayControlImpl::getColorTransformMatrix(uint64_t handle, uint64_t display, const Matrix& callback) {
    PLATFORM_LOG_DEBUG("%" PRIu64, handle);
    const ColorTransformAnswer matrices = queryColorTransform(display);
    callback(matrices.result, matrices.first);
    return Void();
}

Return<void> DisplayControlImpl::getColorTransformMatrix2(uint64_t handle, uint64_t display,
                                                          const MatrixPair& callback) {
    PLATFORM_LOG_DEBUG("%" PRIu64, handle);
    const ColorTransformAnswer matrices = queryColorTransform(display);
    callback(matrices.result, matrices.first, matrices.last);
    return Void();
}

Result DisplayControlImpl::sendColorTransform(uint64_t display, const composer_types::ColorTransformMatrix& first,
                                              const composer_types::ColorTransformMatrix& last) {
    if (composerExt == nullptr) return Result::FAILED;
    auto answer = composerExt->setColorTransformMatrix(display, first, last);
    return fromComposer(answer.withDefault(composer_types::Result::FAILED));
}

// OK and zeros if the composer does not call back; FAILED and zeros without a composer and if the transport fails.
DisplayControlImpl::ColorTransformAnswer DisplayControlImpl::queryColorTransform(uint64_t display) {
    if (composerExt == nullptr) return {Result::FAILED, {}, {}};
    ColorTransformAnswer answer;
    const auto status = composerExt->getColorTransformMatrix(
        display, [&answer](composer_types::Result result, const composer_types::ColorTransformMatrix& first,
                           const composer_types::ColorTransformMatrix& last) {
            answer = {fromComposer(result), fromComposer(first), fromComposer(last)};
        });
    if (!status.isOk()) answer = {Result::FAILED, {}, {}};
    return answer;
}

}  // namespace vendor::kov::hardware::display_control::V1_0::implementation
