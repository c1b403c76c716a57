#include "host/OrvinApp.h"

#include <array>
#include <cmath>
#include <filesystem>
#include <new>
#include <vector>

#include "host/Failure.h"
#include "host/PlaceholderLayer.h"
#include "interchange/ModelFormats.h"
#include "render/CameraX.h"
#include "setup/StartUp.h"
#include "toolkit/Questions.h"

namespace orvin {

namespace {

constexpr std::size_t kMessageReserve = 1000;  // bytes kept back so that a message can be shown

// In the order of StartupChoice.
constexpr std::array<std::string_view, 6> kStartupButtons = {
    "Create a New Scene",          "Open an existing Scene", "Create Vector Shape Object",
    "Create Layer Cycling Object", "Import 3D Object",       "Cancel"};

}  // namespace

OrvinApp::OrvinApp()
    : manager_(preferences_, sections_),
      panelPushed_("## ECW Pushed stuff ##"),
      setUpPushed_("## SetupWin Pushed stuff ##") {}

OrvinApp::~OrvinApp() = default;

bool OrvinApp::Init() {
    registerMemberClasses();
    return true;
}

int OrvinApp::Run() {
    std::unique_ptr<char[]> reserve(new (std::nothrow) char[kMessageReserve]);
    try {
        if (!reserve) throw std::bad_alloc();
        return EventLoop();
    } catch (...) {
        const Failure failure = describeFailure();
        reserve.reset();
        ShowMessage(failure.text, true);
        return kRunFailed;
    }
}

int OrvinApp::EventLoop() {
    if (!setUpWindow_) {
        ShowMessage("The Set-Up window isn't part of this build.", false);
        return 0;
    }
    if (scene() != nullptr) {
        if (!useCompCamera) panelPushed_.storeCamera(*scene());
        if (!useCompLights) panelPushed_.storeLights(*scene());
    }
    setUpWindow_->runModal();
    if (scene() != nullptr) {
        setUpPushed_.restoreCamera(*scene());
        setUpPushed_.restoreLights(*scene());
        manager_.refreshAfterLoad(true);
    }
    return 0;
}

void OrvinApp::ShowMessage(std::string_view text, bool fatal) {
    questions().showMessage(text, fatal);
}

void OrvinApp::Quit() {
    setUpWindow_.reset();
    panel_.reset();
}

int OrvinApp::StartupDialog() {
    const int choice = questions().choose("3D Orvinex", kStartupButtons,
                                          static_cast<int>(StartupChoice::kNewScene));
    switch (static_cast<StartupChoice>(choice)) {
        case StartupChoice::kNewScene:
            newScene();
            return 0;
        case StartupChoice::kOpenScene:
            if (manager_.openProjectDialog()) return 0;
            newScene();
            reportMissing("Vector shapes");
            return 0;
        case StartupChoice::kVectorShape:
            newScene();
            reportMissing("Vector shapes");
            return 0;
        case StartupChoice::kLayerCycling:
            newScene();
            reportMissing("Layer cycling objects");
            return 0;
        case StartupChoice::kImportModel:
            newScene();
            importModels();
            return 0;
        case StartupChoice::kCancel:
            break;
    }
    return 1;
}

void OrvinApp::importModels() {
    std::filesystem::path path;
    ModelFileType format{};
    std::vector<ObjectP*> made;
    if (chooseImportFile(path, format) != kSuccess) return;
    if (importModel(*scene(), path, format, &made) != kSuccess) return;
    for (ObjectP* object : made)
        scene()->moveToSet(preferences_.defaultGroup, object, false);
}

void OrvinApp::reportMissing(std::string_view what) {
    ShowMessage(std::string(what) + " can't be created here in this build. The scene is empty.",
                false);
}

void OrvinApp::AttachPanel(void* window, const PF_Rect& rect) {
    panel_ = std::make_unique<EffectPanel>(window, rect);
}

CameraX* OrvinApp::camera() {
    SceneX* main = scene();
    return main != nullptr ? main->memberAs<CameraX>(MemberKind::kCamera, kDefaultCamera) : nullptr;
}

void OrvinApp::newScene() {
    const Result result = manager_.newProject({}, true);
    if (result != kSuccess) throw static_cast<long>(result);
}

Result OrvinApp::readFlat(HandleMemory& memory, Handle handle, std::size_t offset) {
    try {
        return manager_.readProjectHandle(memory, handle, offset, true, true);
    } catch (const std::bad_alloc&) {
        // Members say so where their parent isn't there, which cut data is full of. When memory is
        // gone in earnest, the new scene that follows says it again.
        return kFailure;
    }
}

Result OrvinApp::writeFlat(HandleMemory& memory, Handle& handle, std::size_t offset) {
    return manager_.saveProjectHandle(memory, handle, offset, true, true);
}

void OrvinApp::applyHardShadingAngle() {
    sections_.hardShadingAngleChanged(std::trunc(preferences_.hardShadingAngle));
}

void OrvinApp::settleScene() {
    SceneX* main = scene();
    if (main == nullptr) return;
    main->ensureExtMap(0);
    installPlaceholderLayer();
    main->selectSet(0);
    setUpPushed_.storeCamera(*main);
    panelPushed_.storeCamera(*main);
    setUpPushed_.storeLights(*main);
    panelPushed_.storeLights(*main);
}

PanelPicture OrvinApp::panelPicture() {
    return panel_->draw(scene(), renderState().params, renderState().viewer.background);
}

}  // namespace orvin
