// NameRef: a counted reference to a name of a SceneX. It may be taken before the member exists
// (it then reads null) and survives renaming. It must not outlive its scene.
#pragma once

#include <string>
#include <string_view>

#include "scene/Registry.h"

namespace orvin {

class SceneMember;
using MemberRegistry = Registry<SceneMember*>;

class NameRef {
  public:
    NameRef() = default;
    NameRef(MemberRegistry& registry, std::string_view name);
    NameRef(const NameRef& other);
    NameRef(NameRef&& other) noexcept;
    NameRef& operator=(const NameRef& other);
    NameRef& operator=(NameRef&& other) noexcept;
    ~NameRef();

    /// The member that bears the name now, or null.
    SceneMember* get() const;

    /// The member as a T, null if there is none or it is of another class.
    template <typename T>
    T* as() const {
        return dynamic_cast<T*>(get());
    }

    /// The present name; empty for a default-made reference.
    const std::string& name() const;

    /// The registry of the scene it looks into; null for a default-made reference.
    MemberRegistry* registry() const { return registry_; }

    bool bound() const { return entry_ != nullptr; }

  private:
    friend class SceneMember;
    void reset();
    MemberRegistry::Entry* resolved() const;

    MemberRegistry* registry_ = nullptr;
    mutable MemberRegistry::Entry* entry_ = nullptr;
};

}  // namespace orvin
