// SPDX-License-Identifier: Apache-2.0
// The closed libraries of the simulated phone.
#pragma once

#include <closed/displayppalgorithm.h>
#include <closed/voeyecare.h>
#include <platform/Mutex.h>

#include <functional>
#include <map>
#include <memory>
#include <optional>

#include "simulator/Journal.h"
#include "simulator/closed/UnlimitedColorTemperature.h"

namespace simulator {

// Settings of the closed libraries' functions, all of which are defined beside it. Each computes what its model in
// simulator/closed/ says, unless it is replaced or fails, and is added to the journal. Settings are made while no
// thread of the phone calls; any thread may call the functions.
class ClosedLibraries {
public:
    explicit ClosedLibraries(std::shared_ptr<Journal> events);
    ClosedLibraries(const ClosedLibraries&) = delete;
    ClosedLibraries& operator=(const ClosedLibraries&) = delete;

    // What the functions do: the models until something else is assigned.
    std::function<int(int warm, int cold)> setParams;
    std::function<int(int level, float* gains)> getUnlimitedCTParams;  // 3 gains
    std::function<int(EyeCareParams& params)> setEyeCareParamsOled;
    std::function<int(int level, float* coefficients)> getEyeCareCoeffOled;  // 9 elements by rows
    std::function<int(int lux)> getAGTMLevel;
    std::function<int(int level, int32_t* curve)> getAGTMCurveParams;  // 256 entries
    std::function<int(::android::WhitePointCalibrateParam* param)> whitePointCalibrate;

    // From now on the function returns result and does nothing else; with nothing it works again.
    void fail(ClosedFunction function, std::optional<int> result);

    // Returns what body returns, or the result that the function fails with. The journal gets the call, described by
    // describe's result, with the floats of its buffer before and after.
    template <typename Describe, typename Body>
    int serve(ClosedFunction function, Describe describe, const float* buffer, size_t floats, Body body);
    void note(ClosedFunction function) { journal->add(ClosedCall{function}); }

    // Those of the phone that lives; without a phone some that nobody observes.
    static ClosedLibraries& ofProcess();
    static void setOfProcess(ClosedLibraries* libraries);

private:
    const std::shared_ptr<Journal> journal;
    std::map<ClosedFunction, int> failures;

    platform::Mutex mutex;
    std::optional<EndPoints> endPoints PLATFORM_GUARDED_BY(mutex);    // the model's, from setParams on
    std::optional<EyeCareParams> eyeCare PLATFORM_GUARDED_BY(mutex);  // the model's, from setEyeCareParamsOled on
};

}  // namespace simulator
