#include "vector/edges/CustomEdges.h"

#include <algorithm>
#include <cstdio>
#include <string>
#include <system_error>
#include <vector>

#include "geometry/MeshObject.h"
#include "toolkit/platform/Platform.h"
#include "vector/illustrator/AIParser.h"
#include "vector/illustrator/ProfileI.h"

namespace orvin {

namespace {

constexpr const char* kFolder = "Custom Edges";
constexpr const char* kSceneName = "UserEdgeStyles";
constexpr double kFlatness = 0.5;  // as fine as solids are rendered

std::vector<std::filesystem::path> filesIn(const std::filesystem::path& folder) {
    std::vector<std::filesystem::path> files;
    std::error_code error;
    for (std::filesystem::directory_iterator entry(folder, error), end; !error && entry != end;
         entry.increment(error)) {
        std::error_code unreadable;
        if (entry->is_regular_file(unreadable)) files.push_back(entry->path());
    }
    std::sort(files.begin(), files.end());
    return files;
}

}  // namespace

bool makesSolids(ProfileI& edge) {
    std::uint32_t stamp = 0;
    const Mesh2* const shape = edge.getShape(kFlatness, defaultHardShadingAngle(), stamp);
    return shape != nullptr &&
           static_cast<std::size_t>(shape->faceCount()) == edge.inputProfile()->paths.size();
}

std::filesystem::path customEdgesFolder() {
    return platform::moduleFolder() / kFolder;
}

CustomEdges::CustomEdges() : scene_(std::make_unique<SceneX>(kSceneName)) {}

void CustomEdges::reload(const std::filesystem::path& folder) {
    scene_ = std::make_unique<SceneX>(kSceneName);
    for (const std::filesystem::path& file : filesIn(folder))
        read(file);
}

void CustomEdges::read(const std::filesystem::path& file) {
    AIParser parser(*scene_);
    parser.setFileSpec(file);
    AIOptions options;
    options.loadByLayers = true;
    if (parser.parse(options)) {
        for (const AIObjectRecord& record : parser.objectList()) {
            record.profile->setName(scene_->uniqueName(record.name));
            record.profile->inputProfile()->orientEdgePath();
            record.profile->touch();
        }
        return;
    }
    for (const AIObjectRecord& record : parser.objectList())
        scene_->destroy(*record.profile);
    std::fprintf(stderr, "Custom edges: %s is left out: %s.\n",
                 platform::textFromPath(file).c_str(),
                 parser.parserError() == AIParserError::kNotIllustrator
                     ? "it isn't Illustrator art of a version that can be read"
                     : "it can't be read");
}

int CustomEdges::count() const {
    return static_cast<int>(scene_->count(MemberKind::kProfile));
}

ProfileI* CustomEdges::edge(int index) const {
    if (index < 0 || index >= count()) return nullptr;
    return static_cast<ProfileI*>(
        scene_->members(MemberKind::kProfile)[static_cast<std::size_t>(index)]);
}

ProfileI* CustomEdges::find(std::string_view name) const {
    return scene_->memberAs<ProfileI>(MemberKind::kProfile, name);
}

}  // namespace orvin
