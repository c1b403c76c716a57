// The stream form of a project: the settings' keys and their lines, and the order of the blocks.
#include <array>
#include <cmath>
#include <memory>
#include <string>

#include "scene/FileFlags.h"
#include "scene/OrvinSceneManager.h"
#include "scene/SceneStream.h"

namespace orvin {

namespace {

struct Version {
    std::string_view text;
    bool otherPlatform;
};
constexpr Version kVersions[] = {
    {"Orvinex Kliomiofliko WIN32 Version 2.0", false},
    {"Orvinex Kliomiofliko WIN32 Version 2.1", false},
    {"Orvinex WIN32 Scene Format 2.5", false},
    {kProjectVersion, false},
    {"Orvinex WIN32 Scene Format 3.0", false},
    {"Orvinex Version 1.0", true},
    {"Orvinex Kliomiofliko Mac Version 2.0", true},
    {"Orvinex Kliomiofliko Mac Version 2.1", true},
    {"Orvinex Mac Scene Format 2.5", true},
    {"Orvinex Mac-Pro Scene Format 3.0", true},
    {"Orvinex Mac Scene Format 3.0", true},
};

constexpr std::array<std::string_view, 3> kViewerModes{"OBJECT", "CAMERA", "LIGHT"};
constexpr std::array<std::string_view, 7> kViewerTools{"TUMBLE", "ROLL", "TRACK", "DOLLY",
                                                       "PICK",   "ZOOM", "SCALE"};

// What a file can set: beyond these a value is dropped and the one before stays.
constexpr double kLargestPicture = 1e6;  // pixels along a side
constexpr int kLargestShadowMap = 16384;
constexpr double kLargestAngle = 360.0;

/// Position of `word` in `words`, -1 if it isn't there.
template <std::size_t N>
int indexOf(const std::array<std::string_view, N>& words, std::string_view word) {
    for (std::size_t i = 0; i < N; ++i)
        if (words[i] == word) return static_cast<int>(i);
    return -1;
}

template <std::size_t N>
std::string_view wordAt(const std::array<std::string_view, N>& words, int index) {
    const bool known = index >= 0 && index < static_cast<int>(N);
    return words[known ? static_cast<std::size_t>(index) : 0];
}

OrvinSceneManager& managerOf(Persistent& self) {
    return static_cast<OrvinSceneManager&>(self);
}

/// The handler of a key with one whole number (or on, off): `Store` puts it in its place.
template <void (*Store)(OrvinSceneManager&, int)>
Result readNumber(SceneStream& stream, Persistent& self) {
    int value = 0;
    if (stream.readInt(value) != kSuccess) return kFailure;
    Store(managerOf(self), value);
    return kSuccess;
}

template <bool OrvinPreferences::*Flag>
void storeFlag(OrvinSceneManager& manager, int value) {
    manager.preferences().*Flag = value != 0;
}

Result readVersion(SceneStream& stream, Persistent&) {
    std::string text;
    if (stream.readText(text) != kSuccess) return kFailure;
    for (const Version& version : kVersions) {
        if (version.text != text) continue;
        gFileFromOtherPlatform = version.otherPlatform;
        return kSuccess;
    }
    return kFailure;
}

Result readViewerMode(SceneStream& stream, Persistent& self) {
    std::string word;
    if (stream.readText(word) != kSuccess) return kFailure;
    const int mode = indexOf(kViewerModes, word);
    if (mode >= 0) managerOf(self).sections().viewerSettings().mode = mode;
    return kSuccess;
}

Result readViewerTool(SceneStream& stream, Persistent& self) {
    std::string word;
    if (stream.readText(word) != kSuccess) return kFailure;
    const int tool = indexOf(kViewerTools, word);
    if (tool < 0) return kFailure;
    managerOf(self).sections().viewerSettings().tool = tool;
    return kSuccess;
}

void storeAxisMode(OrvinSceneManager& manager, int value) {
    manager.sections().viewerSettings().axisMode = value != 0;
}

Result readRenderSize(SceneStream& stream, Persistent& self) {
    Vec2 size;
    if (stream.readVector2(size) != kSuccess) return kFailure;
    RenderParams& params = managerOf(self).renderState().params;
    if (size.x >= 0.0 && size.x <= kLargestPicture) params.width = size.x;
    if (size.y >= 0.0 && size.y <= kLargestPicture) params.height = size.y;
    return kSuccess;
}

void storeResolution(OrvinSceneManager& manager, int value) {
    manager.renderState().resolution = value;
}

Result readDpi(SceneStream& stream, Persistent& self) {
    double dpi = 0.0;
    if (stream.readDouble(dpi) != kSuccess) return kFailure;
    if (std::isfinite(dpi)) managerOf(self).renderState().params.dpi = dpi;
    return kSuccess;
}

void storeAntiAliasLevel(OrvinSceneManager& manager, int value) {
    manager.renderState().setAntiAliasLevel(value);
}

void storeRenderMethod(OrvinSceneManager& manager, int value) {
    manager.renderState().renderMethod = value < 1 ? 1 : value;
}

void storeKeepAlpha(OrvinSceneManager& manager, int value) {
    manager.renderState().setKeepsAlpha(value != 0);
}

void storeShadows(OrvinSceneManager& manager, int value) {
    manager.renderState().setRendersShadows(value != 0);
}

Result readHardShadingAngle(SceneStream& stream, Persistent& self) {
    double angle = 0.0;
    if (stream.readDouble(angle) != kSuccess) return kFailure;
    if (!(angle >= 0.0 && angle <= kLargestAngle)) return kSuccess;
    OrvinSceneManager& manager = managerOf(self);
    manager.preferences().hardShadingAngle = angle;
    manager.sections().hardShadingAngleChanged(angle);
    return kSuccess;
}

Result readBackground(SceneStream& stream, Persistent& self) {
    std::array<float, 3> color{};
    if (stream.readColor(color) != kSuccess) return kFailure;
    for (const float channel : color)
        if (!std::isfinite(channel)) return kSuccess;
    managerOf(self).renderState().viewer.background = color;
    return kSuccess;
}

void storeDefaultGroup(OrvinSceneManager& manager, int value) {
    manager.preferences().defaultGroup = value;
}

void storeShadowQuality(OrvinSceneManager& manager, int value) {
    if (value < 1 || value > kLargestShadowMap) return;
    manager.preferences().shadowQuality = value;
    manager.renderState().setShadowQuality(value);
}

Result readDuplicationOffset(SceneStream& stream, Persistent& self) {
    Vec3 offset;
    if (stream.readVector3(offset) != kSuccess) return kFailure;
    const bool finite = std::isfinite(offset.x + offset.y + offset.z);
    if (finite) managerOf(self).preferences().duplicationOffset = offset;
    return kSuccess;
}

Result readGroundPlane(SceneStream& stream, Persistent& self) {
    int on = 0;
    int level = 0;
    if (stream.readInt(on) != kSuccess || stream.readInt(level) != kSuccess) return kFailure;
    OrvinPreferences& preferences = managerOf(self).preferences();
    preferences.groundPlaneOn = on != 0;
    preferences.groundPlaneLevel = level;
    managerOf(self).renderState().setGroundPlane(on != 0, level);
    return kSuccess;
}

void storeNumberUndos(OrvinSceneManager& manager, int value) {
    const int depth = value > 0 ? value : 0;
    manager.preferences().numberUndos = depth;
    SceneX* const scene = manager.mainScene();
    if (scene != nullptr && scene->undo() != nullptr) scene->undo()->setDepth(depth);
}

// The setting speaks of the machine that the file was written on.
void storeAdvancedGl(OrvinSceneManager& manager, int value) {
    if (!gFileFromOtherPlatform) manager.preferences().advancedGLLighting = value != 0;
}

void storeSaveMode(OrvinSceneManager& manager, int value) {
    manager.preferences().saveMode = value == 1 ? 1 : 0;
    gSaveThumbnailsAscii = value == 1;
}

// Keys of old files, whose values mean nothing any more.
void dropNumber(OrvinSceneManager&, int) {}

Result dropToken(SceneStream& stream, Persistent&) {
    std::string_view token;
    return stream.nextToken(token) == kSuccess ? kSuccess : kFailure;
}

}  // namespace

struct ProjectCommands {
    static Result begin(SceneStream& stream, Persistent& self) {
        std::string className;
        if (stream.readText(className) != kSuccess) return kFailure;
        OrvinSceneManager& manager = managerOf(self);
        SceneX* const mainScene = manager.mainScene();
        SceneX* const lightBinScene = manager.lightBinScene();
        if (mainScene == nullptr || lightBinScene == nullptr) return kFailure;
        if (className == mainScene->className()) {
            SceneX& scene =
                mainScene->count(MemberKind::kCamera) == 0 ? *mainScene : *lightBinScene;
            std::size_t openBlocks = 0;
            const Result result = loadBlock(stream, scene, &openBlocks);
            if (openBlocks > 0) manager.cutShort_ = true;
            return result;
        }
        Persistent* const section =
            manager.sections().beginSection(className, *mainScene, *lightBinScene);
        if (section == nullptr) return kFailure;
        stream.push(*section);
        return kSuccess;
    }
};

const CommandRegistry& OrvinSceneManager::commandRegistry() const {
    using Prefs = OrvinPreferences;
    static const auto kCommands = [] {
        auto commands = std::make_unique<CommandRegistry>();
        const std::pair<std::string_view, CommandHandler> table[] = {
            {"Version", readVersion},
            {"ViewerMode", readViewerMode},
            {"ViewerTool", readViewerTool},
            {"ObjectAxisMode", readNumber<storeAxisMode>},
            {"RenderSize", readRenderSize},
            {"RenderResolution", readNumber<storeResolution>},
            {"RenderDPI", readDpi},
            {"AntiAliasLevel", readNumber<storeAntiAliasLevel>},
            {"RenderMethod", readNumber<storeRenderMethod>},
            {"UseAlphaMask", readNumber<storeKeepAlpha>},
            {"RenderShadows", readNumber<storeShadows>},
            {"HardShadingAngle", readHardShadingAngle},
            {"BackgroundColor", readBackground},
            {"DefaultGroup", readNumber<storeDefaultGroup>},
            {"ShadowQuality", readNumber<storeShadowQuality>},
            {"DuplicationOffset", readDuplicationOffset},
            {"GroundPlane", readGroundPlane},
            {"NumberUndos", readNumber<storeNumberUndos>},
            {"AdvancedGLLighting", readNumber<storeAdvancedGl>},
            {"HideGLRenderWindows", readNumber<storeFlag<&Prefs::hideGLRenderWindows>>},
            {"ShowTexturesECW", readNumber<storeFlag<&Prefs::showTexturesECW>>},
            {"ShowTexturesComp", readNumber<storeFlag<&Prefs::showTexturesComp>>},
            {"ShowTexturesSetup", readNumber<storeFlag<&Prefs::showTexturesSetup>>},
            {"SaveMode", readNumber<storeSaveMode>},
            {"BlurOption", readNumber<dropNumber>},
            {"BlurRadius", dropToken},
            {"BlurContrast", dropToken},
            {"begin", ProjectCommands::begin},
            {"end", endCommand},
        };
        for (const auto& [name, handler] : table)
            commands->lookupOrInsert(name, handler);
        return commands;
    }();
    return *kCommands;
}

Result OrvinSceneManager::writeSettings(SceneStream& stream) {
    const auto quotedNumber = [&stream](std::string_view key, int value) {
        stream.line().clear().text(key).text(" \"").whole(value).text("\"");
        return stream.putLine();
    };
    const OrvinPreferences& prefs = preferences_;
    const RenderState& state = renderState_;
    const ViewerSettings& viewer = sections_.viewerSettings();

    Result result = stream.putText("Version", kProjectVersion);
    result |= stream.putText("ViewerMode", wordAt(kViewerModes, viewer.mode));
    result |= stream.putText("ViewerTool", wordAt(kViewerTools, viewer.tool));
    result |= quotedNumber("ObjectAxisMode", viewer.axisMode);
    result |= stream.putDoubles("RenderSize", std::array{state.params.width, state.params.height});
    result |= stream.putInt("RenderResolution", state.resolution);
    result |= stream.putDouble("RenderDPI", state.params.dpi);
    result |= quotedNumber("AntiAliasLevel", state.antiAliasLevel);
    result |= quotedNumber("RenderMethod", state.renderMethod);
    result |= quotedNumber("UseAlphaMask", state.keepsAlpha());
    result |= quotedNumber("RenderShadows", state.rendersShadows());
    stream.line().clear().text("HardShadingAngle \"");
    stream.line().number(std::trunc(prefs.hardShadingAngle)).text("\"");
    result |= stream.putLine();
    std::array<double, 3> background{};
    for (std::size_t i = 0; i < background.size(); ++i)
        background[i] = static_cast<double>(state.viewer.background[i]);
    result |= stream.putDoubles("BackgroundColor", background);
    result |= quotedNumber("DefaultGroup", prefs.defaultGroup);
    result |= quotedNumber("ShadowQuality", prefs.shadowQuality);
    result |= stream.putVector("DuplicationOffset", prefs.duplicationOffset);
    stream.line().clear().text("GroundPlane ").whole(prefs.groundPlaneOn);
    stream.line().character(' ').whole(prefs.groundPlaneLevel);
    result |= stream.putLine();
    result |= stream.putInt("NumberUndos", prefs.numberUndos);
    result |= stream.putInt("AdvancedGLLighting", prefs.advancedGLLighting);
    result |= stream.putInt("HideGLRenderWindows", prefs.hideGLRenderWindows);
    result |= stream.putInt("ShowTexturesECW", prefs.showTexturesECW);
    result |= stream.putInt("ShowTexturesComp", prefs.showTexturesComp);
    result |= stream.putInt("ShowTexturesSetup", prefs.showTexturesSetup);
    result |= stream.putInt("SaveMode", prefs.saveMode);
    return result == kSuccess ? kSuccess : kFailure;
}

Result OrvinSceneManager::writeBody(SceneStream& stream) {
    if (mainScene_ == nullptr || lightBinScene_ == nullptr) return kFailure;
    Result result = writeSettings(stream);
    if (result == kSuccess) result = stream.writeObject(*mainScene_);
    if (result == kSuccess) result = sections_.writeSceneSections(stream, *mainScene_);
    if (result == kSuccess) result = stream.writeObject(*lightBinScene_);
    if (result == kSuccess) result = sections_.writeLightSections(stream, *lightBinScene_);
    return result == kSuccess && !stream.writeFailed() ? kSuccess : kFailure;
}

}  // namespace orvin
