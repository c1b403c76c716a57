#include "render/gl/GlTarget.h"

namespace orvin {

const char* glTargetKindName(GlTargetKind kind) {
    switch (kind) {
        case GlTargetKind::kPbuffer:
            return "pbuffer";
        case GlTargetKind::kWindow:
            return "window";
        case GlTargetKind::kBitmap:
            break;
    }
    return "bitmap";
}

}  // namespace orvin
