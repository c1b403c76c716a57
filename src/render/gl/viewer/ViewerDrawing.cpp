#include "render/gl/viewer/ViewerDrawing.h"

#include <algorithm>
#include <cmath>
#include <optional>

#include "geometry/ObjectP.h"
#include "render/LightX.h"
#include "render/gl/GlApi.h"
#include "render/gl/viewer/TinyFont.h"
#include "scene/SceneX.h"
#include "vector/edges/EdgeLibrary.h"

namespace orvin {

namespace {

constexpr float kOffShade = 0.35F;  // of the icon of a light that is off

std::array<std::uint8_t, 3> bytesOf(const LineColor& color) {
    const auto byte = [](float c) {
        return static_cast<std::uint8_t>(std::clamp(c, 0.0F, 1.0F) * 255.0F + 0.5F);
    };
    return {byte(color[0]), byte(color[1]), byte(color[2])};
}

class Painter {
  public:
    Painter(const Furniture& furniture, const ViewerOptions& options, const GlOverlay& target)
        : furniture_(furniture), options_(options), view_(target.view), meshes_(target.meshes) {}

    void paint() {
        // What stands in the scene shares its depth; what lies over it has none.
        glDepthRange(0.0, kSceneDepth);
        for (const FurnitureLines& lines : furniture_.lines)
            if (!lines.isOnTop) draw(lines);
        drawLights();
        glDepthRange(0.0, 1.0);
        glDisable(GL_DEPTH_TEST);
        for (const FurnitureLines& lines : furniture_.lines)
            if (lines.isOnTop) draw(lines);
        drawWords();
        glEnable(GL_DEPTH_TEST);
    }

  private:
    static void draw(const FurnitureLines& lines) {
        if (lines.isStippled) {
            glLineStipple(1, 0x0f0f);
            glEnable(GL_LINE_STIPPLE);
        }
        glColor3f(lines.color[0], lines.color[1], lines.color[2]);
        glBegin(GL_LINES);
        for (const Vec3& p : lines.points)
            glVertex3d(p.x, p.y, p.z);
        glEnd();
        glDisable(GL_LINE_STIPPLE);
    }

    // ---- icons of lights, lit from the eye

    static void setIconLight() {
        const std::array<float, 4> black{0.0F, 0.0F, 0.0F, 1.0F};
        const std::array<float, 4> white{1.0F, 1.0F, 1.0F, 1.0F};
        const std::array<float, 4> fromEye{0.3F, 0.5F, 1.0F, 0.0F};
        glLoadIdentity();
        glLightfv(GL_LIGHT0, GL_AMBIENT, white.data());
        glLightfv(GL_LIGHT0, GL_DIFFUSE, white.data());
        glLightfv(GL_LIGHT0, GL_SPECULAR, black.data());
        glLightfv(GL_LIGHT0, GL_POSITION, fromEye.data());
        glLightf(GL_LIGHT0, GL_SPOT_CUTOFF, 180.0F);
        glMaterialfv(GL_FRONT_AND_BACK, GL_SPECULAR, black.data());
        glEnable(GL_LIGHT0);
        glEnable(GL_LIGHTING);
    }
    static void setIconColor(const LineColor& color, float shade) {
        std::array<float, 4> diffuse{0.0F, 0.0F, 0.0F, 1.0F};
        std::array<float, 4> ambient{0.0F, 0.0F, 0.0F, 1.0F};
        for (std::size_t i = 0; i < 3; ++i) {
            diffuse[i] = std::clamp(color[i], 0.15F, 1.0F) * shade;
            ambient[i] = diffuse[i] * 0.5F;
        }
        glMaterialfv(GL_FRONT_AND_BACK, GL_AMBIENT, ambient.data());
        glMaterialfv(GL_FRONT_AND_BACK, GL_DIFFUSE, diffuse.data());
    }

    void drawLights() {
        ObjectP* const lamp = lightIcon();
        ObjectP* const ball = sphereIcon();
        if (lamp == nullptr || ball == nullptr || furniture_.lights.empty()) return;
        setIconLight();
        for (const LightMark& mark : furniture_.lights) {
            // Ambient light shines in no direction.
            ObjectP& icon = mark.light->type() == LightType::kAmbient ? *ball : *lamp;
            const Matrix4 cameraFromIcon = mark.worldFromIcon * view_.cameraFromWorld;
            glLoadMatrixd(&cameraFromIcon.m[0][0]);
            glFrontFace(cameraFromIcon.determinant3() < 0.0 ? GL_CW : GL_CCW);
            const float shade = mark.light->isEnabled() ? 1.0F : kOffShade;
            const Rgba& color = mark.light->color();
            for (const GlMeshPart& part : meshes_.parts(icon, MeshForm::kSurface, 0)) {
                constexpr LineColor kSocket{0.5F, 0.5F, 0.5F};
                const bool isGlass = icon.faceMaterialIndex(part.face) == 0;
                setIconColor(isGlass ? LineColor{color[0], color[1], color[2]} : kSocket, shade);
                glCallList(part.list);
            }
        }
        glDisable(GL_LIGHT0);
        glDisable(GL_LIGHTING);
        glLoadMatrixd(&view_.cameraFromWorld.m[0][0]);
    }

