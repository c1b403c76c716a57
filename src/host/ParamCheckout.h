// A parameter checked out of the host for the length of a scope.
#pragma once

#include <cstring>

#include "host/abi/InData.h"

namespace orvin {

class ParamCheckout {
  public:
    /// The parameter at the time of the command. See error() before its value is used.
    ParamCheckout(PF_InData& in, PF_ParamIndex index) : in_(in) {
        std::memset(&param_, 0, sizeof(param_));
        error_ = in.inter.checkout_param(in.effect_ref, index, in.current_time, in.time_step,
                                         in.time_scale, &param_);
    }
    ~ParamCheckout() {
        if (error_ == PF_Err_NONE) in_.inter.checkin_param(in_.effect_ref, &param_);
    }
    ParamCheckout(const ParamCheckout&) = delete;
    ParamCheckout& operator=(const ParamCheckout&) = delete;

    PF_Err error() const { return error_; }
    const PF_ParamDef& param() const { return param_; }

    /// The layer's picture; null for an empty one.
    const PF_LayerDef* layer() const {
        const PF_LayerDef& world = param_.u.ld;
        const bool there =
            error_ == PF_Err_NONE && world.data != nullptr && world.width > 0 && world.height > 0;
        return there ? &world : nullptr;
    }

  private:
    PF_InData& in_;
    PF_ParamDef param_;
    PF_Err error_ = PF_Err_NONE;
};

}  // namespace orvin
