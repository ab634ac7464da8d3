// SPDX-License-Identifier: Apache-2.0
// The services around the library, as quiet as can be: they take what they are given and keep nothing.
#pragma once

#include <android/frameworks/sensorservice/1.0/ISensorManager.h>
#include <vendor/kov/hardware/composer_ext/1.0/IComposerExt.h>

#include <functional>

namespace bench {

namespace composer_ext = ::vendor::kov::hardware::composer_ext::V1_0;
namespace sensorservice = ::android::frameworks::sensorservice::V1_0;
using ::android::sp;
using ::android::hardware::Return;
using ::android::hardware::Void;

class QuietComposer final : public composer_ext::IComposerExt {
public:
    using Result = composer_ext::Result;
    using Matrix = composer_ext::ColorTransformMatrix;
    using Table = composer_ext::GammaLut;

    explicit QuietComposer(uint32_t displayCount) : displays(displayCount) {}

    Return<void> getNumOfDisplay(std::function<void(Result, uint32_t)> callback) override {
        callback(Result::OK, displays);
        return Void();
    }
    Return<void> getDisplayInfo(uint64_t /*display*/,
                                std::function<void(Result, const composer_ext::DisplayInfo&)> callback) override {
        callback(Result::OK, {});
        return Void();
    }
    Return<Result> setColorTransformMatrix(uint64_t /*display*/, const Matrix& /*first*/,
                                           const Matrix& /*last*/) override {
        return Result::OK;
    }
    Return<void> getColorTransformMatrix(uint64_t /*display*/,
                                         std::function<void(Result, const Matrix&, const Matrix&)> callback) override {
        callback(Result::OK, {}, {});
        return Void();
    }
    Return<Result> setGlobalGammaLut(uint64_t /*display*/, const Table& /*table*/) override { return Result::OK; }
    Return<void> getGlobalGammaLut(uint64_t /*display*/, std::function<void(Result, const Table&)> callback) override {
        callback(Result::OK, {});
        return Void();
    }
    Return<Result> setGlobalDeGammaLut(uint64_t /*display*/, const Table& /*table*/) override { return Result::OK; }
    Return<void> getGlobalDeGammaLut(uint64_t /*display*/,
                                     std::function<void(Result, const Table&)> callback) override {
        callback(Result::OK, {});
        return Void();
    }
    Return<Result> setAladParams(
        uint64_t /*display*/, uint32_t /*enable*/,
        const ::android::hardware::hidl_vec<composer_ext::AladParamPair>& /*params*/) override {
        return Result::OK;
    }
    Return<Result> setExclusiveMode(uint64_t /*display*/, uint32_t /*enable*/) override { return Result::OK; }

private:
    const uint32_t displays;
};

// A light sensor that sends no event.
class QuietSensors final : public sensorservice::ISensorManager {
public:
    using Result = sensorservice::Result;

    Return<void> getDefaultSensor(
        ::android::hardware::sensors::V1_0::SensorType /*type*/,
        std::function<void(const ::android::hardware::sensors::V1_0::SensorInfo&, Result)> callback) override {
        callback({}, Result::OK);
        return Void();
    }
    Return<void> createEventQueue(
        const sp<sensorservice::IEventQueueCallback>& /*eventCallback*/,
        std::function<void(const sp<sensorservice::IEventQueue>&, Result)> callback) override {
        callback(new Queue, Result::OK);
        return Void();
    }

private:
    class Queue final : public sensorservice::IEventQueue {
        Return<Result> enableSensor(int32_t /*sensorHandle*/, int32_t /*samplingPeriodUs*/,
                                    int64_t /*maxBatchReportLatencyUs*/) override {
            return Result::OK;
        }
        Return<Result> disableSensor(int32_t /*sensorHandle*/) override { return Result::OK; }
    };
};

}  // namespace bench
