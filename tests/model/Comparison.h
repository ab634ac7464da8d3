// SPDX-License-Identifier: Apache-2.0
// The service on a simulated phone, and the model beside it.
#pragma once

#include <chrono>
#include <functional>
#include <memory>
#include <string>

#include "simulator/Phone.h"
#include "tests/model/Call.h"
#include "tests/model/Service.h"
#include "tests/model/Settings.h"

namespace model {

using Lines = std::vector<std::string>;

// Does the same to both. Each step returns what differs between the service's answer, events and state and the model's;
// an empty text if nothing does.
class Comparison {
public:
    explicit Comparison(const Settings& settings = Settings());
    ~Comparison();
    Comparison(const Comparison&) = delete;
    Comparison& operator=(const Comparison&) = delete;

    // Puts a new service on the phone, which gets these settings and forgets its state.
    void begin(const Settings& settings);

    void set(const Settings& next);
    std::string call(const Call& call);
    std::string light(float lux);
    std::string pass(std::chrono::milliseconds duration);
    // Switches ALAD off, and lets time pass: nothing may happen any more. The service ends.
    std::string end();

    // Receives the phone's events too.
    std::function<void(const simulator::Event&)> observer;

    const Settings& settings() const { return current; }
    // Of the service, in the latest step.
    const std::string& answer() const { return latestAnswer; }
    Lines events() const;

private:
    void become(const Settings& next, int composerLife);
    std::string compare(const std::string& expectedAnswer);

    simulator::Phone phone{simulator::Phone::Start::EMPTY};
    Settings current;
    std::unique_ptr<::vendor::kov::hardware::display_control::V1_0::implementation::DisplayControlImpl> service;
    std::unique_ptr<Service> modelled;
    Events happened;
    Events latestEvents;
    std::string latestAnswer;
};

}  // namespace model
