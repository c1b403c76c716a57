// Any bytes as the inside of a block of curves. What was read is flattened, put in order like an
// edge, and written; the written text must read again and write the same.
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "fuzz/Fuzzing.h"
#include "geometry/outline/CompositeCurve2.h"
#include "scene/MemoryStream.h"
#include "toolkit/Questions.h"

namespace {

using namespace orvin;
using fuzzing::require;
using fuzzing::Silent;

std::string written(InputProfile2& profile) {
    MemoryStream stream(nullptr);
    require(stream.writeObject(profile) == kSuccess);
    return stream.takeText();
}

InputProfile2 readBack(std::string_view text) {
    InputProfile2 profile;
    MemoryStream stream(nullptr, text.substr(text.find('\n')));
    require(loadBlock(stream, profile) == kSuccess);
    return profile;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static Silent silent;
    setQuestions(&silent);
    InputProfile2 profile;
    MemoryStream stream(nullptr, std::string_view(reinterpret_cast<const char*>(data), size));
    loadBlock(stream, profile);

    InputProfile2 first = readBack(written(profile));  // six decimals from here on
    const std::string text = written(first);
    InputProfile2 second = readBack(text);
    require(written(second) == text);

    Mesh2 mesh;
    profile.emitAll(0.5, 20.0, mesh);
    require(mesh.vertexCount() == mesh.normalCount());
    for (CompositeCurve2& path : profile.paths) {
        path.evaluate(0.3, nullptr);
        path.linkCurves();
        path.cleanup();
        std::vector<double> knots;
        path.appendKnots(knots);
    }
    profile.orientEdgePath();
    mesh.clear();
    profile.emitAll(0.5, -1.0, mesh);
    setQuestions(nullptr);
    return 0;
}
