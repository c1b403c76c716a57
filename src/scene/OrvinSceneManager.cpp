#include "scene/OrvinSceneManager.h"

#include <cerrno>
#include <system_error>

#include "scene/FileAccess.h"
#include "scene/FileFlags.h"
#include "scene/FileStream.h"
#include "scene/HandleStream.h"
#include "toolkit/Questions.h"
#include "toolkit/platform/Platform.h"

namespace orvin {

namespace {

/// Leaves a scene's objects out of what is written in its scope.
class WithoutObjects {
  public:
    WithoutObjects(SceneX& scene, bool active) : scene_(scene), active_(active) { set(false); }
    ~WithoutObjects() { set(true); }
    WithoutObjects(const WithoutObjects&) = delete;
    WithoutObjects& operator=(const WithoutObjects&) = delete;

  private:
    void set(bool on) {
        if (!active_) return;
        for (SceneMember* object : scene_.members(MemberKind::kObject))
            object->setSaveable(on);
    }

    SceneX& scene_;
    bool active_;
};

}  // namespace

OrvinSceneManager::OrvinSceneManager(OrvinPreferences& preferences, ProjectSections& sections)
    : preferences_(preferences), sections_(sections), dataFolder_(platform::moduleFolder()) {}

OrvinSceneManager::~OrvinSceneManager() {
    clearProject();
}

// ---- opening

Result OrvinSceneManager::newProject(const std::filesystem::path& path, bool refresh) {
    failure_.clear();
    const bool named = !path.empty();
    FileAccess file;
    const Result opened =
        file.open(named ? path : dataFolder_ / kStartupProject, FileAccess::Mode::kRead);
    if (named && opened != kSuccess) {
        failure_ = file.failure();
        return kFailure;
    }
    bool read = false;
    if (opened == kSuccess) {
        try {
            read = readProject(file.file(), true) == kSuccess && checkRead() == kSuccess;
        } catch (...) {
            startDefaultProject();
            throw;
        }
    }
    if (!read)
        startDefaultProject();
    else if (!named)
        mainScene_->setName(nextUntitledName());
    projectPath_ = named && read ? path : std::filesystem::path();
    if (refresh) refreshAfterLoad(true);
    return kSuccess;
}

Result OrvinSceneManager::openProject(const std::filesystem::path& path, bool locateImages) {
    failure_.clear();
    FileAccess file;
    if (file.open(path, FileAccess::Mode::kRead) != kSuccess) {
        failure_ = file.failure();
        return kFailure;
    }
    if (readProject(file.file(), locateImages) != kSuccess || checkRead() != kSuccess)
        return kFailure;
    projectPath_ = path;
    return kSuccess;
}

bool OrvinSceneManager::openProjectDialog() {
    const auto path = questions().openFile(
        "Select 3D Orvinex Scene file or click Cancel to create an Object", kProjectPattern);
    if (!path || path->empty()) return false;
    if (newProject(*path, true) == kSuccess) return true;
    questions().showMessage(failure_, false);
    return false;
}

Result OrvinSceneManager::readProject(std::FILE* file, bool locateImages) {
    FileStream stream(nullptr, file, nullptr);
    return readProject(stream, locateImages);
}

Result OrvinSceneManager::readProject(SceneStream& stream, bool locateImages) {
    clearProject();
    renderState_ = RenderState();
    startScenes(std::make_unique<SceneX>());
    cutShort_ = false;
    const FlagScope platform(gFileFromOtherPlatform, false);
    stream.mayWriteFiles = false;
    std::size_t openBlocks = 0;
    const Result result = loadBlock(stream, *this, &openBlocks);
    if (result != kSuccess) return result;
    if (cutShort_ || openBlocks > 1)  // the manager itself has no end
        questions().showMessage("The project ends in the middle. What could be read is there.",
                                false);
    for (const std::string_view name : {kDefaultMaterial, kDefaultStyle})
        if (SceneMember* member = mainScene_->memberByName(name)) member->protectedFromSweep = true;
    sections_.projectRead(*mainScene_);
    if (locateImages) sections_.reloadImages(*mainScene_);
    return kSuccess;
}

Result OrvinSceneManager::readProjectHandle(HandleMemory& memory, Handle handle, std::size_t offset,
                                            bool locateImages, bool refresh) {
    HandleStream stream(memory, nullptr);
    if (handle == nullptr || stream.openRead(handle, offset) != kSuccess) return kFailure;
    const Result result = readProject(stream, locateImages);
    if (result != kSuccess) return result;
    if (checkRead() != kSuccess) return kFailure;
    if (refresh) refreshAfterLoad(true);
    return kSuccess;
}

Result OrvinSceneManager::checkRead() {
    if (mainScene_->member(MemberKind::kCamera, kDefaultCamera) != nullptr) return kSuccess;
    questions().showMessage(
        "The project has no scene with the camera \"" + std::string(kDefaultCamera) + "\".", false);
    return kFailure;
}

void OrvinSceneManager::clearProject() {
    if (mainScene_ && mainScene_->undo() != nullptr) mainScene_->undo()->clear();
    sections_.clear();
    mainScene_.reset();
    lightBinScene_.reset();
}

void OrvinSceneManager::startScenes(std::unique_ptr<SceneX> mainScene) {
    mainScene_ = std::move(mainScene);
    lightBinScene_ = std::make_unique<SceneX>(kLightBinSceneName);
}

void OrvinSceneManager::startDefaultProject() {
    projectPath_.clear();  // a project that couldn't be read isn't saved over with this one
    clearProject();
    startScenes(sections_.buildDefaultScene(nextUntitledName(), true));
    renderState_ = RenderState();
    renderState_.setNewProjectDefaults(preferences_);
}

std::string OrvinSceneManager::nextUntitledName() {
    const bool first = untitledCount_ == 0;
    ++untitledCount_;
    return first ? "Untitled" : "Untitled " + std::to_string(untitledCount_);
}

void OrvinSceneManager::refreshAfterLoad(bool redraw) {
    if (!mainScene_) return;
    if (mainScene_->undo() != nullptr) mainScene_->undo()->setDepth(preferences_.numberUndos);
    sections_.refreshAfterLoad(*mainScene_, renderState_, redraw);
}

// ---- saving

Result OrvinSceneManager::saveProject(bool forceAsk) {
    std::filesystem::path path = projectPath_;
    if (forceAsk || path.empty()) {
        const auto picked = questions().saveFile("Save 3D Orvinex Project", kProjectPattern);
        if (!picked || picked->empty()) return kFailure;
        path = *picked;
        if (!path.has_extension()) path += ".twp";
    }
    const Result result = saveProjectTo(path);
    if (result != kSuccess) questions().showMessage(failure_, false);
    return result;
}

Result OrvinSceneManager::saveProjectTo(const std::filesystem::path& path) {
    dropUnused();
    const FlagScope ascii(gSaveThumbnailsAscii, preferences_.saveMode != 0);
    const Result result = writeFile(path);
    if (result == kSuccess) projectPath_ = path;
    return result;
}

Result OrvinSceneManager::saveStartupProject() {
    if (!mainScene_) return kFailure;
    const WithoutObjects objects(*mainScene_, true);
    const FlagScope ascii(gSaveThumbnailsAscii, false);
    dropUnused();
    return writeFile(dataFolder_ / kStartupProject);
}

Result OrvinSceneManager::saveProjectHandle(HandleMemory& memory, Handle& handle,
                                            std::size_t offset, bool wholeProject,
                                            bool withObjects) {
    if (!mainScene_ || handle == nullptr) return kFailure;
    const WithoutObjects objects(*mainScene_, !withObjects);
    const FlagScope ascii(gSaveThumbnailsAscii, false);
    Persistent& root =
        wholeProject ? static_cast<Persistent&>(*this) : static_cast<Persistent&>(*mainScene_);
    HandleStream stream(memory, &root);
    if (stream.openWrite(handle, offset) != kSuccess) return kFailure;
    try {
        Result result = root.writeBody(stream);
        if (result == kSuccess) result = stream.finish();
        handle = stream.outputHandle();
        return result;
    } catch (...) {
        handle = stream.outputHandle();
        throw;
    }
}

void OrvinSceneManager::dropUnused() {
    if (!mainScene_) return;
    if (mainScene_->undo() != nullptr) mainScene_->undo()->clear();
    mainScene_->purge(1);
}

Result OrvinSceneManager::writeFile(const std::filesystem::path& path) {
    failure_.clear();
    FileAccess file;
    if (file.open(path, FileAccess::Mode::kReplace) != kSuccess) {
        failure_ = file.failure();
        return kFailure;
    }
    errno = 0;
    FileStream stream(this, nullptr, file.file());
    const bool written = writeBody(stream) == kSuccess;
    if (stream.flush() != kSuccess || !written) {
        const int error = errno;
        const bool diskFailed = std::ferror(file.file()) != 0;
        failure_ = "can't write " + platform::textFromPath(path) + ": " +
                   (diskFailed ? std::generic_category().message(error)
                               : "the project holds a text that is too long for a file");
        return kFailure;
    }
    if (file.commit() != kSuccess) {
        failure_ = file.failure();
        return kFailure;
    }
    return kSuccess;
}

}  // namespace orvin
