// Identity: lets a cache know the object that it made something from. An address doesn't: another
// object may stand there by now.
#pragma once

#include <memory>

namespace orvin {

/// A member of what is cached for. Each copy is somebody of its own.
class Identity {
  public:
    Identity() = default;
    Identity(const Identity&) {}
    Identity& operator=(const Identity&) { return *this; }

    friend class IdentityRef;

  private:
    std::shared_ptr<const char> token_ = std::make_shared<const char>();
};

/// What a cache keeps. Never equal to that of another object, even of one that is gone.
class IdentityRef {
  public:
    explicit IdentityRef(const Identity& identity)
        : token_(identity.token_), key_(identity.token_.get()) {}

    /// False once the object is gone.
    bool isAlive() const { return !token_.expired(); }

    /// For ordered and hashed containers; nobody else's while this is kept.
    const void* key() const { return key_; }

    friend bool operator==(const IdentityRef& a, const IdentityRef& b) { return a.key_ == b.key_; }

  private:
    std::weak_ptr<const char> token_;
    const void* key_;
};

}  // namespace orvin
