#include "scene/TransformMember.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <memory>
#include <new>
#include <utility>

#include "scene/SceneStream.h"
#include "scene/SceneX.h"

namespace orvin {

namespace {

TransformMember& placedMember(const NameRef& reference) {
    auto* const member = reference.as<TransformMember>();
    if (member == nullptr) throw std::bad_alloc();
    return *member;
}

// Whether two poses are so near that components needn't be derived anew.
bool samePose(const Matrix4& a, const Matrix4& b) {
    double squares = 0.0;
    for (int i = 0; i < 3; ++i) {
        const Vec3 difference = a.row(i) - b.row(i);
        squares += dot(difference, difference);
    }
    return squares <= 0.0001 && length(a.origin() - b.origin()) <= 0.001;
}

template <void (Transform::*Set)(Vec3)>
Result vectorCommand(SceneStream& stream, Persistent& self) {
    Vec3 value;
    if (stream.readVector3(value) != kSuccess) return kFailure;
    (static_cast<TransformMember&>(self).transform().*Set)(value);
    return kSuccess;
}

Result parentCommand(SceneStream& stream, Persistent& self) {
    std::string name;
    if (stream.readText(name) != kSuccess) return kFailure;
    auto& member = static_cast<TransformMember&>(self);
    member.attachTo(NameRef(member.scene().registry(), name));
    return kSuccess;
}

Result enabledCommand(SceneStream& stream, Persistent& self) {
    bool on = false;
    if (stream.readBool(on) != kSuccess) return kFailure;
    static_cast<TransformMember&>(self).setEnabled(on);
    return kSuccess;
}

}  // namespace

TransformMember::TransformMember(SceneX& scene, MemberKind kind, std::string_view name)
    : SceneMember(scene, kind, name) {
    if (kind != MemberKind::kRoot) moveTo(scene.root());
}

TransformMember::TransformMember(SceneX& scene, const TransformMember& source,
                                 std::string_view name)
    : SceneMember(scene, source, name), transform_(source.transform_), flags_(source.flags_) {
    moveTo(scene.root());
}

TransformMember::~TransformMember() {
    std::reverse(children_.begin(), children_.end());
    while (!children_.empty()) {
        TransformMember* const orphan = children_.back();
        if (parent_ != nullptr) {
            orphan->movePoseKept(*parent_);
        } else {  // the root itself goes, and the scene with it
            orphan->parent_ = nullptr;
            children_.pop_back();
        }
    }
    leaveParent();
}

Result TransformMember::writeBody(SceneStream& stream) {
    if (const Result result = SceneMember::writeBody(stream); result != kSuccess) return result;
    // A parent that isn't written couldn't be found by the reader: the next one stands in.
    Transform pose = transform_;
    const TransformMember* parent = parent_;
    for (; parent != nullptr && !parent->saveable; parent = parent->parent_)
        pose.setMatrix(pose.matrix() * parent->transform_.matrix());
    if (stream.putInt("enabled", isEnabled() ? 1 : 0) != kSuccess) return kFailure;
    if (stream.putVector("translate", pose.translate()) != kSuccess) return kFailure;
    if (stream.putVector("rotate", pose.rotate()) != kSuccess) return kFailure;
    if (stream.putVector("scale", pose.scale()) != kSuccess) return kFailure;
    if (stream.putVector("origin", pose.origin()) != kSuccess) return kFailure;
    return stream.putName("parent", parent != nullptr ? parent->name() : scene().root().name());
}

void TransformMember::registerTransformCommands(CommandRegistry& registry) {
    registerMemberCommands(registry);
    registry.lookupOrInsert("translate", vectorCommand<&Transform::setTranslate>);
    registry.lookupOrInsert("rotate", vectorCommand<&Transform::setRotate>);
    registry.lookupOrInsert("scale", vectorCommand<&Transform::setScale>);
    registry.lookupOrInsert("origin", vectorCommand<&Transform::setOrigin>);
    registry.lookupOrInsert("parent", parentCommand);
    registry.lookupOrInsert("enabled", enabledCommand);
}

void TransformMember::copyPoseFrom(const TransformMember& other) {
    flags_ = other.flags_;
    transform_ = other.transform_;
}

Matrix4 TransformMember::world() const {
    // Up the chain in a loop: a file may nest as deep as it likes.
    Matrix4 worldFromLocal = transform_.matrix();
    for (const TransformMember* p = parent_; p != nullptr; p = p->parent_)
        worldFromLocal = worldFromLocal * p->transform_.matrix();
    return worldFromLocal;
}

Box3 TransformMember::worldBounds() {
    return localBounds().under(world());
}

bool TransformMember::rayHit(const Ray& worldRay) {
    const Box3 box = localBounds();
    const auto localFromWorld = world().inverse();
    if (box.empty() || !localFromWorld) return false;
    const Vec3 from = localFromWorld->point(worldRay.origin);
    const Vec3 along = localFromWorld->direction(worldRay.direction);
    double enter = 0.0;
    double leave = std::numeric_limits<double>::infinity();
    for (int axis = 0; axis < 3; ++axis) {
        if (along[axis] == 0.0) {
            if (!(from[axis] >= box.min[axis] && from[axis] <= box.max[axis])) return false;
            continue;
        }
        const double a = (box.min[axis] - from[axis]) / along[axis];
        const double b = (box.max[axis] - from[axis]) / along[axis];
        enter = std::max(enter, std::min(a, b));
        leave = std::min(leave, std::max(a, b));
    }
    return enter <= leave;
}

// ---- the tree

bool TransformMember::mayHang(const TransformMember& newParent) const {
    if (memberKind() == MemberKind::kRoot || &newParent == this) return false;
    if (children_.empty()) return true;
    for (const TransformMember* p = &newParent; p != nullptr; p = p->parent_)
        if (p == this) return false;
    return true;
}

void TransformMember::leaveParent() {
    if (parent_ == nullptr) return;
    // Newest first: that is who leaves, mostly.
    auto& siblings = parent_->children_;
    const auto self = std::find(siblings.rbegin(), siblings.rend(), this);
    if (self != siblings.rend()) siblings.erase(std::next(self).base());
    parent_ = nullptr;
}

// For a scene that goes as a whole: nobody is moved to anybody.
void TransformMember::leaveTree() {
    parent_ = nullptr;
    children_.clear();
}

void TransformMember::moveTo(TransformMember& newParent) {
    leaveParent();
    newParent.children_.push_back(this);
    parent_ = &newParent;
}

void TransformMember::movePoseKept(TransformMember& newParent) {
    const Matrix4 worldFromLocal = world();
    moveTo(newParent);
    const auto parentFromWorld = newParent.world().inverse();
    if (!parentFromWorld) return;  // flattened to nothing: no local pose gives the old one
    const Matrix4 parentFromLocal = worldFromLocal * *parentFromWorld;
    if (!samePose(parentFromLocal, transform_.matrix())) transform_.setMatrix(parentFromLocal);
}

void TransformMember::setParent(const NameRef& parent) {
    TransformMember& newParent = placedMember(parent);
    if (mayHang(newParent)) movePoseKept(newParent);
}

void TransformMember::attachTo(const NameRef& parent) {
    TransformMember& newParent = placedMember(parent);
    if (mayHang(newParent)) moveTo(newParent);
}

Result TransformMember::recenterOrigin(bool ignoreDepth) {
    if (children_.empty()) return kFailure;
    Box3 box;
    for (TransformMember* each : children_)
        box.merge(each->worldBounds());
    if (box.empty()) return kFailure;
    if (ignoreDepth) box.min.z = box.max.z = 0.0;
    const auto localFromWorld = world().inverse();
    if (!localFromWorld) return kFailure;
    const Matrix4 pose = transform_.matrix();
    transform_.setOrigin(localFromWorld->point(box.center()));
    transform_.setMatrix(pose);
    return kSuccess;
}

// ---- Root and Group

namespace {

Result rootNameCommand(SceneStream& stream, Persistent& self) {
    std::string name;
    if (stream.readText(name) != kSuccess) return kFailure;
    static_cast<Root&>(self).scene().setName(name);
    return kSuccess;
}

}  // namespace

Root::Root(SceneX& scene) : TransformMember(scene, MemberKind::kRoot, "root") {}

const CommandRegistry& Root::commandRegistry() const {
    static const auto kCommands = [] {
        auto commands = std::make_unique<CommandRegistry>();
        registerTransformCommands(*commands);
        commands->lookupOrInsert("name", rootNameCommand);
        return commands;
    }();
    return *kCommands;
}

Group::Group(SceneX& scene, std::string_view name)
    : TransformMember(scene, MemberKind::kGroup, name) {
    transform().setOrder("trs");
}

Group::Group(SceneX& scene, const Group& source, std::string_view name)
    : TransformMember(scene, source, name) {}

const CommandRegistry& Group::commandRegistry() const {
    static const auto kCommands = [] {
        auto commands = std::make_unique<CommandRegistry>();
        registerTransformCommands(*commands);
        return commands;
    }();
    return *kCommands;
}

}  // namespace orvin
