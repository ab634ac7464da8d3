// SPDX-License-Identifier: Apache-2.0
#include "tools/dcsim/Signals.h"

#include <atomic>
#include <csignal>
#include <thread>

#include "simulator/PhoneFiles.h"

namespace dcsim {

namespace {

std::atomic<bool> keeping{false};
std::atomic<bool> interrupted{false};

void watch(const sigset_t& signals) {
    int number = 0;
    while (sigwait(&signals, &number) == 0) {
        if (number == SIGINT && keeping) {
            interrupted = true;
            continue;
        }
        simulator::PhoneFiles::removeTemporaryFolders();
        pthread_sigmask(SIG_UNBLOCK, &signals, nullptr);
        raise(number);
    }
}

}  // namespace

void watchSignals() {
    signal(SIGPIPE, SIG_IGN);  // a reader that goes away is an output that cannot be written
    sigset_t signals;
    sigemptyset(&signals);
    for (const int number : {SIGINT, SIGTERM, SIGHUP}) {
        struct sigaction action {};
        sigaction(number, nullptr, &action);
        if (action.sa_handler != SIG_IGN) sigaddset(&signals, number);  // nohup ignores SIGHUP
    }
    pthread_sigmask(SIG_BLOCK, &signals, nullptr);
    std::thread(watch, signals).detach();
}

void keepInterrupts() {
    keeping = true;
}

bool isInterrupted() {
    return interrupted;
}

void clearInterrupt() {
    interrupted = false;
}

}  // namespace dcsim
