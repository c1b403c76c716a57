// render: one still through the scene's own camera and lights.
#include "common/Png.h"
#include "orvinex/Commands.h"
#include "orvinex/RenderSettings.h"
#include "orvinex/RenderedPicture.h"
#include "orvinex/ShownProgress.h"
#include "render/CameraX.h"
#include "render/gl/RenderWith.h"
#include "render/gl/viewer/ViewerDrawing.h"

namespace orvin::orvinex {

namespace {

RenderParams paramsFor(const apps::ParsedOptions& options, RenderState& state) {
    applyRenderSettings(options, state);
    if (options.has("--pixel-aspect")) {
        const apps::Ratio aspect =
            apps::ratioOption(options.value("--pixel-aspect"), "--pixel-aspect");
        state.setPixelAspect(static_cast<float>(aspect.num) / static_cast<float>(aspect.den));
    }
    return state.params;
}

bool advancedLighting(const apps::ParsedOptions& options, Project& project) {
    if (!options.has("--gl-lighting")) return project.preferences().advancedGLLighting;
    const std::string how = options.value("--gl-lighting");
    if (how != "simple" && how != "advanced")
        throw apps::UsageError("--gl-lighting is 'simple' or 'advanced', not '" + how + "'");
    return how == "advanced";
}

// As the viewers show the scene: with ground plane, guides, icons and names.
std::unique_ptr<ImageBuffer> viewerPicture(Project& project, const RenderParams& params,
                                           const GlFrameOptions& gl) {
    const RenderState::ViewerBlock& block = project.renderState().viewer;
    ViewerOptions viewer;
    viewer.camera = gl.camera;
    viewer.style = gl.style;
    viewer.textures = project.preferences().showTexturesSetup;
    viewer.advancedLighting = gl.advancedLighting;
    viewer.background = block.background;
    viewer.pixelAspect = static_cast<double>(params.pixelAspect);
    viewer.quality = 1;
    viewer.furniture.groundPlane = block.groundPlaneOn;
    viewer.furniture.groundLevel = block.groundPlaneLevel;
    viewer.furniture.frameWidth = params.width;
    viewer.furniture.frameHeight = params.height;
    OrvinGLRender openGl;
    auto picture = std::make_unique<ImageBuffer>();
    if (drawViewer(openGl, project.mainScene(), static_cast<int>(params.width),
                   static_cast<int>(params.height), viewer, *picture) != kSuccess)
        throw apps::Failure("OpenGL is not available: " + openGl.failure());
    return picture;
}

}  // namespace

int renderCommand(const apps::ParsedOptions& options) {
    const std::string output = pictureOutput(options);
    Project project;
    openProject(project, options.positional()[0]);
    SceneX& scene = project.mainScene();
    const RenderParams params = paramsFor(options, project.renderState());

    const std::string cameraName = options.value("--camera", kDefaultCamera);
    CameraX* const camera = scene.memberAs<CameraX>(MemberKind::kCamera, cameraName);
    if (camera == nullptr) throw apps::Failure("no camera is named '" + cameraName + "'");
    goToFrame(options);
    SoftwareRenderOptions software;
    software.camera = camera;
    GlFrameOptions gl;
    gl.style = rendererFor(project.renderState().renderMethod);
    gl.camera = camera;
    gl.advancedLighting = advancedLighting(options, project);
    OrvinGLRender openGl;
    const auto image = [&] {
        const ShownProgress progress("rendering", options.has("--quiet"));
        if (options.has("--furniture")) return viewerPicture(project, params, gl);
        return renderWith(openGl, scene, params, gl, software);
    }();
    if (!image) throw apps::Failure("the frame was stopped");
    apps::Picture picture = uprightPicture(*image);
    if (options.has("--on-background"))
        paintBehind(picture, project.renderState().viewer.background);
    apps::writePng(output, picture);
    return apps::kExitDone;
}

}  // namespace orvin::orvinex
