#include "render/gl/OrvinGLRender.h"

#include <utility>

#include "geometry/ShownObjects.h"
#include "render/Blur.h"
#include "render/CameraX.h"
#include "render/gl/GlApi.h"
#include "render/gl/ScenePasses.h"
#include "scene/SceneX.h"
#include "toolkit/AtExit.h"
#include "toolkit/Progress.h"

namespace orvin {

namespace {

constexpr double kMaxSide = 32767.0;
constexpr GLenum kContextLost = 0x0507;

void setMatrices(const GlView& view) {
    glMatrixMode(GL_PROJECTION);
    glLoadMatrixd(&view.clipFromCamera.m[0][0]);
    glMatrixMode(GL_MODELVIEW);
    glLoadMatrixd(&view.cameraFromWorld.m[0][0]);
}

// All state that a frame begins with, whatever the one before has left.
void beginFrame(const GlView& view, const std::array<float, 3>& background) {
    glViewport(0, 0, view.width, view.height);
    glDepthRange(0.0, 1.0);
    glDepthMask(GL_TRUE);
    glColorMask(GL_TRUE, GL_TRUE, GL_TRUE, GL_TRUE);
    glDisable(GL_DITHER);
    glClearDepth(1.0);
    glClearColor(background[0], background[1], background[2], 0.0F);
    glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);

    glEnable(GL_DEPTH_TEST);
    glDepthFunc(GL_LEQUAL);
    glDisable(GL_CULL_FACE);
    glDisable(GL_BLEND);
    glDisable(GL_LIGHTING);
    glEnable(GL_NORMALIZE);
    const std::array<float, 4> none{0.0F, 0.0F, 0.0F, 1.0F};
    glLightModeli(GL_LIGHT_MODEL_TWO_SIDE, 1);
    glLightModelfv(GL_LIGHT_MODEL_AMBIENT, none.data());
    setMatrices(view);
}

// Targets may be larger than what can be drawn into them.
bool isWithinReach(int width, int height) {
    std::array<GLint, 2> most{};
    glGetIntegerv(GL_MAX_VIEWPORT_DIMS, most.data());
    return width <= most[0] && height <= most[1];
}

std::string errorText(GLenum error) {
    if (error == kContextLost) return "the OpenGL context is lost";
    if (error == GL_OUT_OF_MEMORY) return "OpenGL is out of memory";
    return "OpenGL failed with error " + std::to_string(error);
}

Result blurred(ImageBuffer& picture, const RenderParams& params) {
    return blurImage(picture, blurSettings(params),
                     [&](int row) { return pollProgress(row, picture.height()); });
}

}  // namespace

OrvinGLRender::OrvinGLRender() = default;

OrvinGLRender::~OrvinGLRender() {
    reset();
}

void OrvinGLRender::reset() {
    // Lists and textures go with their context.
    meshes_.forget();
    textures_.forget();
    target_.reset();
}

Result OrvinGLRender::fail(std::string reason) {
    failure_ = std::move(reason);
    reset();
    return kFailure;
}

std::optional<GlTargetKind> OrvinGLRender::targetKind() const {
    if (!target_) return std::nullopt;
    return target_->kind();
}

bool OrvinGLRender::openTarget(int width, int height, const GlTargetChoice& choice) {
    if (target_ && target_->makeCurrent(width, height)) return true;
    reset();
    target_ = openGlTarget(width, height, choice, failure_);
    if (!target_) return false;
    if (target_->makeCurrent(width, height)) return true;
    failure_ = "the OpenGL context can't be used";
    return false;
}

void OrvinGLRender::draw(SceneX& scene, CameraX& camera, const RenderParams& params,
                         const GlFrameOptions& options, int width, int height) {
    Box3 shown = shownBounds(scene, params.bestGeometry);
    shown.merge(options.overlayBounds);
    const GlView view =
        makeGlView(camera, width, height, static_cast<double>(params.pixelAspect), shown);
    meshes_.sweep();
    textures_.sweep();
    beginFrame(view, options.background);
    if (!view.isUsable()) return;
    if (options.overlay) glReadPixels(0, 0, 1, 1, GL_DEPTH_COMPONENT, GL_FLOAT, &emptyDepth_);
    glDepthRange(0.0, kSceneDepth);
    ScenePassOptions pass;
    pass.textures = options.textures;
    pass.advancedLighting = options.advancedLighting;
    pass.quality = params.bestGeometry;
    ScenePasses passes(meshes_, textures_, view, pass);
    if (options.style == Renderer::kHiddenline || options.style == Renderer::kVector)
        passes.drawEdges(scene, options.style == Renderer::kHiddenline, options.background);
    else
        passes.drawSurfaces(scene);
    glDepthRange(0.0, 1.0);
    if (!options.overlay) return;
    setMatrices(view);
    options.overlay({view, meshes_});
}

Result OrvinGLRender::readBack(ImageBuffer& picture, int width, int height) {
    ImageBuffer image(width, height, PixelKind::kRgba);
    glPixelStorei(GL_PACK_ALIGNMENT, 1);
    glReadPixels(0, 0, width, height, GL_RGBA, GL_UNSIGNED_BYTE, image.direct());
    if (const GLenum error = glGetError(); error != GL_NO_ERROR) return fail(errorText(error));
    picture = std::move(image);
    return kSuccess;
}

Result OrvinGLRender::renderFrame(SceneX& scene, const RenderParams& params,
                                  const GlFrameOptions& options, ImageBuffer& picture) {
    failure_.clear();
    const bool sizeOk = params.width >= 1.0 && params.width <= kMaxSide && params.height >= 1.0 &&
                        params.height <= kMaxSide;
    if (!sizeOk) return fail("a picture of that size can't be drawn");
    CameraX* camera = options.camera != nullptr
                          ? options.camera
                          : scene.memberAs<CameraX>(MemberKind::kCamera, kDefaultCamera);
    if (camera == nullptr) return fail("there is no camera");

    if (options.busyCursor) options.busyCursor(true);
    const AtExit arrowCursor([&options] {
        if (options.busyCursor) options.busyCursor(false);
    });
    clearProgressStop();
    const int width = static_cast<int>(params.width);
    const int height = static_cast<int>(params.height);
    if (!openTarget(width, height, options.targets)) {
        reset();
        return kFailure;
    }
    bool isDrawn = false;
    const AtExit release([this, &isDrawn] {
        if (!isDrawn) reset();  // half a frame leaves state and textures that no other expects
        if (target_) target_->release();
    });
    if (!isWithinReach(width, height)) return fail("a picture of that size is too large for it");
    draw(scene, *camera, params, options, width, height);
    isDrawn = true;
    if (pollProgress(1, 2) != 0) return kFailure;
    if (readBack(picture, width, height) != kSuccess) return kFailure;
    if (params.blurOption != 0 && blurred(picture, params) != kSuccess) return kFailure;
    return kSuccess;
}

}  // namespace orvin
