// Persistent: what can be a block of the word stream. A class lists its stream commands in one
// CommandRegistry; reading finds them there, writing is writeBody.
#pragma once

#include <string_view>

#include "scene/Registry.h"
#include "toolkit/Result.h"

namespace orvin {

class Persistent;
class SceneStream;

/// Serves one command: reads its values from `stream` into `self`. Non-zero stops the load.
using CommandHandler = Result (*)(SceneStream& stream, Persistent& self);

/// The commands of one class, by name.
using CommandRegistry = Registry<CommandHandler>;

class Persistent {
  public:
    virtual ~Persistent() = default;

    /// Writes the lines between "begin" and "end". 0, or the first failure.
    virtual Result writeBody(SceneStream& stream) = 0;

    /// The class's commands: one registry per class, built once.
    virtual const CommandRegistry& commandRegistry() const = 0;

    /// The word after "begin" and "end".
    virtual std::string_view className() const = 0;
};

/// The handler of "end": reads a class name and pops the object off the stream's command stack.
/// -1 where the name is another class's. Every class with a block registers it under "end".
Result endCommand(SceneStream& stream, Persistent& self);

}  // namespace orvin
