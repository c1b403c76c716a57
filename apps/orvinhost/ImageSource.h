// Footage: a still, or one picture a frame.
#pragma once

#include "common/Files.h"
#include "common/Png.h"
#include "orvinhost/World.h"

#include <string>

namespace orvin::stand_in {

class ImageSource {
  public:
    /// `pattern` is a file, or a numbered pattern ("clip-%04d.png").
    explicit ImageSource(std::string_view pattern) : pattern_(pattern) {}
    explicit ImageSource(apps::Picture picture)
        : pattern_(""), picture_(std::move(picture)), loaded_(true) {}

    /// The picture of a frame; the last one is kept. Throws Failure.
    const apps::Picture& picture(int frame);
    /// The same as a world of the host's.
    World world(int frame, int downsample) { return World(picture(frame), downsample); }

  private:
    apps::FramePattern pattern_;
    apps::Picture picture_;
    bool loaded_ = false;
    int frame_ = 0;
};

}  // namespace orvin::stand_in
