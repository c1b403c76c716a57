#include "vector/ProfileM.h"

#include <algorithm>
#include <array>
#include <utility>

#include "scene/FrameClock.h"
#include "scene/SceneStream.h"
#include "scene/SceneX.h"

namespace orvin {

namespace {

constexpr std::string_view kNoProfile = "defaultProfileI";
constexpr int kNestingLimit = 16;

constexpr std::array<std::string_view, 8> kCycleWords = {
    "PLAY_ONCE",         "PLAY_THEN_HOLD",         "LOOP",        "PING_PONG", "RANDOMIZE",
    "REVERSE_PLAY_ONCE", "REVERSE_PLAY_THEN_HOLD", "REVERSE_LOOP"};

/// The generator behind the random table, the same on every platform: results of 15 bits.
class SmallRandom {
  public:
    explicit SmallRandom(int seed) : state_(static_cast<std::uint32_t>(seed)) {}
    int next() {
        state_ = state_ * 214013U + 2531011U;
        return static_cast<int>(state_ >> 16U & 0x7fffU);
    }

  private:
    std::uint32_t state_;
};

constexpr int kRandomResults = 1 << 15;

/// One round: every picture once, in random order.
void appendRound(SmallRandom& random, int count, std::vector<int>& table) {
    std::vector<bool> taken(static_cast<std::size_t>(count));
    const auto take = [&](int picture) {
        taken[static_cast<std::size_t>(picture)] = true;
        table.push_back(picture);
    };
    for (int drawn = 0; drawn < std::min(count, kRandomResults);) {
        const auto picture = static_cast<int>(std::int64_t{count} * random.next() / kRandomResults);
        if (taken[static_cast<std::size_t>(picture)]) continue;
        take(picture);
        ++drawn;
    }
    // More pictures than the generator has results: it never names some of them.
    for (int picture = 0; count > kRandomResults && picture < count; ++picture)
        if (!taken[static_cast<std::size_t>(picture)]) take(picture);
}

}  // namespace

std::string_view cycleWord(CycleOption option) {
    const int number = static_cast<int>(option);
    if (number < 1 || number > static_cast<int>(kCycleWords.size())) return {};
    return kCycleWords[static_cast<std::size_t>(number - 1)];
}

bool cycleOptionOf(std::string_view word, CycleOption& option) {
    const auto found = std::find(kCycleWords.begin(), kCycleWords.end(), word);
    if (found == kCycleWords.end()) return false;
    option = static_cast<CycleOption>(found - kCycleWords.begin() + 1);
    return true;
}

ProfileM::ProfileM(SceneX& scene, std::string_view name) : Profile(scene, name) {}

ProfileM::ProfileM(SceneX& scene, const ProfileM& source, std::string_view name)
    : Profile(scene, source, name),
      showBeforeStart_(source.showBeforeStart_),
      startFrame_(source.startFrame_),
      changeCounter_(source.changeCounter_),
      cycleOption_(source.cycleOption_),
      randomSeed_(source.randomSeed_) {
    for (std::size_t i = 0; i < source.frames_.size(); ++i) {
        const NameRef& frame = source.frames_[i];
        const bool missing = frame.as<Profile>() == nullptr;
        if (missing && i >= source.settled_) continue;
        frames_.emplace_back(scene.registry(), missing ? kNoProfile : frame.name());
    }
    settled_ = frames_.size();
}

// ---- pictures

// A cycle may be read before its pictures are. A name that no profile bears once the reading is
// over was never a picture.
std::vector<NameRef>& ProfileM::frames() {
    if (settled_ < frames_.size()) {
        const auto read = frames_.begin() + static_cast<std::ptrdiff_t>(settled_);
        frames_.erase(
            std::remove_if(read, frames_.end(),
                           [](const NameRef& frame) { return frame.as<Profile>() == nullptr; }),
            frames_.end());
        settled_ = frames_.size();
    }
    return frames_;
}

std::vector<NameRef*> ProfileM::references() {
    std::vector<NameRef*> used;
    for (NameRef& frame : frames())
        used.push_back(&frame);
    return used;
}

void ProfileM::clearFrames() {
    frames_.clear();
    settled_ = 0;
    randomTable_.clear();
}

void ProfileM::addFrame(const Profile& picture) {
    frames().push_back(picture.ref());
    settled_ = frames_.size();
}

Profile* ProfileM::frameAt(int index) {
    if (index < 0 || index >= frameCount()) return nullptr;
    return frames_[static_cast<std::size_t>(index)].as<Profile>();
}

// ---- the cycle

Result ProfileM::setStartFrame(int frame) {
    if (frame < 0 || frame >= totalFrames()) return kFailure;
    startFrame_ = frame;
    return kSuccess;
}

void ProfileM::setChangeCounter(int frames) {
    changeCounter_ = frames;
    if (cycleOption_ != CycleOption::kRandomize) return;
    randomTable_.clear();
    if (settled_ == frames_.size()) buildRandomTable(frameCount());
}

void ProfileM::setRandomSeed(int seed) {
    randomSeed_ = seed;
    randomTable_.clear();
}

void ProfileM::buildRandomTable(int count) {
    const auto holds = static_cast<std::size_t>((totalFrames() - 1) / hold() + 1);
    if (count < 1 || (randomCount_ == count && randomTable_.size() >= holds)) return;
    randomTable_.clear();
    randomCount_ = count;
    SmallRandom random(randomSeed_);
    while (randomTable_.size() < holds)
        appendRound(random, count, randomTable_);
}

int ProfileM::randomPicture(int frame, int count) {
    buildRandomTable(count);
    const auto turn = static_cast<std::size_t>(frame / hold());
    return turn < randomTable_.size() ? randomTable_[turn] : -1;
}

int ProfileM::beforeStart(int count) {
    switch (cycleOption_) {
        case CycleOption::kRandomize:
            return randomPicture(std::min(startFrame_, totalFrames() - 1), count);
        case CycleOption::kReversePlayOnce:
        case CycleOption::kReversePlayThenHold:
        case CycleOption::kReverseLoop:
            return count - 1;
        default:
            return cycleWord(cycleOption_).empty() ? -1 : 0;
    }
}

int ProfileM::pictureAt(int frame) {
    const int count = frameCount();
    if (count == 0) return -1;
    if (frame < startFrame_) return showBeforeStart_ != 0 ? beforeStart(count) : -1;

    const bool pingPong = cycleOption_ == CycleOption::kPingPong;
    const int period = std::max(pingPong ? count - 1 : count, 1);
    const int step = (frame - startFrame_) / hold();
    const int cycle = step / period;
    const int position = step % period;
    const bool first = cycle == 0;
    switch (cycleOption_) {
        case CycleOption::kPlayOnce:
            return first ? position : -1;
        case CycleOption::kPlayThenHold:
            return first ? position : count - 1;
        case CycleOption::kLoop:
            return position;
        case CycleOption::kPingPong:
            return count == 1 ? 0 : cycle % 2 == 0 ? position : period - position;
        // By the frame itself: where the cycle starts makes no difference to its order.
        case CycleOption::kRandomize:
            return randomPicture(frame, count);
        case CycleOption::kReversePlayOnce:
            return first ? count - position - 1 : -1;
        case CycleOption::kReversePlayThenHold:
            return first ? count - position - 1 : 0;
        case CycleOption::kReverseLoop:
            return count - position - 1;
    }
    return -1;
}

Profile* ProfileM::selectedProfile() {
    const int index = pictureAt(currentFrame());
    const bool isNew = std::exchange(lastIndex_, index) != index;
    Profile* const picture = frameAt(index);
    // A cycle touches its own pictures.
    if (isNew && picture != nullptr && !picture->isAnimated()) picture->touch();
    return picture;
}

Profile* ProfileM::shown() {
    Profile* profile = this;
    for (int level = 0; level < kNestingLimit; ++level) {
        auto* const cycle = dynamic_cast<ProfileM*>(profile);
        if (cycle == nullptr) return profile;
        profile = cycle->selectedProfile();
    }
    return nullptr;
}

// ---- the shown profile's

std::uint32_t ProfileM::changeCount() {
    Profile* const profile = shown();
    return profile != nullptr ? profile->changeCount() : 0;
}

void ProfileM::touch() {
    if (Profile* const profile = shown()) profile->touch();
}

InputProfile2* ProfileM::inputProfile() {
    Profile* const profile = shown();
    return profile != nullptr ? profile->inputProfile() : nullptr;
}

const Mesh2* ProfileM::getShape(double tolerance, double hardAngle, std::uint32_t& stamp) {
    stamp = 0;
    Profile* const profile = shown();
    return profile != nullptr ? profile->getShape(tolerance, hardAngle, stamp) : nullptr;
}

Box2 ProfileM::bounds() {
    Profile* const profile = shown();
    return profile != nullptr ? profile->bounds() : Box2{{}, {}};
}

// ---- stream form

Result ProfileM::writeBody(SceneStream& stream) {
    const auto putOption = [&] {
        stream.line().clear();  // a number that is no option leaves the line empty
        if (const std::string_view word = cycleWord(cycleOption_); !word.empty())
            stream.line().text("cycleOption ").quoted(word);
        return stream.putLine();
    };
    const bool failed = Profile::writeBody(stream) != kSuccess ||
                        stream.putInt("startFrame", startFrame_) != kSuccess ||
                        stream.putInt("changeCounter", changeCounter_) != kSuccess ||
                        putOption() != kSuccess ||
                        stream.putInt("randomSeed", randomSeed_) != kSuccess ||
                        stream.putInt("showBeforeStart", showBeforeStart_) != kSuccess;
    if (failed) return kFailure;
    for (const NameRef& frame : frames())
        if (stream.putName("profileName", frame.name()) != kSuccess) return kFailure;
    return kSuccess;
}

struct ProfileM::Commands : CommandRegistry {
    static ProfileM& profile(Persistent& self) { return static_cast<ProfileM&>(self); }

