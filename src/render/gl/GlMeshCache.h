// GlMeshCache: the meshes of a context, as display lists that live from frame to frame.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <unordered_map>
#include <vector>

#include "geometry/MeshObject.h"
#include "toolkit/Identity.h"

namespace orvin {

/// What of a mesh is drawn.
enum class MeshForm { kSurface, kEdges };

/// The part of a mesh in one material slot.
struct GlMeshPart {
    unsigned list = 0;  // display list
    int face = 0;       // a face of the slot
};

/// All calls need the context that the cache was used with before, and each context its own cache.
class GlMeshCache {
  public:
    /// The lists of an object's mesh at that quality (0 preview, 1 render), made where the object
    /// or its mesh is new. Holds until the next call for this object. Empty without a mesh.
    const std::vector<GlMeshPart>& parts(MeshObject& object, MeshForm form, int quality);

    /// Deletes the lists of objects that are gone.
    void sweep();

    /// Forgets all without a call: the context is gone, and its lists with it.
    void forget();

    /// Meshes that were compiled since the start.
    std::size_t compiled() const { return compiled_; }

  private:
    static constexpr std::uint32_t kNoRevision = 0;  // meshes count from 1

    struct Entry {
        explicit Entry(const Identity& identity) : object(identity) {}

        IdentityRef object;
        std::uint32_t revision = kNoRevision;
        unsigned firstList = 0;
        std::vector<GlMeshPart> parts;
    };
    using Entries = std::unordered_map<const void*, Entry>;

    void compile(Entry& entry, const Mesh3& mesh, MeshForm form);
    static void deleteLists(const Entry& entry);

    std::array<Entries, 2> entries_;  // by MeshForm
    std::size_t compiled_ = 0;
};

}  // namespace orvin
