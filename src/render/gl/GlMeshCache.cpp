#include "render/gl/GlMeshCache.h"

#include "render/gl/GlApi.h"
#include "render/gl/MeshArrays.h"

namespace orvin {

namespace {

static_assert(sizeof(MeshArrays::Vertex) == 8 * sizeof(float));

void compileList(unsigned list, GLenum primitive, std::span<const std::uint32_t> indices) {
    glNewList(list, GL_COMPILE);
    glDrawElements(primitive, static_cast<GLsizei>(indices.size()), GL_UNSIGNED_INT,
                   indices.data());
    glEndList();
}

}  // namespace

void GlMeshCache::deleteLists(const Entry& entry) {
    if (!entry.parts.empty())
        glDeleteLists(entry.firstList, static_cast<GLsizei>(entry.parts.size()));
}

void GlMeshCache::compile(Entry& entry, const Mesh3& mesh, MeshForm form) {
    const bool surface = form == MeshForm::kSurface;
    const MeshArrays arrays = surface ? surfaceArrays(mesh) : edgeArrays(mesh);
    const auto& runs = surface ? arrays.triangleRuns : arrays.lineRuns;
    const std::span<const std::uint32_t> indices = surface ? arrays.triangles : arrays.lines;
    ++compiled_;
    if (runs.empty()) return;
    entry.firstList = glGenLists(static_cast<GLsizei>(runs.size()));
    if (entry.firstList == 0) return;
    glInterleavedArrays(GL_T2F_N3F_V3F, 0, arrays.vertices.data());
    unsigned list = entry.firstList;
    for (const MeshArrays::Run& run : runs) {
        compileList(list, surface ? GL_TRIANGLES : GL_LINES, indices.subspan(run.first, run.count));
        entry.parts.push_back({list++, run.face});
    }
    // The arrays go; nothing may point to them.
    glDisableClientState(GL_VERTEX_ARRAY);
    glDisableClientState(GL_NORMAL_ARRAY);
    glDisableClientState(GL_TEXTURE_COORD_ARRAY);
}

const std::vector<GlMeshPart>& GlMeshCache::parts(MeshObject& object, MeshForm form, int quality) {
    std::uint32_t revision = 0;
    const Mesh3* mesh = object.mesh(quality, revision);
    Entries& entries = entries_[static_cast<std::size_t>(form)];
    const IdentityRef identity(object.identity());
    Entry& entry = entries.try_emplace(identity.key(), object.identity()).first->second;
    if (mesh == nullptr) revision = kNoRevision;
    if (entry.revision == revision) return entry.parts;
    deleteLists(entry);
    entry.parts.clear();
    entry.revision = revision;
    if (mesh != nullptr) compile(entry, *mesh, form);
    return entry.parts;
}

void GlMeshCache::sweep() {
    for (Entries& entries : entries_)
        std::erase_if(entries, [](const Entries::value_type& item) {
            if (item.second.object.isAlive()) return false;
            deleteLists(item.second);
            return true;
        });
}

void GlMeshCache::forget() {
    for (Entries& entries : entries_)
        entries.clear();
}

}  // namespace orvin
