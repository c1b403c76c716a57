#include "scene/NameRef.h"

#include <utility>

namespace orvin {

NameRef::NameRef(MemberRegistry& registry, std::string_view name)
    : registry_(&registry), entry_(registry.lookupOrInsert(name, nullptr)) {}

NameRef::NameRef(const NameRef& other) : registry_(other.registry_), entry_(other.resolved()) {
    if (entry_ != nullptr) ++entry_->refCount;
}

NameRef::NameRef(NameRef&& other) noexcept
    : registry_(std::exchange(other.registry_, nullptr)),
      entry_(std::exchange(other.entry_, nullptr)) {}

NameRef& NameRef::operator=(const NameRef& other) {
    if (this != &other) *this = NameRef(other);
    return *this;
}

NameRef& NameRef::operator=(NameRef&& other) noexcept {
    if (this == &other) return *this;
    reset();
    registry_ = std::exchange(other.registry_, nullptr);
    entry_ = std::exchange(other.entry_, nullptr);
    return *this;
}

NameRef::~NameRef() {
    reset();
}

void NameRef::reset() {
    if (entry_ != nullptr) registry_->release(entry_);
    entry_ = nullptr;
    registry_ = nullptr;
}

MemberRegistry::Entry* NameRef::resolved() const {
    if (entry_ != nullptr) entry_ = registry_->resolve(entry_);
    return entry_;
}

SceneMember* NameRef::get() const {
    const auto* const entry = resolved();
    return entry != nullptr ? entry->value : nullptr;
}

const std::string& NameRef::name() const {
    static const std::string kNone;
    const auto* const entry = resolved();
    return entry != nullptr ? entry->name : kNone;
}

}  // namespace orvin