    // ---- words, in pixels

    std::optional<Vec2> pixelOf(Vec3 world) const {
        const Vec3 p = view_.cameraFromWorld.point(world);
        const auto& m = view_.clipFromCamera.m;
        const double w = p.x * m[0][3] + p.y * m[1][3] + p.z * m[2][3] + m[3][3];
        const double x = p.x * m[0][0] + p.y * m[1][0] + p.z * m[2][0] + m[3][0];
        const double y = p.x * m[0][1] + p.y * m[1][1] + p.z * m[2][1] + m[3][1];
        if (!(w > 0.0) || !(std::abs(x) <= w) || !(std::abs(y) <= w)) return std::nullopt;
        return Vec2{(x / w + 1.0) / 2.0 * view_.width, (y / w + 1.0) / 2.0 * view_.height};
    }
    // The raster position must lie in the picture: words begin where their place is, at least.
    void moveTo(Vec2 pixel) const {
        glRasterPos2d(std::clamp(std::floor(pixel.x), 0.0, view_.width - 1.0),
                      std::clamp(std::floor(pixel.y), 0.0, view_.height - 1.0));
    }

    void write(const Furniture::Text& text) const {
        const auto pixel = pixelOf(text.place);
        if (!pixel) return;
        glColor3f(text.color[0], text.color[1], text.color[2]);
        constexpr double kGap = 4.0;
        const double icon = text.besideIcon ? kIconShare * view_.width / 2.0 : 0.0;
        moveTo({pixel->x + icon + kGap, pixel->y + kGap});
        for (const char letter : text.text) {
            // The bytes behind the first one of a character of UTF-8.
            if ((static_cast<unsigned char>(letter) & 0xc0U) == 0x80U) continue;
            const auto& rows = tinyfont::glyph(letter);
            std::array<GLubyte, tinyfont::kHeight> bits{};
            for (std::size_t row = 0; row < bits.size(); ++row)
                bits[bits.size() - 1 - row] =
                    static_cast<GLubyte>(rows[row] << (8 - tinyfont::kWidth));
            glBitmap(tinyfont::kWidth, tinyfont::kHeight, 0.0F, tinyfont::kDescent,
                     tinyfont::kAdvance, 0.0F, bits.data());
        }
    }

    void drawWords() const {
        glMatrixMode(GL_PROJECTION);
        glLoadIdentity();
        glOrtho(0.0, view_.width, 0.0, view_.height, -1.0, 1.0);
        glMatrixMode(GL_MODELVIEW);
        glLoadIdentity();
        glPixelStorei(GL_UNPACK_ALIGNMENT, 1);
        constexpr std::array<std::uint8_t, 3> kInk{170, 185, 210};
        for (const Furniture::Label& label : furniture_.labels) {
            const auto pixel = pixelOf(label.place);
            if (!pixel) continue;
            const LabelPicture picture =
                labelPicture(label.label, kInk, bytesOf(options_.background));
            moveTo(*pixel);
            glDrawPixels(picture.width, picture.height, GL_RGB, GL_UNSIGNED_BYTE,
                         picture.rgb.data());
        }
        for (const Furniture::Text& text : furniture_.texts)
            write(text);
    }

    const Furniture& furniture_;
    const ViewerOptions& options_;
    const GlView& view_;
    GlMeshCache& meshes_;
};

}  // namespace

Result drawViewer(OrvinGLRender& renderer, SceneX& scene, int width, int height,
                  const ViewerOptions& options, ImageBuffer& picture) {
    CameraX* const camera = options.camera != nullptr
                                ? options.camera
                                : scene.memberAs<CameraX>(MemberKind::kCamera, kDefaultCamera);
    Furniture furniture;
    if (camera != nullptr)
        furniture = makeFurniture(scene, *camera, options.furniture, options.quality);
    RenderParams params;
    params.width = width;
    params.height = height;
    params.pixelAspect = static_cast<float>(options.pixelAspect);
    params.bestGeometry = options.quality != 0 ? 1 : 0;
    GlFrameOptions frame;
    frame.style = options.style;
    frame.camera = camera;
    frame.textures = options.textures;
    frame.advancedLighting = options.advancedLighting;
    frame.background = options.background;
    frame.overlayBounds = furniture.bounds;
    frame.overlay = [&](const GlOverlay& target) { Painter(furniture, options, target).paint(); };
    return renderer.renderFrame(scene, params, frame, picture);
}

}  // namespace orvin
