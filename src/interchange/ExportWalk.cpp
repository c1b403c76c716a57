#include "interchange/ExportWalk.h"

#include <algorithm>
#include <cstdio>
#include <numeric>

#include "render/MaterialX.h"
#include "scene/FrameClock.h"
#include "scene/SceneX.h"
#include "toolkit/Progress.h"

namespace orvin {

namespace {

constexpr int kPolygonsPerTick = 5000;

/// Puts the current frame back when it goes.
class FrameKeeper {
  public:
    FrameKeeper() = default;
    ~FrameKeeper() { setCurrentFrame(frame_); }
    FrameKeeper(const FrameKeeper&) = delete;
    FrameKeeper& operator=(const FrameKeeper&) = delete;

    int frame() const { return frame_; }

  private:
    int frame_ = currentFrame();
};

}  // namespace

std::string onOneLine(std::string text) {
    std::replace_if(
        text.begin(), text.end(), [](char c) { return c == '\n' || c == '\r'; }, ' ');
    return text;
}

int ExportPart::elementCount() const {
    return std::accumulate(elements.begin(), elements.end(), 0);
}

int ExportPart::sectionCount() const {
    return static_cast<int>(
        std::count_if(elements.begin(), elements.end(), [](int n) { return n > 0; }));
}

std::string ExportPart::groupName(int section, std::string_view sectionWord) const {
    std::string text = name;
    if (frame >= 0) text += "-Frm" + std::to_string(frame + 1);
    if (sectionCount() > 1) text.append(sectionWord).append(std::to_string(section + 1));
    return text;
}

const MaterialX* ExportPart::material(int section) const {
    if (object == nullptr) return nullptr;
    const auto* const own = dynamic_cast<const MaterialX*>(object->material(section));
    if (own != nullptr) return own;
    return object->scene().memberAs<MaterialX>(MemberKind::kMaterial, kDefaultMaterial);
}

Rgba ExportPart::color(int section) const {
    const MaterialX* const shown = material(section);
    return shown != nullptr ? shown->diffuse() : MaterialX::Look{}.diffuse;
}

std::string ExportPart::materialName(int section) const {
    const MaterialX* const shown = material(section);
    return onOneLine(shown != nullptr ? shown->name() : std::string(kDefaultMaterial));
}

Result countSections(const Mesh3& mesh, ExportPart& part) {
    for (int i = 0; i < mesh.faceCount(); ++i) {
        if (i % kPolygonsPerTick == 0 && pollProgress(i, mesh.faceCount()) != 0) return kFailure;
        const int slot = mesh.face(i).material;
        if (slot >= 0 && slot < kExportSections)
            ++part.elements[static_cast<std::size_t>(slot)];
        else
            ++part.withoutSection;
    }
    return kSuccess;
}

Result walkExport(std::span<MeshObject* const> objects, const ExportOptions& options,
                  std::string_view writer, const ExportVisitor& visit) {
    const std::string writerName(writer);
    bool anything = false;
    const auto visitOnce = [&](MeshObject& object, int frame) {
        ExportPart part;
        part.name = onOneLine(object.name());
        part.object = &object;
        part.frame = frame;
        std::uint32_t revision = 0;
        part.mesh = object.mesh(options.quality, revision);
        part.worldFromObject = object.world();
        if (part.mesh != nullptr && countSections(*part.mesh, part) != kSuccess) return kFailure;
        if (part.withoutSection > 0)
            std::fprintf(stderr, "%s: %d polygons of '%s' are in no material section: left out.\n",
                         writerName.c_str(), part.withoutSection, part.name.c_str());
        if (part.elementCount() == 0) {
            std::fprintf(stderr, "%s: no geometry to export!\n", writerName.c_str());
            return kSuccess;
        }
        anything = true;
        return visit(part);
    };

    const FrameKeeper keeper;
    for (MeshObject* const object : objects) {
        const bool animated = object->isAnimated();
        const bool each = animated && options.allFrames;
        const int first = each ? 0 : keeper.frame();
        const int end = each ? totalFrames() : first + 1;
        for (int frame = first; frame < end; ++frame) {
            if (each) setCurrentFrame(frame);
            const Result result = visitOnce(*object, animated ? frame : -1);
            if (result != kSuccess) return result;
        }
        if (each) setCurrentFrame(keeper.frame());
    }
    if (objects.empty()) std::fprintf(stderr, "%s: no geometry to export!\n", writerName.c_str());
    return anything ? kSuccess : kFailure;
}

}  // namespace orvin
