// What makes a module of the effect: its one exported function. C++ reserves the name "main" for
// programs, so the function has another name here and gets its real one behind the compiler's
// back: from the assembler where there is one name per symbol, from the linker's export list (see
// 3DOrvinex.def) on Windows.
#include "host/Entry.h"

extern "C" {

#ifdef _WIN32
orvin::PF_Err orvinEffectMain(orvin::PF_Cmd cmd, orvin::PF_InData* in_data,
                              orvin::PF_OutData* out_data, orvin::PF_ParamDef* params[],
                              orvin::PF_LayerDef* output, void* extra);
#else
__attribute__((visibility("default"))) orvin::PF_Err orvinEffectMain(
    orvin::PF_Cmd cmd, orvin::PF_InData* in_data, orvin::PF_OutData* out_data,
    orvin::PF_ParamDef* params[], orvin::PF_LayerDef* output, void* extra) __asm__("main");
#endif

orvin::PF_Err orvinEffectMain(orvin::PF_Cmd cmd, orvin::PF_InData* in_data,
                              orvin::PF_OutData* out_data, orvin::PF_ParamDef* params[],
                              orvin::PF_LayerDef* output, void* extra) {
    return orvin::effectMain(cmd, in_data, out_data, params, output, extra);
}
}
