// Any bytes as Illustrator art, in each of the ways to divide it into objects: every object has a
// profile and a name of its own, no point comes from nowhere, and reading again gives the same.
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <set>
#include <string>

#include "fuzz/ProjectFuzzing.h"
#include "scene/MemoryStream.h"
#include "scene/SceneX.h"
#include "vector/illustrator/AIParser.h"

namespace {

using namespace orvin;
using fuzzing::require;

constexpr std::string_view kHead = "%!PS-Adobe-3.0\n%%EndSetup\n";
constexpr std::size_t kLongestName = 255;

AIOptions options(std::size_t way) {
    AIOptions result;
    result.loadByLayers = way % 6 == 1 || way % 6 == 5;
    if (way % 6 == 2) result.layerName = "A";
    result.singleProfile = way % 6 == 3 || way % 6 == 5;
    result.flattenGroups = way % 6 == 4;
    return result;
}

/// What was read, as text; checked on the way.
std::string read(const std::string& art, std::size_t way) {
    SceneX scene;
    AIParser parser(scene);
    require(parser.parseText(art, options(way)));
    require(scene.count(MemberKind::kProfile) == parser.objectList().size());
    MemoryStream out(nullptr);
    std::set<std::string> names;
    std::size_t points = 0;
    for (const AIObjectRecord& record : parser.objectList()) {
        require(!record.name.empty() && record.name.size() <= kLongestName);
        require(names.insert(record.name).second && scene.memberByName(record.name) == nullptr);
        for (const CompositeCurve2& path : record.profile->inputProfile()->paths)
            for (const Curve2& curve : path.curves) {
                points += curve.points().size();
                for (const Vec2 p : curve.points())
                    require(std::isfinite(p.x) && std::isfinite(p.y));
            }
        for (const float channel : record.fill)
            require(std::isfinite(channel));
        std::uint32_t stamp = 0;
        const Mesh2* const shape = record.profile->getShape(1.0, 20.0, stamp);
        require(shape == nullptr || shape->faceCount() > 0);
        require(out.writeObject(*record.profile) == kSuccess);
        require(out.putName("object", record.name) == kSuccess);
    }
    // A point takes two numbers; each curve repeats one.
    require(points <= art.size());
    return out.text();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    fuzzing::prepareForProjects();
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    {
        SceneX scene;
        AIParser parser(scene);
        parser.parseText(bytes, options(size));
    }
    const std::string art = std::string(kHead).append(bytes);
    require(read(art, size) == read(art, size));
    return 0;
}
