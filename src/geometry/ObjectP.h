// ObjectP: the object of an imported model. It holds its mesh as data.
#pragma once

#include <array>
#include <memory>
#include <string>
#include <string_view>

#include "geometry/GeometryCmd.h"
#include "geometry/MeshObject.h"

namespace orvin {

/// The formats that models come from, by their number.
enum class ModelFileType : int { kFact = 0, kC4d = 1, kObj = 2, kDxf = 3, kLwo = 4, k3ds = 5 };

/// "FACT", "C4D", "OBJ", "DXF", "LWO", "3DS"; "Unknown" for another value.
std::string_view modelFileTypeWord(ModelFileType type);
/// kObj for a word that isn't listed.
ModelFileType modelFileTypeOf(std::string_view word);

class ObjectP final : public MeshObject {
  public:
    static constexpr int kMaterialCount = 6;
    static constexpr std::size_t kFileNameLimit = 1023;     // bytes; longer ones are cut
    static constexpr std::size_t kOriginalNameLimit = 259;  // likewise

    ObjectP(SceneX& scene, std::string_view name);
    ObjectP(SceneX& scene, const ObjectP& source, std::string_view name);

    const CommandRegistry& commandRegistry() const override;
    std::string_view className() const override { return "ObjectP"; }
    Result writeBody(SceneStream& stream) override;
    std::vector<NameRef*> references() override;

    /// The model file that the mesh came from.
    const std::string& fileName() const { return fileName_; }
    void setFileName(std::string_view path) { fileName_ = path.substr(0, kFileNameLimit); }
    ModelFileType fileType() const { return fileType_; }
    void setFileType(ModelFileType type) { fileType_ = type; }
    /// What the object was called in that file.
    const std::string& originalName() const { return originalName_; }
    void setOriginalName(std::string_view name) {
        originalName_ = name.substr(0, kOriginalNameLimit);
    }

    /// Puts another mesh in. Faces without normals get them, with the hard shading angle.
    void setMesh(Mesh3 mesh);

    /// Never null; the quality makes no difference.
    const Mesh3* mesh(int quality, std::uint32_t& revision) override;

    /// With `rebuild` and an angle of 0 or more all normals are computed anew.
    void setHardShadingAngle(double degrees, bool rebuild) override;

    int materialCount() const override { return kMaterialCount; }
    SceneMember* material(int slot) const override;
    std::string_view materialName(int slot) const override;
    void setMaterial(int slot, std::string_view name) override;

    /// True: nothing is known of a model's surface.
    bool isOpenOrClear(bool /*checkMaterials*/) const override { return true; }

    /// Reads or writes the mesh through the model hooks (geometry/ModelHooks.h). -1 on failure;
    /// a failed reading leaves the mesh as it was.
    Result load(const std::string& path);
    Result save(const std::string& path);

  protected:
    void refresh() override;
    const Mesh3* currentMesh() const override { return &mesh_; }
    double degenerateLimit() const override { return 1e-5; }

  private:
    struct Commands;
    void dataChanged();

    std::string fileName_;
    ModelFileType fileType_ = ModelFileType::kObj;
    std::string originalName_;
    Mesh3 mesh_;
    GeometryCmd geometry_{mesh_};
    std::array<NameRef, kMaterialCount> materials_;
};

}  // namespace orvin
