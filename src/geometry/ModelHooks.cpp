#include "geometry/ModelHooks.h"

namespace orvin {

namespace {

ModelHooks& installed() {
    static ModelHooks hooks;
    return hooks;
}

}  // namespace

void setModelHooks(const ModelHooks& hooks) {
    installed() = hooks;
}

const ModelHooks& modelHooks() {
    return installed();
}

}  // namespace orvin
