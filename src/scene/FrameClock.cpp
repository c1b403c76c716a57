#include "scene/FrameClock.h"

namespace orvin {

namespace {

struct FrameClock {
    int total = 30;
    int current = 0;
};

FrameClock& clock() {
    static FrameClock instance;
    return instance;
}

}  // namespace

int totalFrames() {
    return clock().total;
}

void setTotalFrames(int count) {
    if (count >= 1) clock().total = count;
}

int currentFrame() {
    return clock().current;
}

bool setCurrentFrame(int frame) {
    if (frame < 0 || frame >= clock().total) return false;
    clock().current = frame;
    return true;
}

}  // namespace orvin
