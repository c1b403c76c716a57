#include "vector/illustrator/ProfileI.h"

#include <algorithm>
#include <cmath>
#include <numeric>
#include <vector>

#include "scene/SceneStream.h"

namespace orvin {

namespace {

constexpr double kSmallestArea = 0.001;

double enclosedArea(const Mesh2& mesh, std::span<const int> loop) {
    double twice = 0.0;
    for (std::size_t i = 0; i < loop.size(); ++i)
        twice += cross(mesh.vertex(loop[i]), mesh.vertex(loop[(i + 1) % loop.size()]));
    return std::abs(twice) / 2.0;
}

/// Every path has vertices, texture vertices and normals of its own, as many of each.
void copyPath(const Mesh2& from, const FaceView& path, Mesh2& to) {
    std::vector<int> corners(path.vertices.size());
    std::iota(corners.begin(), corners.end(), to.vertexCount());
    for (std::size_t i = 0; i < path.vertices.size(); ++i) {
        to.addVertex(from.vertex(path.vertices[i]));
        to.addTexVertex(from.texVertex(path.texture[i]));
        to.addNormal(from.normal(path.normals[i]));
    }
    to.addFace(path.kind, path.material, corners, corners, corners);
}

}  // namespace

ProfileI::ProfileI(SceneX& scene, const ProfileI& source, std::string_view name)
    : OutlineProfile(scene, source, name),
      keepFaces(source.keepFaces),
      fileSpec_(source.fileSpec_),
      layerName_(source.layerName_) {}

void ProfileI::setLayerName(std::string_view name) {
    layerName_ = name.substr(0, kNameCapacity - 1);
}

Result ProfileI::flatten(double tolerance, double hardAngle, Mesh2& shape) {
    Mesh2 all;
    const Result result = OutlineProfile::flatten(tolerance, hardAngle, all);
    if (result != kSuccess) return result;
    for (int f = 0; f < all.faceCount(); ++f) {
        const FaceView path = all.face(f);
        if (enclosedArea(all, path.vertices) >= kSmallestArea) copyPath(all, path, shape);
    }
    return shape.faceCount() > 0 ? kSuccess : kFailure;
}

Result ProfileI::writeBody(SceneStream& stream) {
    const bool failed = OutlineProfile::writeBody(stream) != kSuccess ||
                        stream.putText("filename", fileSpec_) != kSuccess ||
                        stream.putText("layer", layerName_) != kSuccess ||
                        stream.writeObject(outline()) != kSuccess;
    return failed ? kFailure : kSuccess;
}

struct ProfileI::Commands : CommandRegistry {
    static ProfileI& profile(Persistent& self) { return static_cast<ProfileI&>(self); }

    static Result readFile(SceneStream& stream, Persistent& self) {
        std::string path;
        if (stream.readText(path, kPathLimit + 1) != kSuccess) return kFailure;
        profile(self).setFileSpec(path);
        return kSuccess;
    }
    static Result readLayer(SceneStream& stream, Persistent& self) {
        std::string name;
        if (stream.readText(name) != kSuccess) return kFailure;
        profile(self).setLayerName(name);
        return kSuccess;
    }
    static Result readOutline(SceneStream& stream, Persistent& self) {
        std::string_view word;
        if (stream.nextToken(word) != kSuccess || word != "InputProfile2") return kFailure;
        profile(self).touch();
        stream.push(profile(self).outline());
        return kSuccess;
    }
    /// Curves are kept in the project; nothing is loaded from the file behind them.
    static Result refuse(SceneStream&, Persistent&) { return kFailure; }

    Commands() : CommandRegistry(16) {
        registerMemberCommands(*this);
        lookupOrInsert("filename", readFile);
        lookupOrInsert("layer", readLayer);
        lookupOrInsert("begin", readOutline);
        lookupOrInsert("load", refuse);
    }
};

const CommandRegistry& ProfileI::commandRegistry() const {
    static const Commands commands;
    return commands;
}

}  // namespace orvin
