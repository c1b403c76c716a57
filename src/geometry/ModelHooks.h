// The way from an object to the readers and writers of model files, which stand above this folder
// and install themselves at start-up.
#pragma once

#include <string>

#include "toolkit/Result.h"

namespace orvin {

class Mesh3;

struct ModelHooks {
    /// All groups of a model file as one mesh, added to `mesh`.
    Result (*read)(const std::string& path, Mesh3& mesh) = nullptr;
    /// One mesh, in its own space, as a model file with one group `name`.
    Result (*write)(const std::string& path, const Mesh3& mesh, const std::string& name) = nullptr;
};

void setModelHooks(const ModelHooks& hooks);
const ModelHooks& modelHooks();

}  // namespace orvin
