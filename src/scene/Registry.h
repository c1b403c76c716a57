// Registry: a chained hash table from name to entry. One instance per class holds its stream
// commands, one per SceneX holds the names of its members.
//
// Entries are counted: each NameRef that looks at one holds a count. A renamed entry stays alive
// while it is looked at and forwards to the entry of the new name.
#pragma once

#include <cstdint>
#include <cstdio>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace orvin {

inline constexpr std::size_t kRegistryBuckets = 4093;

/// Bucket of a name. The table order (and so iteration order) follows from it.
std::size_t registryBucket(std::string_view name, std::size_t bucketCount);

template <typename Value>
class Registry {
  public:
    struct Entry {
        std::string name;
        Value value{};
        int refCount = 0;
        std::unique_ptr<Entry> next;  // next in the chain
        Entry* forward = nullptr;     // the entry that replaced this one
    };

    explicit Registry(std::size_t bucketCount = kRegistryBuckets) : buckets_(bucketCount) {}
    Registry(const Registry&) = delete;
    Registry& operator=(const Registry&) = delete;

    /// Finds or makes the entry and counts a reference. A hit stores `value` only if it isn't null.
    Entry* lookupOrInsert(std::string_view name, Value value) {
        auto& head = buckets_[registryBucket(name, buckets_.size())];
        for (Entry* e = head.get(); e != nullptr; e = e->next.get()) {
            if (e->name != name) continue;
            if (value) e->value = value;
            ++e->refCount;
            return e;
        }
        auto entry = std::make_unique<Entry>();
        entry->name = name;
        entry->value = value;
        entry->refCount = 1;
        entry->next = std::move(head);
        head = std::move(entry);
        return head.get();
    }

    /// The entry of `name`, or null. Counts nothing.
    Entry* find(std::string_view name) const {
        const auto& head = buckets_[registryBucket(name, buckets_.size())];
        for (Entry* e = head.get(); e != nullptr; e = e->next.get())
            if (e->name == name) return e;
        return nullptr;
    }

    /// Takes a count off; at zero the entry goes.
    void release(Entry* entry) {
        if (--entry->refCount > 0) return;
        if (entry->forward != nullptr) {  // renamed away: it lives outside the chains
            Entry* successor = entry->forward;
            destroyDetached(entry);
            release(successor);
            return;
        }
        if (!unlink(entry))
            std::printf(
                "ASSERTION in Registry.h:  trying to unregister a lost (not in hash) name.\n");
    }

    /// Gives `entry` a new name: the entry of that name takes the value over, and `entry` forwards
    /// to it for those who still hold it. Returns the new entry, counted once for the caller, who
    /// gives up one count of `entry` for it (both are one NameRef's).
    Entry* rename(Entry* entry, std::string_view newName) {
        Entry* successor = lookupOrInsert(newName, entry->value);
        if (successor == entry) {
            --successor->refCount;
            return entry;
        }
        if (auto owned = unlink(entry)) detached_.push_back(std::move(owned));
        entry->value = Value{};
        entry->forward = successor;
        ++successor->refCount;  // the forward link's own count
        return successor;
    }

    /// The entry at the end of the forward links, with one count moved along from `entry` to it.
    Entry* resolve(Entry* entry) {
        while (entry->forward != nullptr) {
            Entry* successor = entry->forward;
            ++successor->refCount;
            release(entry);
            entry = successor;
        }
        return entry;
    }

    /// Calls `visit(const Entry&)` for every entry, bucket by bucket.
    template <typename Visit>
    void forEach(Visit&& visit) const {
        for (const auto& head : buckets_)
            for (const Entry* e = head.get(); e != nullptr; e = e->next.get())
                visit(*e);
    }

  private:
    std::unique_ptr<Entry> unlink(Entry* entry) {
        auto* link = &buckets_[registryBucket(entry->name, buckets_.size())];
        while (*link && link->get() != entry)
            link = &(*link)->next;
        if (!*link) return nullptr;
        auto owned = std::move(*link);
        *link = std::move(owned->next);
        return owned;
    }

    void destroyDetached(Entry* entry) {
        std::erase_if(detached_, [entry](const auto& e) { return e.get() == entry; });
    }

    std::vector<std::unique_ptr<Entry>> buckets_;
    std::vector<std::unique_ptr<Entry>> detached_;  // renamed away, still looked at
};

}  // namespace orvin
