// Who the effect is, to the host: the words that PF_Cmd_GLOBAL_SETUP reports and that the effect's
// resource (see EffectResource.h) must repeat, or the host complains when the effect is applied.
#pragma once

#include <string_view>

#include "host/abi/Flags.h"

namespace orvin {

inline constexpr std::string_view kEffectName = "3D Orvinex";
inline constexpr std::string_view kEffectCategory = "Tarnwick";
inline constexpr std::string_view kEffectMatchName = "TW_3DO_Devel";
inline constexpr std::string_view kEffectEntry = "main";

inline constexpr std::string_view kAboutText =
    "3D Orvinex\rv3.0 PRO\rCopyright Tarnwick. All rights reserved.";

inline constexpr A_u_long kEffectVersion = PF_VERSION(2, 0, 0, PF_Stage_DEVELOP, 0);
static_assert(kEffectVersion == 0x100000);

inline constexpr PF_OutFlags kEffectOutFlags =
    PF_OutFlag_KEEP_RESOURCE_OPEN | PF_OutFlag_NON_PARAM_VARY |
    PF_OutFlag_SEQUENCE_DATA_NEEDS_FLATTENING | PF_OutFlag_I_DO_DIALOG |
    PF_OutFlag_PIX_INDEPENDENT | PF_OutFlag_CUSTOM_UI | PF_OutFlag_SEND_UPDATE_PARAMS_UI;
static_assert(kEffectOutFlags == 0x4008435);

/// On hosts with comp links; 0 on others.
inline constexpr PF_OutFlags2 kEffectOutFlags2 = PF_OutFlag2_SUPPORTS_QUERY_DYNAMIC_FLAGS |
                                                 PF_OutFlag2_I_USE_3D_CAMERA |
                                                 PF_OutFlag2_I_USE_3D_LIGHTS;
static_assert(kEffectOutFlags2 == 7);

/// Host interface that the effect is built for: the first of the 64-bit hosts.
inline constexpr A_u_short kEffectSpecMajor = 13;
inline constexpr A_u_short kEffectSpecMinor = 0;

}  // namespace orvin
