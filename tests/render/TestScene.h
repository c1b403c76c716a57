// TestScene: a small scene with a camera, meshes of a few shapes, and the picture they give.
#pragma once

#include <array>
#include <cmath>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "geometry/ObjectP.h"
#include "render/CameraX.h"
#include "render/LightX.h"
#include "render/MaterialX.h"
#include "render/SoftwareRenderer.h"
#include "render/image/ImageCache.h"
#include "scene/SceneX.h"

namespace orvin {

/// The bytes of a rendered picture. Row 0 is the bottom one.
struct Picture {
    int width = 0;
    int height = 0;
    std::vector<std::uint8_t> bytes;  // R, G, B, A

    explicit Picture(const ImageBuffer& image)
        : width(image.width()),
          height(image.height()),
          bytes(image.rowBytes() * static_cast<std::size_t>(image.height())) {
        for (int y = 0; y < height; ++y)
            image.readRow(y, std::span(bytes).subspan(
                                 static_cast<std::size_t>(y) * image.rowBytes(), image.rowBytes()));
    }
    std::array<int, 4> at(int x, int y) const {
        const std::uint8_t* p = &bytes[static_cast<std::size_t>((y * width + x) * 4)];
        return {p[0], p[1], p[2], p[3]};
    }
    friend bool operator==(const Picture&, const Picture&) = default;
};

class TestScene {
  public:
    /// An orthographic camera 100 units in front of the origin that sees `unitsAcross` units.
    explicit TestScene(double unitsAcross = 10.0) {
        camera().setProjection(Projection::kOrthographic);
        camera().setOrthoWidth(unitsAcross);
        camera().transform().setTranslate({0, 0, 100});
        params.width = 10;
        params.height = 10;
        params.antiAliasSize = 2;
    }
    ~TestScene() { clearLayerImages(); }
    TestScene(const TestScene&) = delete;
    TestScene& operator=(const TestScene&) = delete;

    CameraX& camera() { return camera_; }

    LightX& light(LightType type, double intensity = 1.0) {
        LightX& light = scene.make<LightX>(scene.uniqueName("light"));
        light.setType(type);
        light.setIntensity(intensity);
        return light;
    }

    MaterialX& material(const std::string& name, const Rgba& diffuse, double transparency = 0.0) {
        MaterialX& m = scene.make<MaterialX>(name);
        MaterialX::Look look;
        look.flags = MaterialX::kDiffuse | MaterialX::kTransparency;
        look.diffuse = diffuse;
        look.transparency = transparency;
        m.setLook(look);
        return m;
    }

    /// A map over a picture that `pixel(x, y)` paints.
    std::string map(int number, int width, int height,
                    const std::function<std::array<std::uint8_t, 4>(int, int)>& pixel) {
        ImageBuffer image(width, height, PixelKind::kRgba);
        for (int y = 0; y < height; ++y)
            for (int x = 0; x < width; ++x)
                image.writePixel(x, y, pixel(x, y));
        addLayerImage(extMapName(number), std::make_unique<SummedImage>(image));
        scene.make<ImageMap>(extMapName(number));
        return extMapName(number);
    }

    ObjectP& object(Mesh3 mesh, const std::string& material = "") {
        ObjectP& object = scene.make<ObjectP>(scene.uniqueName("object"));
        object.setMesh(std::move(mesh));
        if (!material.empty()) object.setMaterial(0, material);
        return object;
    }

    /// A rectangle in a plane of constant z that faces +z; texture coordinates 0 to 1.
    static Mesh3 rectangle(double x0, double y0, double x1, double y1, double z = 0.0) {
        return quad({{{x0, y0, z}, {x1, y0, z}, {x1, y1, z}, {x0, y1, z}}});
    }
    static Mesh3 quad(const std::array<Vec3, 4>& corners, double t0 = 0.0, double t1 = 1.0) {
        Mesh3 mesh;
        for (const Vec3& p : corners)
            mesh.addVertex(p);
        mesh.addTexVertex({0, t0, 0});
        mesh.addTexVertex({1, t0, 0});
        mesh.addTexVertex({1, t1, 0});
        mesh.addTexVertex({0, t1, 0});
        mesh.addNormal(normalize(cross(corners[1] - corners[0], corners[3] - corners[0])));
        const std::array<int, 4> order{0, 1, 2, 3};
        const std::array<int, 4> same{0, 0, 0, 0};
        mesh.addFace(ElementKind::kPolygon, 0, order, order, same);
        return mesh;
    }
    /// A ball around the origin of quads, with smooth normals; u runs round, v from the south pole.
    static Mesh3 ball(double radius, int columns, int rows) {
        Mesh3 mesh;
        for (int j = 0; j <= rows; ++j)
            for (int i = 0; i <= columns; ++i) {
                const double turn = 2.0 * kPi * i / columns;
                const double tilt = kPi * (static_cast<double>(j) / rows - 0.5);
                const Vec3 n{std::cos(tilt) * std::sin(turn), std::sin(tilt),
                             std::cos(tilt) * std::cos(turn)};
                mesh.addVertex(n * radius);
                mesh.addNormal(n);
                mesh.addTexVertex(
                    {static_cast<double>(i) / columns, static_cast<double>(j) / rows, 0.0});
            }
        for (int j = 0; j < rows; ++j)
            for (int i = 0; i < columns; ++i) {
                const int a = j * (columns + 1) + i;
                const int b = a + columns + 1;
                const std::array<int, 4> corners{a, a + 1, b + 1, b};
                mesh.addFace(ElementKind::kPolygon, 0, corners, corners, corners);
            }
        return mesh;
    }

    Picture render(const SoftwareRenderOptions& options = {}) {
        return Picture(*renderSoftware(scene, params, options));
    }

    SceneX scene;
    RenderParams params;

  private:
    CameraX& camera_ = scene.make<CameraX>(kDefaultCamera);
};

}  // namespace orvin
