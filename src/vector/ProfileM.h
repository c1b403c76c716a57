// ProfileM: a cycle of profiles. It holds a list of pictures (profiles, as a rule one for each
// layer of a drawing) and speaks, at each frame of the frame clock, for the one that the cycle
// shows then.
//
// Degenerate input: no pictures show nothing. A picture whose profile is gone shows nothing in its
// frames. Cycles may be pictures of cycles, a few levels deep; ones that go round in a ring show
// nothing. A single picture that plays back and forth holds.
#pragma once

#include <string_view>
#include <vector>

#include "geometry/Profile.h"

namespace orvin {

/// How the pictures follow one another from the start frame on. Other numbers show nothing.
enum class CycleOption : int {
    kPlayOnce = 1,
    kPlayThenHold = 2,  // the last picture stays
    kLoop = 3,
    kPingPong = 4,   // back and forth, the ends not shown twice
    kRandomize = 5,  // every picture once in each round, by the random table
    kReversePlayOnce = 6,
    kReversePlayThenHold = 7,  // the first picture stays
    kReverseLoop = 8,
};

/// The word of an option in files, "PING_PONG"; empty for a number that is none.
std::string_view cycleWord(CycleOption option);
/// The option of a word. False, and nothing happens, where it is none.
bool cycleOptionOf(std::string_view word, CycleOption& option);

class ProfileM final : public Profile {
  public:
    ProfileM(SceneX& scene, std::string_view name);
    /// The pictures are those of the same names in `scene`; whoever copies from another scene
    /// brings them along (SceneX::importMember).
    ProfileM(SceneX& scene, const ProfileM& source, std::string_view name);

    Result writeBody(SceneStream& stream) override;
    const CommandRegistry& commandRegistry() const override;
    std::string_view className() const override { return "ProfileM"; }
    std::vector<NameRef*> references() override;

    // ---- pictures, in order

    void clearFrames();
    void addFrame(const Profile& picture);
    int frameCount() { return static_cast<int>(frames().size()); }
    /// Null where its profile is gone, and out of range.
    Profile* frameAt(int index);

    // ---- the cycle

    int startFrame() const { return startFrame_; }
    int changeCounter() const { return changeCounter_; }
    CycleOption cycleOption() const { return cycleOption_; }
    int randomSeed() const { return randomSeed_; }
    bool showBeforeStart() const { return showBeforeStart_ != 0; }

    /// The first frame of the cycle. -1, and nothing happens, outside 0 .. totalFrames() - 1.
    Result setStartFrame(int frame);
    /// Frames that each picture stays; below 1 counts as 1.
    void setChangeCounter(int frames);
    void setCycleOption(CycleOption option) { cycleOption_ = option; }
    void setRandomSeed(int seed);
    /// Whether a picture shows in the frames before the first.
    void setShowBeforeStart(int on) { showBeforeStart_ = on; }

    /// The picture's number at a frame (0 and up); -1 for none.
    int pictureAt(int frame);

    /// The picture of the current frame, null for none. A picture that comes anew is touched.
    Profile* selectedProfile();

    // ---- the shown profile's; 0, null and a box of zeros without one

    std::uint32_t changeCount() override;
    void touch() override;
    InputProfile2* inputProfile() override;
    const Mesh2* getShape(double tolerance, double hardAngle, std::uint32_t& stamp) override;
    Box2 bounds() override;

    bool isAnimated() const override { return true; }
    Profile* shown() override;

  private:
    struct Commands;

    int hold() const { return changeCounter_ < 1 ? 1 : changeCounter_; }
    std::vector<NameRef>& frames();
    int beforeStart(int count);
    int randomPicture(int frame, int count);
    void buildRandomTable(int count);

    std::vector<NameRef> frames_;
    std::size_t settled_ = 0;  // frames behind this one were read, their profiles may be missing
    int showBeforeStart_ = 1;
    int startFrame_ = 0;
    int changeCounter_ = 1;
    CycleOption cycleOption_ = CycleOption::kLoop;
    int randomSeed_ = 1;
    int lastIndex_ = -1;            // shown the last time
    std::vector<int> randomTable_;  // the picture of each hold: frame / hold() from frame 0 on
    int randomCount_ = 0;           // pictures that the table was made for
};

}  // namespace orvin
