// ScenePasses: a scene drawn with the fixed pipeline into the current context.
//
// The base pass draws all surfaces in their lit colours. What the pipeline can't do at once comes
// on top of it in passes that touch the visible pixels only: the soft cones of spot lights, then
// the textures, which multiply what is lit, then reflections. Objects are solid: transparency isn't
// shown, nor are shadows.
#pragma once

#include <array>
#include <unordered_map>
#include <vector>

#include "render/MaterialX.h"
#include "render/gl/FixedPipeline.h"
#include "render/gl/GlMeshCache.h"
#include "render/gl/GlTextures.h"
#include "render/gl/GlView.h"

namespace orvin {

class SceneX;

struct ScenePassOptions {
    bool textures = true;           // colour and reflection maps
    bool advancedLighting = false;  // soft cones of spot lights
    int quality = 1;                // of meshes: 0 preview, 1 render
};

class ScenePasses {
  public:
    ScenePasses(GlMeshCache& meshes, GlTextures& textures, const GlView& view,
                const ScenePassOptions& options)
        : meshes_(meshes), textures_(textures), view_(view), options_(options) {}

    /// Surfaces with all passes. Depth test on, colours over what is there.
    void drawSurfaces(SceneX& scene);

    /// Edges in the colours of their materials, unlit. With `hidden` surfaces hide what lies behind
    /// them, drawn in `surface` (red, green, blue, alpha 0).
    void drawEdges(SceneX& scene, bool hidden, const std::array<float, 3>& surface);

  private:
    struct Item {
        unsigned list = 0;
        const MaterialX* material = nullptr;  // may be missing
        Matrix4 cameraFromObject;
        bool mirrored = false;
    };
    struct Maps {
        ResolvedMap color;
        ResolvedMap reflection;
    };
    struct Spot {
        unsigned light = 0;  // GL_LIGHTn
        Matrix4 lightFromCamera;
        double inner = 0.0;  // radians
        double outer = 0.0;
    };

    std::vector<Item> gather(SceneX& scene, MeshForm form);
    void setLights(SceneX& scene);
    const Maps& mapsOf(const MaterialX& material);

    void basePass(const std::vector<Item>& items);
    void spotPasses(const std::vector<Item>& items);
    void colorMapPass(const std::vector<Item>& items);
    void reflectionPass(const std::vector<Item>& items);

    GlMeshCache& meshes_;
    GlTextures& textures_;
    const GlView& view_;
    ScenePassOptions options_;
    std::vector<unsigned> plainLights_;  // GL_LIGHTn of the base pass
    std::vector<Spot> spots_;
    std::unordered_map<const MaterialX*, Maps> maps_;
};

}  // namespace orvin
