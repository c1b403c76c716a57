#include "orvinhost/ImageSource.h"

namespace orvin::stand_in {

const apps::Picture& ImageSource::picture(int frame) {
    if (!loaded_ || (pattern_.numbered() && frame != frame_)) {
        picture_ = apps::readPng(pattern_.path(frame));
        loaded_ = true;
        frame_ = frame;
    }
    return picture_;
}

}  // namespace orvin::stand_in
