#include "interchange/lightwave/LwoObjectWriter.h"

#include <algorithm>

#include "geometry/FaceSplit.h"
#include "interchange/SectionMesh.h"
#include "interchange/lightwave/LwoFormat.h"
#include "render/MaterialX.h"
#include "toolkit/Progress.h"

namespace orvin::lwo {

Result ObjectWriter::part(const ExportPart& part) {
    for (int number = 0; number < kExportSections; ++number) {
        if (part.elements[static_cast<std::size_t>(number)] == 0) continue;
        if (pollProgress(number, kExportSections) != 0) return kFailure;
        Mesh3 mesh = sectionMesh(part, number);
        for (int i = 0; i < mesh.faceCount(); ++i)
            if (mesh.face(i).kind == ElementKind::kPolygon &&
                mesh.face(i).vertices.size() > kMaxCorners) {
                mesh = quadrangulate(splitConcaveFaces(mesh), static_cast<int>(kMaxCorners));
                break;
            }
        if (section(mesh, part, number) != kSuccess) return kFailure;
    }
    return kSuccess;
}

std::size_t ObjectWriter::surfaceOf(const ExportPart& part, int section) {
    const MaterialX* const material = part.material(section);
    const auto [found, isNew] = surfaceNumbers_.emplace(material, surfaceNames_.size());
    if (!isNew) return found->second;
    surfaceNames_.push_back(distinctName(part.materialName(section)));

    Look shown;
    shown.color = part.color(section);
    if (material != nullptr && material->hasFlag(MaterialX::kTransparency))
        shown.transparency = material->transparency();
    if (part.object != nullptr)
        shown.smoothing = radians(std::max(part.object->hardShadingAngle(), 0.0));
    const std::size_t chunk = surfaces_.beginChunk(kSurface);
    surfaces_.text(surfaceNames_.back());
    look(surfaces_, shown);
    surfaces_.endChunk(chunk);
    return found->second;
}

std::string ObjectWriter::distinctName(std::string name) {
    name.resize(std::min(name.size(), name.find('\0')));  // what the file can hold of it
    std::string distinct = name;
    for (int number = 1; !takenNames_.insert(distinct).second; ++number)
        distinct = name + '.' + std::to_string(number);
    return distinct;
}

ByteWriter ObjectWriter::surfaceNames(std::uint32_t chunk) const {
    ByteWriter names;
    const std::size_t start = names.beginChunk(chunk);
    for (const std::string& name : surfaceNames_)
        names.text(name);
    names.endChunk(start);
    return names;
}

void ObjectWriter::point(ByteWriter& out, Vec3 p) {
    out.f32(p.x);
    out.f32(p.y);
    out.f32(0.0 - p.z);
}

void ObjectWriter::points(ByteWriter& out, const Mesh3& mesh) {
    for (const Vec3 p : mesh.vertices())
        point(out, p);
}

Result ObjectWriter::writeForm(std::FILE* file, std::uint32_t type,
                               std::initializer_list<const ByteWriter*> chunks) {
    std::uint64_t size = 4;
    for (const ByteWriter* const part : chunks) {
        if (part->tooLarge()) return tooLarge();
        size += part->size();
    }
    if (size > 0xFFFFFFFFU) return tooLarge();
    ByteWriter head;
    head.u32(kForm);
    head.u32(static_cast<std::uint32_t>(size));
    head.u32(type);
    const bool written = head.writeTo(file) &&
                         std::all_of(chunks.begin(), chunks.end(), [file](const ByteWriter* part) {
                             return part->writeTo(file);
                         });
    return written ? kSuccess : kFailure;
}

Result ObjectWriter::tooLarge() {
    std::fprintf(stderr, "%s: too much geometry for a LightWave object.\n",
                 std::string(kWriterName).c_str());
    return kFailure;
}

}  // namespace orvin::lwo
