// From Illustrator art to extruded objects: our own emblem, and small drawings.
#include "setup/ArtObjects.h"

#include <gtest/gtest.h>

#include <cmath>
#include <set>
#include <string>

#include "render/CameraX.h"
#include "render/MaterialX.h"
#include "render/SoftwareRenderer.h"
#include "scene/FrameClock.h"
#include "setup/DefaultScene.h"
#include "setup/StartUp.h"
#include "tests/support/Golden.h"

namespace orvin {
namespace {

constexpr const char* kEmblem = ORVIN_SOURCE_DIR "/examples/art/orvinex.ai";
constexpr std::string_view kHead = "%!PS-Adobe-3.0\n%%EndSetup\n";

class ArtObjects : public testing::Test {
  protected:
    ArtObjects() {
        registerMemberClasses();
        scene = buildDefaultScene("art", true);
        style = scene->memberAs<ObjectXStyle>(MemberKind::kStyle, kDefaultStyle);
    }

    std::vector<ObjectX*> make(const std::string& art, ArtColors colors = ArtColors::kOfArt) {
        AIParser parser(*scene);
        EXPECT_TRUE(parser.parseText(std::string(kHead) + art, {}));
        return makeArtObjects(parser, *style, colors);
    }
    static std::string materialOf(const ObjectX& object) {
        return std::string(object.style()->materialName(0));
    }
    Rgba diffuse(std::string_view name) const {
        auto* const material = scene->memberAs<MaterialX>(MemberKind::kMaterial, name);
        return material != nullptr ? material->diffuse() : Rgba{};
    }

