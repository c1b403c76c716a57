// Registry: a table from name to counted entry. One instance per class holds its stream commands,
// one per SceneX holds the names of its members.
//
// Entries are counted: each NameRef that looks at one holds a count. A renamed entry stays alive
// while it is looked at and forwards to the entry of the new name.
//
// Found by a library hash, walked in the order of a chained table of bucketCount heads with
// registryBucket(): bucket by bucket, and within one the newest entry first. So a file with names
// chosen to share a bucket costs no more than another.
#pragma once

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <utility>
#include <vector>

namespace orvin {

inline constexpr std::size_t kRegistryBuckets = 4093;

/// Bucket of a name; the order of iteration follows from it.
std::size_t registryBucket(std::string_view name, std::size_t bucketCount);

template <typename Value>
class Registry {
  public:
    struct Entry {
        std::string name;
        Value value{};
        int refCount = 0;
        Entry* forward = nullptr;  // the entry that replaced this one
        std::uint64_t serial = 0;  // rises with each entry made
    };

    explicit Registry(std::size_t bucketCount = kRegistryBuckets) : bucketCount_(bucketCount) {}
    Registry(const Registry&) = delete;
    Registry& operator=(const Registry&) = delete;

    /// Entries that are still looked at go too: no NameRef may outlive its registry.
    ~Registry() {
        for (Entry* entry : detached_)
            delete entry;
    }

    /// Finds or makes the entry and counts a reference. A hit stores `value` only if it isn't null.
    Entry* lookupOrInsert(std::string_view name, Value value) {
        if (Entry* found = find(name)) {
            if (value) found->value = value;
            ++found->refCount;
            return found;
        }
        auto entry = std::make_unique<Entry>();
        entry->name = name;
        entry->value = value;
        entry->refCount = 1;
        entry->serial = ++lastSerial_;
        Entry* const made = entry.get();
        entries_.emplace(made->name, std::move(entry));
        return made;
    }

    /// The entry of `name`, or null. Counts nothing.
    Entry* find(std::string_view name) const {
        const auto found = entries_.find(name);
        return found != entries_.end() ? found->second.get() : nullptr;
    }

    /// Takes a count off; at zero the entry goes.
    void release(Entry* entry) {
        while (entry != nullptr && --entry->refCount <= 0) {
            Entry* const successor = entry->forward;
            if (successor != nullptr) {  // renamed away: it stands outside the table
                detached_.erase(entry);
                delete entry;
            } else if (!unlink(entry)) {
                std::printf(
                    "ASSERTION in Registry.h:  trying to unregister a lost (not in hash) name.\n");
            }
            entry = successor;  // the forward link held a count
        }
    }

    /// Gives `entry` a new name: the entry of that name takes the value over, and `entry` forwards
    /// to it for those who still hold it. Returns the new entry, counted once for the caller, whose
    /// own count of `entry` is given up.
    Entry* rename(Entry* entry, std::string_view newName) {
        if (entry->name == newName) return entry;
        Entry* const successor = lookupOrInsert(newName, entry->value);
        if (auto owned = unlink(entry)) detached_.insert(owned.release());
        entry->value = Value{};
        entry->forward = successor;
        ++successor->refCount;  // the forward link's own count
        release(entry);
        return successor;
    }

    /// The entry at the end of the forward links, with one count moved along from `entry` to it.
    Entry* resolve(Entry* entry) {
        while (entry->forward != nullptr) {
            Entry* const successor = entry->forward;
            ++successor->refCount;
            release(entry);
            entry = successor;
        }
        return entry;
    }

    std::size_t size() const { return entries_.size(); }

    /// Calls `visit(const Entry&)` for every entry, bucket by bucket. The registry mustn't change
    /// meanwhile.
    template <typename Visit>
    void forEach(Visit&& visit) const {
        std::vector<std::pair<std::size_t, const Entry*>> order;
        order.reserve(entries_.size());
        for (const auto& [name, entry] : entries_)
            order.emplace_back(registryBucket(name, bucketCount_), entry.get());
        std::sort(order.begin(), order.end(), [](const auto& a, const auto& b) {
            return a.first != b.first ? a.first < b.first : a.second->serial > b.second->serial;
        });
        for (const auto& [bucket, entry] : order)
            visit(*entry);
    }

  private:
    std::unique_ptr<Entry> unlink(Entry* entry) {
        const auto found = entries_.find(entry->name);
        if (found == entries_.end() || found->second.get() != entry) return nullptr;
        auto owned = std::move(found->second);
        entries_.erase(found);
        return owned;
    }

    std::size_t bucketCount_;
    std::uint64_t lastSerial_ = 0;
    std::unordered_map<std::string_view, std::unique_ptr<Entry>> entries_;  // keys in the entries
    std::unordered_set<Entry*> detached_;  // renamed away, still looked at; owned
};

}  // namespace orvin
