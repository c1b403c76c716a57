#include "host/HostProgress.h"

#include "toolkit/Progress.h"

namespace orvin {

HostProgress::HostProgress(const PF_InData& in) {
    setProgress([&in](int current, int total) -> int {
        const PF_Err progress = in.inter.progress(in.effect_ref, current, total);
        const PF_Err abort = in.inter.abort(in.effect_ref);
        return progress != PF_Err_NONE ? progress : abort;
    });
}

HostProgress::~HostProgress() {
    setProgress({});
}

PF_Err HostProgress::stopped() const {
    return progressStop();
}

}  // namespace orvin