    template <typename Set>
    static Result whole(SceneStream& stream, Set&& set) {
        int value = 0;
        if (stream.readInt(value) != kSuccess) return kFailure;
        set(value);
        return kSuccess;
    }
    /// A project is read before the clock knows how long it is: a start behind the end stays.
    static Result startFrame(SceneStream& stream, Persistent& self) {
        return whole(stream, [&](int value) {
            if (value >= 0) profile(self).startFrame_ = value;
        });
    }
    static Result changeCounter(SceneStream& stream, Persistent& self) {
        return whole(stream, [&](int value) { profile(self).setChangeCounter(value); });
    }
    static Result randomSeed(SceneStream& stream, Persistent& self) {
        return whole(stream, [&](int value) { profile(self).setRandomSeed(value); });
    }
    static Result showBeforeStart(SceneStream& stream, Persistent& self) {
        return whole(stream, [&](int value) { profile(self).setShowBeforeStart(value); });
    }
    static Result cycleOption(SceneStream& stream, Persistent& self) {
        std::string word;
        if (stream.readText(word) != kSuccess) return kFailure;
        cycleOptionOf(word, profile(self).cycleOption_);
        return kSuccess;
    }
    static Result profileName(SceneStream& stream, Persistent& self) {
        std::string name;
        if (stream.readText(name) != kSuccess) return kFailure;
        profile(self).frames_.emplace_back(profile(self).scene().registry(), name);
        return kSuccess;
    }

    Commands() : CommandRegistry(16) {
        registerMemberCommands(*this);
        lookupOrInsert("profileName", profileName);
        lookupOrInsert("startFrame", startFrame);
        lookupOrInsert("showBeforeStart", showBeforeStart);
        lookupOrInsert("changeCounter", changeCounter);
        lookupOrInsert("cycleOption", cycleOption);
        lookupOrInsert("randomSeed", randomSeed);
    }
};

const CommandRegistry& ProfileM::commandRegistry() const {
    static const Commands commands;
    return commands;
}

}  // namespace orvin
