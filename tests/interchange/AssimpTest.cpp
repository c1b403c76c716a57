// An independent reader of model files, assimp, must see in what is written here the same triangles
// as our own reader, and the objects that were written.
#include <assimp/postprocess.h>
#include <assimp/scene.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <assimp/Importer.hpp>
#include <cmath>
#include <tuple>
#include <vector>

#include "interchange/ModelFormats.h"
#include "render/MaterialX.h"
#include "tests/interchange/ModelFixture.h"

namespace orvin {
namespace {

using Triangle = std::array<Vec3, 3>;

bool before(Vec3 a, Vec3 b) {
    return std::tuple(a.x, a.y, a.z) < std::tuple(b.x, b.y, b.z);
}

/// In an order that doesn't depend on the file's, corners from the smallest one on; coordinates
/// rounded to what all formats hold.
std::vector<Triangle> inOrder(std::vector<Triangle> triangles) {
    for (Triangle& t : triangles) {
        for (Vec3& p : t)
            for (int axis = 0; axis < 3; ++axis)
                p[axis] = std::round(p[axis] * 1e4) / 1e4 + 0.0;
        std::rotate(t.begin(), std::min_element(t.begin(), t.end(), before), t.end());
    }
    std::sort(triangles.begin(), triangles.end(), [](const Triangle& a, const Triangle& b) {
        return std::lexicographical_compare(a.begin(), a.end(), b.begin(), b.end(), before);
    });
    return triangles;
}

void addFan(std::vector<Triangle>& triangles, const std::vector<Vec3>& corners) {
    for (std::size_t i = 2; i < corners.size(); ++i)
        triangles.push_back({corners[0], corners[i - 1], corners[i]});
}

std::vector<Triangle> trianglesOf(MeshObject& object) {
    std::uint32_t revision = 0;
    const Mesh3& mesh = *object.mesh(1, revision);
    const auto positions = object.worldPositions();
    const bool mirrored = object.world().determinant3() < 0.0;
    std::vector<Triangle> triangles;
    for (int i = 0; i < mesh.faceCount(); ++i) {
        std::vector<Vec3> corners;
        for (const int v : mesh.face(i).vertices)
            corners.push_back(positions[static_cast<std::size_t>(v)]);
        if (mirrored) std::reverse(corners.begin(), corners.end());
        addFan(triangles, corners);
    }
    return triangles;
}

void addNode(const aiScene& scene, const aiNode& node, const aiMatrix4x4& parent,
             std::vector<Triangle>& triangles) {
    const aiMatrix4x4 world = parent * node.mTransformation;
    for (unsigned m = 0; m < node.mNumMeshes; ++m) {
        const aiMesh& mesh = *scene.mMeshes[node.mMeshes[m]];
        for (unsigned f = 0; f < mesh.mNumFaces; ++f) {
            std::vector<Vec3> corners;
            for (unsigned c = 0; c < mesh.mFaces[f].mNumIndices; ++c) {
                const aiVector3D p = world * mesh.mVertices[mesh.mFaces[f].mIndices[c]];
                corners.push_back(
                    {static_cast<double>(p.x), static_cast<double>(p.y), static_cast<double>(p.z)});
            }
            addFan(triangles, corners);
        }
    }
    for (unsigned c = 0; c < node.mNumChildren; ++c)
        addNode(scene, *node.mChildren[c], world, triangles);
}

std::vector<Triangle> trianglesOf(const aiScene& scene) {
    std::vector<Triangle> triangles;
    addNode(scene, *scene.mRootNode, {}, triangles);
    return triangles;
}

struct WrittenCase {
    const char* extension;
    bool lwob;
    std::size_t groups;  // what two objects of two materials come back as
    bool hasColors;      // assimp shows none of DXF files, and OBJ files have none here
};

class AssimpReads : public ModelFiles, public testing::WithParamInterface<WrittenCase> {
  protected:
    /// A lid of triangles and sides of quads, textured, on two materials; stretched and turned.
    ObjectP& prism(std::string_view name, int sides, double mirror) {
        Mesh3 mesh;
        for (int i = 0; i < sides; ++i)
            for (const double y : {-1.0, 1.0}) {
                const double a = 2.0 * kPi * i / sides;
                mesh.addVertex({std::cos(a), y, std::sin(a)});
                mesh.addTexVertex({1.0 * i / sides, 0.5 + 0.5 * y, 0.0});
            }
        for (int i = 0; i < sides; ++i) {
            const int next = (i + 1) % sides;
            const std::array<int, 4> quad{2 * i, 2 * i + 1, 2 * next + 1, 2 * next};
            mesh.addFace(ElementKind::kPolygon, 0, quad, quad);
            if (i > 0 && next > 0)
                mesh.addFace(ElementKind::kPolygon, 3,
                             std::array<int, 3>{1, 2 * next + 1, 2 * i + 1});
        }
        auto& object = scene_.make<ObjectP>(name);
        object.setMesh(std::move(mesh));
        object.transform().setRotate({20, 30, 40});
        object.transform().setScale({1, 2 * mirror, 3});
        object.transform().setTranslate({5, -6, 7});
        return object;
    }
};

TEST_P(AssimpReads, WhatIsWritten) {
    auto& red = scene_.make<MaterialX>("Red paint");
    MaterialX::Look look;
    look.diffuse = {1.0F, 0.0F, 0.0F, 1.0F};
    red.setLook(look);
    auto& plain = prism("plain", 7, 1.0);
    plain.setMaterial(3, "Red paint");
    auto& mirrored = prism("mirrored", 12, -1.0);
    MeshObject* const objects[] = {&plain, &mirrored};
    std::vector<Triangle> expected = trianglesOf(plain);
    for (const Triangle& t : trianglesOf(mirrored))
        expected.push_back(t);
    expected = inOrder(std::move(expected));

    const fs::path path = folder_ / (std::string("model") + GetParam().extension);
    ExportOptions options;
    options.lwob = GetParam().lwob;
    ASSERT_EQ(exportModel(path, objects, options), kSuccess);
    EXPECT_EQ(contents(path).find("LWOB") != std::string::npos, GetParam().lwob);

    SceneX second;
    std::vector<ObjectP*> made;
    ASSERT_EQ(importModel(second, path, &made), kSuccess);
    ASSERT_EQ(made.size(), GetParam().groups);
    std::vector<Triangle> ours;
    for (ObjectP* const object : made)
        for (const Triangle& t : trianglesOf(*object))
            ours.push_back(t);
    EXPECT_EQ(inOrder(std::move(ours)), expected);

    // Version 5.2 of assimp can't place what has no layers: no such file comes in there.
    if (GetParam().lwob) return;
    Assimp::Importer importer;
    const aiScene* const theirs = importer.ReadFile(path.string(), aiProcess_ValidateDataStructure);
    ASSERT_NE(theirs, nullptr) << importer.GetErrorString();
    EXPECT_EQ(inOrder(trianglesOf(*theirs)), expected);
    bool hasRed = false;
    for (unsigned i = 0; i < theirs->mNumMaterials; ++i) {
        aiColor3D color;
        if (theirs->mMaterials[i]->Get(AI_MATKEY_COLOR_DIFFUSE, color) == aiReturn_SUCCESS)
            hasRed = hasRed || color == aiColor3D(1.0F, 0.0F, 0.0F);
    }
    EXPECT_EQ(hasRed, GetParam().hasColors);
}

INSTANTIATE_TEST_SUITE_P(
    Formats, AssimpReads,
    testing::Values(WrittenCase{".obj", false, 4, false}, WrittenCase{".dxf", false, 4, false},
                    WrittenCase{".lwo", false, 4, true}, WrittenCase{".lwo", true, 1, false}),
    [](const auto& tested) {
        return (tested.param.lwob ? "older_" : "") + std::string(tested.param.extension + 1);
    });

}  // namespace
}  // namespace orvin
