// The driver's nodes: the file that a panel's name chooses, and the white point that a node's text gives.
#include <algorithm>

#include "calibration/PanelTable.h"
#include "fuzz/Input.h"
#include "fuzz/Quiet.h"
#include "fuzz/Require.h"
#include "fuzz/WhitePointRule.h"
#include "service/DisplayControlImpl.h"
#include "tests/fakes/ClosedLibraries.h"
#include "tests/fakes/FakeComposer.h"
#include "tests/fakes/PhoneFolder.h"

namespace fuzz {

namespace {

using namespace ::vendor::kov::hardware::display_control::V1_0::implementation;
using platform::NodeStatus;

// A node as a driver may have it.
struct Node {
    enum class Kind { FILE, FOLDER, MISSING };
    Kind kind;
    std::string text;

    void putInto(const fakes::PhoneFolder& phone, const std::string& path) const {
        phone.remove(path);
        if (kind == Kind::FILE) phone.write(path, text);
        if (kind == Kind::FOLDER) phone.makeFolder(path);
    }
    NodeStatus status() const {
        if (kind == Kind::MISSING) return NodeStatus::OPEN_FAILED;
        return kind == Kind::FOLDER || text.empty() ? NodeStatus::READ_FAILED : NodeStatus::OK;
    }
    // What of the text counts: so many bytes, up to a zero byte.
    std::string firstBytes(size_t count) const {
        if (status() != NodeStatus::OK) return "";
        const std::string first = text.substr(0, count);
        return first.substr(0, first.find('\0'));
    }
};

std::string fileOf(const std::string& panel) {
    if (panel == "dornel R7TK 35 02 0a hd+ video dsi panel\n") return "/vendor/etc/disp_calib_data_0a.xml";
    if (panel == "dornel R7TK 43 03 0b hd+ video dsi panel\n") return "/vendor/etc/disp_calib_data_0b.xml";
    return "/vendor/etc/disp_calib_data_default.xml";
}

void identify(const fakes::PhoneFolder& phone, const Node& node) {
    constexpr size_t kLimit = 128;
    node.putInto(phone, fakes::kPanelNameNode);
    const PanelIdentity panel = identifyPanel();
    require(panel.name.status == node.status(), "the panel node's status");
    require(panel.name.text == node.firstBytes(kLimit), "the panel's name");
    require(panel.calibFile == fileOf(node.firstBytes(kLimit)), "the panel's calibration file");
}

// A service of one display on that phone.
class Phone {
public:
    Phone() {
        composer->count = 1;
        composer->registerAsService();
        require(service.init() == 0, "the service starts");
    }

    // The white point that the closed library is asked to calibrate.
    std::pair<float, float> calibrated() {
        require(service.setSmartEnvironmentMode(0, 0, 0) == 0, "smart environment mode is OK");
        fakes::journal::take();
        const auto& given = fakes::closedLibraries().whitePoint;
        return {given.whiteX, given.whiteY};
    }

    const fakes::PhoneFolder folder;

private:
    const sp<fakes::FakeComposer> composer = new fakes::FakeComposer;
    DisplayControlImpl service;
};

void readNodes(Input input) {
    beQuiet();
    static Phone phone;
    constexpr Node::Kind kKinds[] = {Node::Kind::FILE, Node::Kind::FILE, Node::Kind::FILE, Node::Kind::FOLDER,
                                     Node::Kind::MISSING};
    const Node::Kind panelKind = input.oneOf(kKinds);
    const Node::Kind whiteKind = input.oneOf(kKinds);
    const size_t split = input.byte();
    identify(phone.folder, {panelKind, input.take(split)});

    const Node white{whiteKind, input.rest()};
    white.putInto(phone.folder, fakes::kWhitePointNode);
    const auto thousandths = white.status() == NodeStatus::OK ? whitePointOf(white.text) : std::nullopt;
    const std::pair<float, float> expected = thousandths
                                                 ? std::make_pair(static_cast<float>(thousandths->first * 0.001),
                                                                  static_cast<float>(thousandths->second * 0.001))
                                                 : std::make_pair(0.28F, 0.30F);
    require(phone.calibrated() == expected, "the white point");
}

}  // namespace

}  // namespace fuzz

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    fuzz::readNodes(fuzz::Input(data, size));
    return 0;
}