    std::unique_ptr<SceneX> scene;
    ObjectXStyle* style = nullptr;
};

std::string square(int x, const char* paint) {
    const std::string l = std::to_string(x), r = std::to_string(x + 50);
    return l + " 0 m\n" + r + " 0 L\n" + r + " 50 L\n" + l + " 50 L\n" + l + " 0 L\n" + paint +
           "\n";
}

/// Of the polygons that look along positive z from z = 0.
double frontArea(const Mesh3& mesh) {
    double area = 0.0;
    for (int f = 0; f < mesh.faceCount(); ++f) {
        const auto ids = mesh.face(f).vertices;
        double twice = 0.0;
        for (std::size_t i = 0; i < ids.size(); ++i) {
            const Vec3 a = mesh.vertex(ids[i]), b = mesh.vertex(ids[(i + 1) % ids.size()]);
            if (a.z != 0.0) twice = std::nan("");
            twice += a.x * b.y - a.y * b.x;
        }
        if (twice > 0.0) area += twice / 2.0;
    }
    return area;
}

TEST_F(ArtObjects, TheEmblemStandsOut) {
    AIParser parser(*scene);
    parser.setFileSpec(kEmblem);
    ASSERT_TRUE(parser.parse({}));
    const auto objects = makeArtObjects(parser, *style, ArtColors::kOfArt);
    const char* const names[] = {"Object 1", "Object 2", "Group 1", "Group 2", "Group 3",
                                 "Group 4",  "Group 5",  "Group 6", "Object 3"};
    ASSERT_EQ(objects.size(), std::size(names));
    std::set<std::string> materials;
    for (std::size_t i = 0; i < objects.size(); ++i) {
        EXPECT_EQ(objects[i]->name(), names[i]);
        std::uint32_t revision = 0;
        const Mesh3* const mesh = objects[i]->mesh(1, revision);
        ASSERT_NE(mesh, nullptr) << names[i];
        EXPECT_GT(mesh->faceCount(), 0) << names[i];
        // The diamond is only stroked: a ribbon without faces.
        const bool ribbon = i == 8;
        EXPECT_EQ(
            objects[i]->style()->parts(),
            ribbon ? ObjectXStyle::kPerimEdge | ObjectXStyle::kHoleEdge : ObjectXStyle::kAllParts);
        EXPECT_EQ(frontArea(*mesh) > 0.0, !ribbon) << names[i];
        materials.insert(materialOf(*objects[i]));
    }
    // Gold, silver, red, three blues, and the lighter silver of the word; gold serves three times.
    EXPECT_EQ(materials.size(), 7U);
    EXPECT_EQ(materialOf(*objects[7]), materialOf(*objects[0]));
    EXPECT_EQ(materialOf(*objects[8]), materialOf(*objects[0]));
    const Rgba gold = diffuse(materialOf(*objects[0]));
    EXPECT_NEAR(gold[0], 0.94F, 1e-6F);
    EXPECT_NEAR(gold[1], 0.66F, 1e-6F);
    EXPECT_NEAR(gold[2], 0.12F, 1e-6F);
    // The ring lies between circles of 120 and 104.
    std::uint32_t revision = 0;
    EXPECT_NEAR(frontArea(*objects[0]->mesh(1, revision)), kPi * (120.0 * 120.0 - 104.0 * 104.0),
                30.0);
}

TEST_F(ArtObjects, TheEmblemLooksAsItDid) {
    AIParser parser(*scene);
    parser.setFileSpec(kEmblem);
    ASSERT_TRUE(parser.parse({}));
    ASSERT_FALSE(makeArtObjects(parser, *style, ArtColors::kOfArt).empty());
    auto* const camera = scene->memberAs<CameraX>(MemberKind::kCamera, kDefaultCamera);
    camera->setTarget({320.0, 217.0, -15.0});
    camera->setDistance(1040.0);
    camera->setTumble(-26.0, 14.0);
    RenderParams params;
    params.width = 240;
    params.height = 135;
    params.antiAliasSize = 3;
    const auto image = renderSoftware(*scene, params);
    ASSERT_TRUE(image);
    std::vector<std::uint8_t> bytes(image->rowBytes() * 135);
    for (int y = 0; y < 135; ++y) {
        const auto row = static_cast<std::size_t>(y) * image->rowBytes();
        ASSERT_EQ(image->readRow(y, std::span(bytes).subspan(row, image->rowBytes())), kSuccess);
    }
    EXPECT_TRUE(test::matchesGolden("emblem", 240, 135, bytes));
}

TEST_F(ArtObjects, ColorsBecomeSharedMaterials) {
    const std::string art = square(0, "f") + "1 0 0 Xa\n" + square(100, "f") + square(200, "f") +
                            "0 0 1 XA\n" + square(300, "s") + "0.5 g\n" + square(400, "b");
    const auto objects = make(art);
    ASSERT_EQ(objects.size(), 5U);
    // No colour was named for the first: it has the style's.
    EXPECT_EQ(materialOf(*objects[0]), kDefaultMaterial);
    EXPECT_EQ(diffuse(materialOf(*objects[1])), (Rgba{1.0F, 0.0F, 0.0F, 1.0F}));
    EXPECT_EQ(materialOf(*objects[2]), materialOf(*objects[1]));
    EXPECT_EQ(materialOf(*objects[1]), "AIColor 1");
    EXPECT_EQ(diffuse(materialOf(*objects[3])), (Rgba{0.0F, 0.0F, 1.0F, 1.0F}));
    EXPECT_EQ(diffuse(materialOf(*objects[4])), (Rgba{0.5F, 0.5F, 0.5F, 1.0F}));
    const std::size_t materials = scene->count(MemberKind::kMaterial);

    // The same drawing again: new objects, the same materials. One that was changed stays as it is.
    scene->memberAs<MaterialX>(MemberKind::kMaterial, "AIColor 1")
        ->setDiffuse({0.0F, 1.0F, 0.0F, 1.0F});
    const auto again = make(art);
    EXPECT_EQ(scene->count(MemberKind::kMaterial), materials + 1);
    EXPECT_EQ(diffuse(materialOf(*again[1])), (Rgba{1.0F, 0.0F, 0.0F, 1.0F}));
    EXPECT_EQ(diffuse("AIColor 1"), (Rgba{0.0F, 1.0F, 0.0F, 1.0F}));
    EXPECT_EQ(materialOf(*again[4]), materialOf(*objects[4]));

    for (const ObjectX* const object : make(art, ArtColors::kOfStyle))
        EXPECT_EQ(materialOf(*object), kDefaultMaterial);
}

TEST_F(ArtObjects, WhatHasNoShapeGoes) {
    const std::size_t before = scene->count(MemberKind::kProfile);
    const auto objects =
        make("0 0 m\n90 0 L\nS\n0 0 m\n0.01 0 L\nf\n" + square(0, "f") + "5 5 m\n5 9 L\nS\n");
    ASSERT_EQ(objects.size(), 1U);
    EXPECT_EQ(objects[0]->name(), "Object 3");
    EXPECT_EQ(scene->count(MemberKind::kProfile), before + 1);
    EXPECT_TRUE(make("0 0 m\n90 0 L\nS\n").empty());
    // Each object has a style of its own: the copies don't change what they were copied from.
    objects[0]->style()->setDepth(77.0);
    EXPECT_EQ(style->depth(), 30.0);
    EXPECT_EQ(objects[0]->style()->perimName(), style->perimName());
}

TEST_F(ArtObjects, LayersTakeTurns) {
    const auto layer = [](const std::string& art) {
        return "%AI5_BeginLayer\n1 Lb\n(L) Ln\n" + art + "%AI5_EndLayer--\n";
    };
    AIParser parser(*scene);
    const AIOptions byLayers{.loadByLayers = true};
    ASSERT_TRUE(parser.parseText(std::string(kHead) + layer("") +
                                     layer("1 0 0 Xa\n" + square(0, "f")) +
                                     layer(square(0, "f") + square(100, "f")),
                                 byLayers));
    ObjectX* const object =
        makeCycleObject(parser, *style, ArtColors::kOfArt, "sign", CycleOption::kLoop);
    ASSERT_NE(object, nullptr);
    EXPECT_EQ(object->name(), "sign");
    EXPECT_EQ(diffuse(materialOf(*object)), (Rgba{1.0F, 0.0F, 0.0F, 1.0F}));
    setTotalFrames(6);
    const double areas[] = {0.0, 2500.0, 5000.0, 0.0, 2500.0, 5000.0};
    for (int frame = 0; frame < 6; ++frame) {
        setCurrentFrame(frame);
        std::uint32_t revision = 0;
        const Mesh3* const mesh = object->mesh(1, revision);
        EXPECT_NEAR(mesh != nullptr ? frontArea(*mesh) : 0.0, areas[frame], 1e-6) << frame;
    }
    setCurrentFrame(0);

    AIParser blank(*scene);
    ASSERT_TRUE(blank.parseText(std::string(kHead) + layer("") + layer(""), byLayers));
    EXPECT_EQ(makeCycleObject(blank, *style, ArtColors::kOfArt, "sign", CycleOption::kLoop),
              nullptr);
}

}  // namespace
}  // namespace orvin
