// Probe: a Persistent with one key of each sort, for tests of the streams.
#pragma once

#include <memory>

#include "scene/SceneStream.h"

namespace orvin {

class Probe : public Persistent {
  public:
    Result writeBody(SceneStream& stream) override {
        stream.putInt("key", value);
        return bodyResult;
    }

    const CommandRegistry& commandRegistry() const override {
        static const auto kCommands = [] {
            auto commands = std::make_unique<CommandRegistry>();
            commands->lookupOrInsert("key", [](SceneStream& stream, Persistent& self) {
                auto& probe = static_cast<Probe&>(self);
                ++probe.values;
                return stream.readInt(probe.value);
            });
            commands->lookupOrInsert("fail", [](SceneStream&, Persistent&) { return kFailure; });
            commands->lookupOrInsert("inner", [](SceneStream& stream, Persistent&) {
                Probe nested;
                return loadBlock(stream, nested);
            });
            commands->lookupOrInsert("end", endCommand);
            return commands;
        }();
        return *kCommands;
    }

    std::string_view className() const override { return "Probe"; }

    int value = 0;
    int values = 0;
    Result bodyResult = kSuccess;
};

}  // namespace orvin
