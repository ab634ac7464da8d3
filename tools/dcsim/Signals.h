// SPDX-License-Identifier: Apache-2.0
// What the program does with signals.
#pragma once

namespace dcsim {

// From now on a signal that ends the program, such as Ctrl-C, leaves no copy of a phone behind. Called before any other
// thread starts.
void watchSignals();

// From now on Ctrl-C is noted and does not end the program.
void keepInterrupts();
// Whether Ctrl-C was pressed since the last clearInterrupt().
bool isInterrupted();
void clearInterrupt();

}  // namespace dcsim
