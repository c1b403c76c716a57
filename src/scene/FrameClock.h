// The frame that is being posed: what outlines that change by frame go by. Process-wide, set by
// the frame bridge (or by an export) before meshes are asked for.
#pragma once

namespace orvin {

/// Number of frames, at least 1; 30 until somebody sets it.
int totalFrames();
void setTotalFrames(int count);  // below 1 is ignored

/// The current frame, counted from 0.
int currentFrame();
bool setCurrentFrame(int frame);  // false, and nothing happens, outside 0 .. totalFrames() - 1

}  // namespace orvin
