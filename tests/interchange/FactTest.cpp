// FACT files: hand-written ones in the layout that docs/models.md tells, and round trips.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "interchange/ModelFormats.h"
#include "interchange/fact/FactReader.h"
#include "render/MaterialX.h"
#include "tests/interchange/ChunkText.h"
#include "tests/interchange/ModelFixture.h"

namespace orvin {
namespace {

ImportedGroups parsed(const std::string& file) {
    ImportedGroups model;
    ModelInput input(file);
    EXPECT_EQ(parseFact(input, model), kSuccess);
    return model;
}

/// An element of three corners.
std::string element(int kind, int flags, int slot, std::initializer_list<int> indices) {
    std::string bytes{static_cast<char>(kind), static_cast<char>(flags)};
    bytes += u16(slot) + u32(3);
    for (const int i : indices)
        bytes += u32(static_cast<std::uint32_t>(i));
    return bytes;
}

const std::string kPoints =
    chunk("CORD", f32(0) + f32(0) + f32(5) + f32(1) + f32(0) + f32(5) + f32(0) + f32(1) + f32(-5));
const std::string kElement = chunk("ELEM", element(0, 0, 0, {0, 1, 2}));

TEST(FactReader, GroupsAndTheirNames) {
    const ImportedGroups model = parsed(form(
        "3DFL", form("GRUP", form("GHDR", chunk("GINF", u32(9)) + chunk("GSTR", text("Wing"))) +
                                 kPoints + chunk("JUNK", "odd") + kElement) +
                    // Elements before what they index, 64-bit points, and a group within.
                    form("GRUP", kElement +
                                     form("GRUP", chunk("DCOR", f64(1e9 + 0.5) + f64(2) + f64(-3)) +
                                                      chunk("ELEM", element(2, 0, 3, {0, 0, 0}))) +
                                     kPoints) +
                    form("XXXX", form("GRUP", kPoints + kElement))));
    ASSERT_EQ(model.groups.size(), 3U);
    EXPECT_EQ(model.groups[0].name, "Wing");
    EXPECT_EQ(model.groups[1].name, "FACT group3") << "inner groups end first";
    EXPECT_EQ(model.groups[2].name, "FACT group2");
    const Mesh3& wing = model.groups[0].mesh;
    EXPECT_EQ(wing.vertex(2), (Vec3{0, 1, 5}));
    EXPECT_EQ(wing.vertex(0), (Vec3{0, 0, -5}));
    const Mesh3& inner = model.groups[1].mesh;
    EXPECT_EQ(inner.vertex(0), (Vec3{1e9 + 0.5, 2, 3}));
    EXPECT_EQ(inner.face(0).kind, ElementKind::kPointList);
    EXPECT_EQ(inner.face(0).material, 3);
    EXPECT_EQ(model.groups[2].mesh.faceCount(), 1);

    const ImportedGroups bare = parsed(form("3DFL", kPoints + kElement));
    ASSERT_EQ(bare.groups.size(), 1U);
    EXPECT_EQ(bare.groups[0].name, "FACT default");
    EXPECT_EQ(bare.groups[0].mesh.faceCount(), 1);
    EXPECT_EQ(parsed(form("3DFL", "")).groups.at(0).name, "FACT default");
}

TEST(FactReader, DamagedFiles) {
    const std::string normals = chunk("NVRT", f32(0) + f32(0) + f32(1));
    const std::string good = form("3DFL", form("GRUP", kPoints + normals + kElement));
    ImportedGroups model;
    for (const std::string& file : {std::string(), std::string("FORM"), form("LWO2", kPoints)}) {
        ModelInput input(file);
        EXPECT_EQ(parseFact(input, model), kFailure);
    }
    for (std::size_t size = 12; size < good.size(); ++size)
        parsed(good.substr(0, size));
    std::string deep = kPoints + kElement;
    for (int i = 0; i < 1000; ++i)
        deep = form("GRUP", deep);
    EXPECT_EQ(parsed(form("3DFL", deep)).groups.size(), 16U);

    struct {
        const char* name;
        std::string elements;
        std::size_t faces;
        std::size_t normals;  // of the first face
    } const cases[] = {
        {"normals", element(0, 2, 0, {0, 1, 2, 0, 0, 0}), 1, 3},
        {"normal out of range", element(0, 2, 0, {0, 1, 2, 0, 1, 0}), 1, 0},
        {"vertex out of range", element(0, 0, 0, {0, 1, 3}) + element(0, 0, 0, {0, 1, -1}), 0, 0},
        {"cut short", element(0, 0, 0, {0, 1}), 0, 0},
        {"lists missing", element(0, 3, 0, {0, 1, 2}), 0, 0},
        {"count that lies", std::string(4, '\0') + u32(0xFFFFFFFF) + u32(0), 0, 0},
        {"kind and slot unknown", element(99, 0, 400, {0, 1, 2}), 1, 0},
    };
    for (const auto& c : cases) {
        const ImportedGroups read =
            parsed(form("3DFL", form("GRUP", kPoints + normals + chunk("ELEM", c.elements))));
        ASSERT_EQ(read.faceCount(), c.faces) << c.name;
        if (c.faces == 0) continue;
        EXPECT_EQ(read.groups[0].mesh.face(0).normals.size(), c.normals) << c.name;
    }
}

TEST_F(ModelFiles, FactKeepsAllOfAMesh) {
    auto& object = triangle("part", {0, 3});
    object.setMaterial(3, "gold");
    auto& gold = scene_.make<MaterialX>("gold");
    MaterialX::Look look;
    look.diffuse = {1.0F, 0.75F, 0.25F, 1.0F};
    look.transparency = 0.5;
    gold.setLook(look);
    auto& far = triangle("far", {0});
    far.transform().setTranslate({1e6, 0, 0});
    far.transform().setScale({0.001, 0.002, -0.001});
    MeshObject* const objects[] = {&object, &far};
    const fs::path path = folder_ / "all.fac";
    ASSERT_EQ(exportModel(path, objects), kSuccess);
    const std::string bytes = contents(path);
    EXPECT_NE(bytes.find("CORD"), std::string::npos);
    EXPECT_NE(bytes.find("DCOR"), std::string::npos) << "small and far: floats are too coarse";

    SceneX second;
    std::vector<ObjectP*> made;
    ASSERT_EQ(importModel(second, path, &made), kSuccess);
    ASSERT_EQ(made.size(), 3U);
    EXPECT_EQ(made[0]->name(), "part-Section 1");
    EXPECT_EQ(made[1]->name(), "part-Section 4");
    EXPECT_EQ(made[1]->fileType(), ModelFileType::kFact);
    const auto& back = dynamic_cast<MaterialX&>(*made[1]->material(0));
    EXPECT_EQ(back.name(), "gold");
    EXPECT_EQ(back.diffuse(), look.diffuse);
    EXPECT_EQ(back.transparency(), 0.5);
    std::uint32_t revision = 0;
    const Mesh3& first = *made[0]->mesh(1, revision);
    EXPECT_EQ(first.face(0).texture.size(), 3U);
    EXPECT_EQ(first.texVertex(first.face(0).texture[0]), (Vec3{0.5, 0.25, 0}));
    EXPECT_EQ(first.normal(first.face(0).normals[0]), (Vec3{0, 0, 1}));
    const Mesh3& small = *made[2]->mesh(1, revision);
    const Vec3 side =
        small.vertex(small.face(0).vertices[1]) - small.vertex(small.face(0).vertices[0]);
    EXPECT_NEAR(length(side), 0.00223606797749979, 1e-9);
    EXPECT_EQ(small.facePlane(0).normal, (Vec3{0, 0, -1})) << "mirrored, and turned over";
    EXPECT_EQ(small.normal(small.face(0).normals[0]), (Vec3{0, 0, -1}));
}

}  // namespace
}  // namespace orvin
