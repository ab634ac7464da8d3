// The composer's colour transform, passed through: the service keeps nothing of it.
#include <platform/Log.h>
#include <platform/OutOfMemory.h>

#include "service/Composer.h"
#include "service/DisplayControlImpl.h"

namespace vendor::kov::hardware::display_control::V1_0::implementation {

// What a composer's callback delivered. Shared with the callback, since a composer may call it late.
struct DisplayControlImpl::MatricesAnswer {
    Result result = Result::OK;
    ColorTransformMatrix first{};
    ColorTransformMatrix last{};
};

Return<Result> DisplayControlImpl::setColorTransformMatrix(uint64_t handle, uint64_t display,
                                                           const ColorTransformMatrix& matrix) {
    const auto& m = matrix.elements;
    LOG_DEBUG("%lu", handle);
    LOG_DEBUG("setColorTransformMatrix0 %f %f %f", m[0], m[1], m[2]);
    LOG_DEBUG("setColorTransformMatrix1 %f %f %f", m[3], m[4], m[5]);
    LOG_DEBUG("setColorTransformMatrix2 %f %f %f", m[6], m[7], m[8]);
    return sendColorTransform(display, toComposer(firstCtm), toComposer(matrix));
}

Return<Result> DisplayControlImpl::setColorTransformMatrix2(uint64_t handle, uint64_t display,
                                                            const ColorTransformMatrix& first,
                                                            const ColorTransformMatrix& last) {
    const auto& f = first.elements;
    const auto& l = last.elements;
    LOG_DEBUG("%lu", handle);
    LOG_DEBUG("first %f %f %f", f[0], f[1], f[2]);
    LOG_DEBUG("first %f %f %f", f[3], f[4], f[5]);
    LOG_DEBUG("first %f %f %f", f[6], f[7], f[8]);
    LOG_DEBUG("last %f %f %f", l[0], l[1], l[2]);
    LOG_DEBUG("last %f %f %f", l[3], l[4], l[5]);
    LOG_DEBUG("last %f %f %f", l[6], l[7], l[8]);
    return sendColorTransform(display, toComposer(first), toComposer(last));
}

Return<void> DisplayControlImpl::getColorTransformMatrix(uint64_t handle, uint64_t display, const Matrix& callback) {
    LOG_DEBUG("%lu", handle);
    const auto answer = askColorTransform(display);
    callback(answer->result, answer->first);
    return Void();
}

Return<void> DisplayControlImpl::getColorTransformMatrix2(uint64_t handle, uint64_t display,
                                                          const MatrixPair& callback) {
    LOG_DEBUG("%lu", handle);
    const auto answer = askColorTransform(display);
    callback(answer->result, answer->first, answer->last);
    return Void();
}

Result DisplayControlImpl::sendColorTransform(uint64_t display, const composer_types::ColorTransformMatrix& first,
                                              const composer_types::ColorTransformMatrix& last) {
    if (composerExt == nullptr) return Result::FAILED;
    auto answer = composerExt->setColorTransformMatrix(display, first, last);
    return fromComposer(answer.withDefault(composer_types::Result::FAILED));
}

// The composer's Result and both matrices: zeros when it did not call back, FAILED and zeros when it was not reached.
std::shared_ptr<const DisplayControlImpl::MatricesAnswer> DisplayControlImpl::askColorTransform(uint64_t display) {
    static const MatricesAnswer kNotReached{Result::FAILED, {}, {}};
    std::shared_ptr<const MatricesAnswer> notReached(std::shared_ptr<void>(), &kNotReached);
    if (composerExt == nullptr) return notReached;
    return platform::unlessOutOfMemory(notReached, [&]() -> std::shared_ptr<const MatricesAnswer> {
        const auto answer = std::make_shared<MatricesAnswer>();
        const auto status = composerExt->getColorTransformMatrix(
            display, [answer](composer_types::Result result, const composer_types::ColorTransformMatrix& first,
                              const composer_types::ColorTransformMatrix& last) {
                answer->result = fromComposer(result);
                answer->first.elements = first.elements.data();
                answer->last.elements = last.elements.data();
            });
        return status.isOk() ? answer : notReached;
    });
}

}  // namespace vendor::kov::hardware::display_control::V1_0::implementation
