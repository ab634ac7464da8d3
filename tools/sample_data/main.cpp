// SPDX-License-Identifier: Apache-2.0
// Writes the repository's data folder anew: make_sample_data OUT_DIR, where OUT_DIR is that folder or another.
#include <cstdio>
#include <exception>

#include "tools/sample_data/SampleData.h"

int main(int argc, char** argv) {
    if (argc != 2) {
        fprintf(stderr, "usage: make_sample_data OUT_DIR\n");
        return 2;
    }
    try {
        simulator::writeSampleData(argv[1]);
    } catch (const std::exception& error) {
        fprintf(stderr, "make_sample_data: %s\n", error.what());
        return 1;
    }
    return 0;
}
