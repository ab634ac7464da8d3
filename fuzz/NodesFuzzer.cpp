// SPDX-License-Identifier: Apache-2.0
// The driver's nodes with any text: the file that the panel's name chooses, and the white point, are the model's.
#include "fuzz/Input.h"
#include "fuzz/Require.h"
#include "tests/model/Comparison.h"

namespace fuzz {

namespace {

void readNodes(Input input) {
    using model::Kind;
    static model::Comparison both;
    constexpr Kind kKinds[] = {Kind::FILE, Kind::FILE, Kind::FILE, Kind::FOLDER, Kind::MISSING};
    model::Settings phone;
    phone.panel.kind = input.oneOf(kKinds);
    phone.whitePoint.kind = input.oneOf(kKinds);
    phone.panel.text = input.take(input.byte());
    phone.whitePoint.text = input.rest();
    both.begin(phone);
    for (const char* const operation : {"init", "setSmartEnvironmentMode"}) {
        const std::string difference = both.call({operation});
        require(difference.empty(), difference);
    }
}

}  // namespace

}  // namespace fuzz

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    fuzz::readNodes(fuzz::Input(data, size));
    return 0;
}
