// GlTarget: something to draw into with OpenGL, and the context that draws. Windows has pbuffers,
// windows and bitmaps (win32/), other systems EGL's pbuffers, which need no display (posix/).
//
// A target belongs to one thread at a time: it may be used on another one after release().
#pragma once

#include <memory>
#include <string>

namespace orvin {

enum class GlTargetKind { kPbuffer, kWindow, kBitmap };

class GlTarget {
  public:
    GlTarget() = default;
    virtual ~GlTarget() = default;
    GlTarget(const GlTarget&) = delete;
    GlTarget& operator=(const GlTarget&) = delete;

    virtual GlTargetKind kind() const = 0;

    /// Makes the context current, with room for width x height pixels (at least 1 each). Lists and
    /// textures of the context live through a change of the size. False, and nothing current, where
    /// there can't be that many, or the context is lost: another target is needed then.
    virtual bool makeCurrent(int width, int height) = 0;

    /// Nothing is current on this thread afterwards.
    virtual void release() = 0;
};

/// What a caller lets a frame be drawn into. They are tried in this order. Where EGL draws, which
/// knows pbuffers only, any of them allows it to.
struct GlTargetChoice {
    bool pbuffer = true;
    bool window = true;  // the artist sees it while it works
    bool bitmap = true;
};

/// Opens the first target of the choice that the system has and that holds the picture: RGBA, 8
/// bits a channel, with a depth buffer. Null, with the reason in `whyNot` (a phrase for messages),
/// where there is none. Nothing is current afterwards.
std::unique_ptr<GlTarget> openGlTarget(int width, int height, const GlTargetChoice& choice,
                                       std::string& whyNot);

}  // namespace orvin
