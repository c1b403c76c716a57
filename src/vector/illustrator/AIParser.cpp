// The course of a file: lines, layers, groups, and which paths make an object.
#include "vector/illustrator/AIParser.h"

#include <utility>

#include "scene/SceneX.h"
#include "toolkit/platform/Platform.h"

namespace orvin {

namespace {

constexpr std::string_view kSignature = "%!PS-Adobe";
constexpr std::string_view kEndOfSetup = "%%EndSetup";

/// Empty where none opens; to the end of the line, which a long name fills, where none closes.
std::string_view betweenParentheses(std::string_view line) {
    const std::size_t start = line.find('(');
    if (start == std::string_view::npos) return {};
    line.remove_prefix(start + 1);
    return line.substr(0, line.rfind(')'));
}

}  // namespace

void AIParser::setFileSpec(const std::filesystem::path& file) {
    file_ = file;
    storeLayerName_ = true;
}

bool AIParser::parse(const AIOptions& options) {
    reset(options);
    if (reader_.openFile(file_) != kSuccess)
        error_ = AIParserError::kNotOpened;
    else if (!parseFile())
        error_ = AIParserError::kNotIllustrator;
    reader_.close();
    return parseResult();
}

bool AIParser::parseText(std::string_view text, const AIOptions& options) {
    reset(options);
    reader_.openText(text);
    if (!parseFile()) error_ = AIParserError::kNotIllustrator;
    reader_.close();
    return parseResult();
}

void AIParser::reset(const AIOptions& options) {
    options_ = options;
    if (options_.singleProfile) options_.layerName.reset();
    if (options_.layerName) options_.loadByLayers = true;
    error_ = AIParserError::kNone;
    objectList_.clear();
    colors_.clearColors();
    path_.drop();
    names_ = AINames(scene_);
    next_ = {names_.highestNumber("Input ") + 1, names_.highestNumber("Object ") + 1,
             names_.highestNumber("Group ") + 1};
    layerName_.clear();
    depth_ = objectsInGroup_ = 0;
    open_ = groupKeepsFill_ = layerKeepsFill_ = fileKeepsFill_ = false;
    sawLayerName_ = pathBeforeLayer_ = inClipGroup_ = skipping_ = inCrops_ = false;
}

bool AIParser::parseFile() {
    if (!reader_.startsWith(kSignature) || !reader_.findInBuffer(kEndOfSetup)) return false;
    std::string_view line;
    while (reader_.readLine(line)) {
        AICode code = commentCode(line);
        if (code == AICode::kUnknown) code = operatorCode(line);
        traceCode(code, line);
        if (code == AICode::kPageEnd) break;
    }
    endData();
    return true;
}

// ---- layers and groups

void AIParser::beginLayer() {
    if (options_.loadByLayers) finishProfile(depth_ > 0 || layerKeepsFill_);
    layerKeepsFill_ = false;
}

void AIParser::endLayer() {
    if (options_.loadByLayers) {
        finishObject(layerKeepsFill_ ? Kind::kFill : Kind::kStroke, true);
        skipping_ = false;
        return;
    }
    skipping_ = false;
    while (depth_ > 0)
        endGroup(Kind::kGroup);
}

void AIParser::layerNamed(std::string_view line) {
    sawLayerName_ = true;
    if (!options_.loadByLayers) return;
    layerName_ = unescapeName(betweenParentheses(line));
    if (skips()) return;
    if (!profileOpen() && !options_.singleProfile) newProfile();
    if (profileOpen() && storeLayerName_) openRecord().profile->setLayerName(layerName_);
}

void AIParser::beginGroup() {
    if (++depth_ > 1) return;
    objectsInGroup_ = 0;
    groupKeepsFill_ = false;
    if (!options_.singleProfile) newProfile();
}

void AIParser::endGroup(Kind kind) {
    if (depth_ == 0) return;
    --depth_;
    finishObject(kind, false);
}

void AIParser::endData() {
    skipping_ = false;
    if (path_.isOpen()) endPath(false);
    if (options_.loadByLayers)
        endLayer();
    else
        while (depth_ > 0)
            endGroup(Kind::kGroup);
    finishProfile(fileKeepsFill_);
}

// ---- objects

void AIParser::newProfile() {
    if (profileOpen() && !options_.loadByLayers && openOutline().paths.empty())
        dropProfile();  // of a path that isn't complete yet
    else if (profileOpen())
        finishProfile((depth_ == 0 && !options_.singleProfile && !options_.loadByLayers) ||
                      (depth_ > 0 && groupKeepsFill_) ||
                      (options_.loadByLayers && layerKeepsFill_) ||
                      (options_.singleProfile && fileKeepsFill_));
    if (trace_) trace_("New profile", {});
    const std::string name = names_.unique("Input " + std::to_string(next_.input++));
    ProfileI& profile = scene_.make<ProfileI>(name);
    profile.setFileSpec(platform::textFromPath(file_));
    if (options_.loadByLayers && storeLayerName_) profile.setLayerName(layerName_);
    objectList_.push_back({&profile, {}});
    open_ = true;
}

void AIParser::finishProfile(bool keepFaces) {
    if (profileOpen()) {
        AIObjectRecord& record = openRecord();
        if (record.name.empty()) record.name = objectName(keepFaces ? Kind::kFill : Kind::kStroke);
        record.noFill = !colors_.fill().set;
        record.fill = colors_.fill().color;
        record.noStroke = !colors_.stroke().set;
        record.stroke = colors_.stroke().color;
        record.profile->keepFaces = keepFaces;
        open_ = false;
        if (trace_) trace_("Finish profile", {});
    }
    colors_.clearUse();
}

void AIParser::dropProfile() {
    scene_.destroy(*openRecord().profile);
    objectList_.pop_back();
    open_ = false;
}

void AIParser::finishObject(Kind kind, bool force) {
    if (depth_ != 0 || skips() || (options_.loadByLayers && !force)) return;
    if (!profileOpen()) {
        finishProfile(false);
        return;
    }
    const bool isGroup = kind == Kind::kGroup || kind == Kind::kCompound;
    if (isGroup && objectsInGroup_ == 0) {
        // Under a single profile that is all the file has: what was read before stays.
        if (options_.singleProfile) return;
        dropProfile();
        colors_.clearUse();
        return;
    }
    openRecord().name = objectName(kind);
    if (options_.singleProfile) return;
    finishProfile(kind == Kind::kGroup ? groupKeepsFill_ : kind != Kind::kStroke);
}

std::string AIParser::objectName(Kind kind) {
    if (options_.loadByLayers && !layerName_.empty()) return names_.numberedIfTaken(layerName_);
    if (kind == Kind::kGroup) return names_.unique("Group " + std::to_string(next_.group++));
    return names_.unique("Object " + std::to_string(next_.object++));
}

// ---- paths

void AIParser::endPath(bool keep) {
    const bool wasOpen = path_.isOpen();
    CompositeCurve2 path = path_.take();
    if (!wasOpen) return;
    if (keep && !path.curves.empty()) {
        if (!profileOpen()) newProfile();
        openOutline().paths.push_back(std::move(path));
        openRecord().profile->touch();
        if (depth_ > 0) ++objectsInGroup_;
    } else if (!keep && profileOpen() && !options_.loadByLayers && !options_.singleProfile &&
               depth_ == 0) {
        dropProfile();
    }
}

void AIParser::paint(Paint how) {
    endPath(how != Paint::kNone);
    finishObject(how == Paint::kFill ? Kind::kFill : Kind::kStroke, false);
    if (how == Paint::kFill) groupKeepsFill_ = layerKeepsFill_ = fileKeepsFill_ = true;
}

}  // namespace orvin
