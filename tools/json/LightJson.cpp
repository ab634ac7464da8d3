// SPDX-License-Identifier: Apache-2.0
#include "tools/json/LightJson.h"

namespace simulator {

namespace {

Json levelToJson(const std::optional<int32_t>& level) {
    return level ? Json(*level) : Json();
}

Json messagesToJson(const Decision& decision) {
    Json messages = Json::array();
    for (const CurveMessage& message : decision.messages)
        messages.push_back({{"ms", message.time.count()}, {"level", levelToJson(message.level)}});
    return messages;
}

}  // namespace

Json toJson(const Decision& decision) {
    return {{"event", "decision"},
            {"ms", decision.time.count()},
            {"lux", decision.lux},
            {"ring", decision.ring},
            {"mean", decision.mean},
            {"reason", decision.reason()},
            {"on", decision.composerLevel.has_value()},
            {"targetLevel", levelToJson(decision.targetLevel)},
            {"composerLevel", levelToJson(decision.composerLevel)},
            {"messages", messagesToJson(decision)}};
}

Json toJson(const ReplaySummary& summary, const std::string& timeline) {
    return {{"event", "summary"},
            {"samples", summary.samples},
            {"activations", summary.activations},
            {"deactivations", summary.deactivations},
            {"messages", summary.messages},
            {"highestLevel", summary.highestLevel},
            {"timeline", timeline}};
}

}  // namespace simulator
