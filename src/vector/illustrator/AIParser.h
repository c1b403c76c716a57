// AIParser: reads Adobe Illustrator art of versions 3 to 8 (PostScript with structured comments)
// and makes its paths into profiles of a scene: one per object, per layer, or for the whole file.
//
// It is no PostScript interpreter: it passes over the prolog, and from there on acts on the last
// word of each line. Paths, paints, colours, groups, compound paths and layers are read; text,
// gradients, patterns, images and transforms are not. Lines that make no sense are passed over;
// what the end of a cut file leaves open is finished.
//
// Layers that aren't visible are left out. Paths that are neither filled nor stroked are dropped,
// except inside clip groups and in files without layers, where they count as filled.
#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "vector/illustrator/AIColors.h"
#include "vector/illustrator/AILineReader.h"
#include "vector/illustrator/AINames.h"
#include "vector/illustrator/AIPathBuilder.h"
#include "vector/illustrator/AITokens.h"
#include "vector/illustrator/ProfileI.h"

namespace orvin {

/// One object of the art.
struct AIObjectRecord {
    ProfileI* profile = nullptr;  // in the scene, which owns it
    std::string name;             // for the object to be made: neither in the scene nor in the list
    bool noFill = true;           // no operator has set a fill colour since the object before
    AIColor fill = kFirstAIColor;  // in force all the same, as the object ended
    bool noStroke = true;
    AIColor stroke = kFirstAIColor;
};

struct AIOptions {
    bool loadByLayers = false;  // one object per layer
    std::optional<std::string> layerName =
        std::nullopt;            // only this layer, by layers; not with singleProfile
    bool singleProfile = false;  // everything is one object
    bool flattenGroups = false;  // the members of a group are objects
};

enum class AIParserError { kNone = 0, kNotOpened = 1, kNotIllustrator = 2 };

/// What a line did; told to trace().
enum class AICode : std::uint8_t {
    kDataBegin = 0,
    kLayerBegin = 1,
    kLayerEnd = 2,
    kPageEnd = 3,
    kCurve = 4,
    kLine = 5,
    kMove = 6,
    kCloseStroke = 7,
    kStroke = 8,
    kFill = 9,
    kCloseFill = 10,
    kCurveToV = 11,
    kCurveToY = 12,
    kCloseNoPaint = 13,
    kNoPaint = 14,
    kGroupBegin = 15,
    kGroupEnd = 16,
    kCompoundBegin = 17,
    kCompoundEnd = 18,
    kCropsBegin = 19,
    kCropsEnd = 20,
    kGrayFill = 21,
    kGrayStroke = 22,
    kCmykFill = 23,
    kCmykStroke = 24,
    kRgbFill = 25,
    kRgbStroke = 26,
    kUnknown = 27,
    // These take effect while a layer is skipped, too.
    kLayerName,
    kLayerState,
    kClipBegin,
    kClipEnd,
};

class AIParser {
  public:
    /// Told what each line did, and its text: for debugging.
    using Trace = std::function<void(std::string_view what, std::string_view line)>;

    /// Profiles are made in `target`, under the names "Input 1", "Input 2", ...
    explicit AIParser(SceneX& target) : scene_(target), names_(target) {}

    /// The file to read. Profiles remember it, and their layer.
    void setFileSpec(const std::filesystem::path& file);
    void setTrace(Trace trace) { trace_ = std::move(trace); }

    /// Reads the file; what was read before is forgotten (its profiles stay in the scene).
    bool parse(const AIOptions& options);
    /// The same from bytes in memory.
    bool parseText(std::string_view text, const AIOptions& options);

    /// Whether the last parse succeeded, and what was wrong.
    bool parseResult() const { return error_ == AIParserError::kNone; }
    AIParserError parserError() const { return error_; }

    /// The objects in file order. Their outlines may be empty: blank layers, paths too small.
    std::vector<AIObjectRecord>& objectList() { return objectList_; }
    /// All distinct fill colours that were met.
    const std::vector<AIColorRecord>& colorList() const { return colors_.list(); }

  private:
    enum class Kind { kFill, kStroke, kGroup, kCompound };
    enum class Paint { kNone, kStroke, kFill };

    void reset(const AIOptions& options);
    bool parseFile();
    AICode commentCode(std::string_view line);
    AICode operatorCode(std::string_view line);
    void act(AICode code);
    void traceCode(AICode code, std::string_view line) const;

    void beginLayer();
    void endLayer();
    void layerNamed(std::string_view line);
    void beginGroup();
    void endGroup(Kind kind);
    void endData();

    void drawTo(AICode code);
    void paint(Paint how);
    void endPath(bool keep);
    void setColor(AICode code);

    /// In a layer that isn't visible or isn't wanted.
    bool skips() const {
        return skipping_ || (options_.layerName && layerName_ != *options_.layerName);
    }
    bool profileOpen() const { return open_; }
    AIObjectRecord& openRecord() { return objectList_.back(); }
    InputProfile2& openOutline() { return *openRecord().profile->inputProfile(); }
    void newProfile();
    void finishProfile(bool keepFaces);
    void dropProfile();
    void finishObject(Kind kind, bool force);
    std::string objectName(Kind kind);

    SceneX& scene_;
    std::filesystem::path file_;
    bool storeLayerName_ = false;
    Trace trace_;
    AIOptions options_;
    AIParserError error_ = AIParserError::kNone;
    std::vector<AIObjectRecord> objectList_;

    AILineReader reader_;
    AITokens tokens_;
    AIColors colors_;
    AIPathBuilder path_;
    AINames names_;
    struct Counters {
        int input = 1;
        int object = 1;
        int group = 1;
    } next_;

    std::string layerName_;            // of the current layer
    bool open_ = false;                // the last record takes paths
    std::int64_t depth_ = 0;           // open groups and compound paths
    std::int64_t objectsInGroup_ = 0;  // paths kept in the outermost of them
    // A path was filled: in the group, in the layer, in the file.
    bool groupKeepsFill_ = false;
    bool layerKeepsFill_ = false;
    bool fileKeepsFill_ = false;
    bool sawLayerName_ = false;
    bool pathBeforeLayer_ = false;  // the last path began before any layer had a name
    bool inClipGroup_ = false;
    bool skipping_ = false;  // a layer that isn't visible
    bool inCrops_ = false;
};

/// The text of a name between parentheses: resolves octal bytes and escaped characters; double
/// quotes become single ones. Ends before a NUL.
std::string unescapeName(std::string_view text);

}  // namespace orvin
