// Any bytes as the inside of an imported object's geometry block. What was read is written, and the
// written text must read and write the same faces again.
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "fuzz/Fuzzing.h"
#include "geometry/GeometryClasses.h"
#include "geometry/GeometryCmd.h"
#include "geometry/ObjectP.h"
#include "scene/MemoryStream.h"
#include "scene/SceneX.h"
#include "toolkit/Questions.h"

namespace {

using namespace orvin;
using fuzzing::require;
using fuzzing::Silent;

std::string written(Mesh3& mesh) {
    GeometryCmd block(mesh);
    MemoryStream stream(nullptr);
    require(stream.writeObject(block) == kSuccess);
    return stream.takeText();
}

void read(Mesh3& mesh, std::string_view text) {
    GeometryCmd block(mesh);
    MemoryStream stream(nullptr, text.substr(text.find('\n')));
    require(loadBlock(stream, block) == kSuccess);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static Silent silent;
    setQuestions(&silent);
    registerGeometryClasses();
    SceneX scene;
    auto& object = scene.make<ObjectP>("o");
    std::string text = "begin GeometryCmd ";
    text.append(reinterpret_cast<const char*>(data), size);
    MemoryStream stream(nullptr, text);
    loadBlock(stream, object);
    std::uint32_t revision = 0;
    Mesh3 mesh = *object.mesh(1, revision);
    require(mesh.cornerCount() <= size);
    require(object.worldNormals().size() == mesh.normals().size());
    require(object.tangents().size() == mesh.texVertices().size());

    Mesh3 second;
    read(second, written(mesh));
    require(second.faceCount() == mesh.faceCount() && second.cornerCount() == mesh.cornerCount());
    // Texture vertices turn with each reading, but by then all is in the order of first use.
    Mesh3 third;
    read(third, written(second));
    for (int i = 0; i < mesh.faceCount(); ++i) {
        const FaceView a = second.face(i);
        const FaceView b = third.face(i);
        require(a.kind == b.kind && a.material == b.material);
        require(a.texture.size() == b.texture.size() && a.normals.size() == b.normals.size());
        for (std::size_t c = 0; c < a.vertices.size(); ++c)
            require(a.vertices[c] == b.vertices[c]);
    }
    setQuestions(nullptr);
    return 0;
}
