// ExportWalk: what the writers of all formats have in common: the objects, the frames of those that
// are animated, and the sections of each mesh by material slot.
#pragma once

#include <array>
#include <functional>
#include <span>
#include <string>
#include <string_view>

#include "geometry/MeshObject.h"
#include "render/Rgba.h"
#include "toolkit/Result.h"
#include "toolkit/math/Matrix4.h"

namespace orvin {

class MaterialX;

inline constexpr int kExportSections = 6;  // one for each material slot of a mesh

struct ExportOptions {
    std::string_view lineEnd = "\n";  // of formats that are text
    int quality = 1;                  // of the meshes: 0 preview, 1 render
    bool lwob = false;                // LightWave objects: the form of LightWave 5 and before
    bool allFrames = true;            // of animated objects; else the current frame alone
};

/// One object at one frame.
struct ExportPart {
    std::string name;                    // of the object, on one line
    const MeshObject* object = nullptr;  // null for a mesh by itself
    const Mesh3* mesh = nullptr;
    Matrix4 worldFromObject;
    int frame = -1;                               // from 0; -1 for an object that isn't animated
    std::array<int, kExportSections> elements{};  // in each section
    int withoutSection = 0;                       // elements of another slot: in no section

    int elementCount() const;  // of all sections
    int sectionCount() const;  // sections that are in use

    /// The name of a section's group: the object's, "-Frm%d" of an animated one, and
    /// "-Section %d" (or what stands for "-Section ") where several sections are in use. Numbers
    /// from 1.
    std::string groupName(int section, std::string_view sectionWord = "-Section ") const;

    /// What the renderer would show for the section: its slot's material, else the scene's default
    /// one. Null where neither is there.
    const MaterialX* material(int section) const;
    /// Diffuse colour of that material; that of a new material where there is none.
    Rgba color(int section) const;
    /// Name of that material; the default material's where there is none.
    std::string materialName(int section) const;
};

using ExportVisitor = std::function<Result(const ExportPart&)>;

/// `text` with blanks for line ends: in a file of lines they would turn into lines of their own.
std::string onOneLine(std::string text);

/// Calls `visit` for each object that has elements; for an animated one at every frame of the frame
/// clock (scene/FrameClock.h), unless the options say otherwise, for others at the current frame.
/// One without is passed over with "<writer>: no geometry to export!" on standard error. -1 where
/// there is nothing at all, where a visit failed, or when the progress callback stopped it (polled
/// every 5000 polygons). The current frame is as before afterwards, however it ends.
Result walkExport(std::span<MeshObject* const> objects, const ExportOptions& options,
                  std::string_view writer, const ExportVisitor& visit);

/// Counts the elements of `mesh` by section into `part`; -1 when progress stopped it.
Result countSections(const Mesh3& mesh, ExportPart& part);

}  // namespace orvin
