#include "geometry/ObjectX.h"

#include <gtest/gtest.h>

#include <limits>

#include "geometry/GeometryClasses.h"
#include "geometry/outline/OutlinePreparation.h"
#include "scene/MemoryStream.h"
#include "tests/geometry/Extrusions.h"

namespace orvin {
namespace {

using test::examine;
using test::Extrusion;
using test::Solid;
using test::square;

TEST(ObjectX, AStraightSideIsASimpleBox) {
    Extrusion x;
    x.straightEdge();
    x.outline.addLines(square(0, 0, 10), true);
    const Mesh3* mesh = x.build();
    ASSERT_NE(mesh, nullptr);
    const Solid solid = examine(*mesh);
    EXPECT_EQ(solid.openEdges, 0);
    EXPECT_EQ(solid.oddNormals, 0);
    EXPECT_EQ(solid.inwardCorners, 0);
    EXPECT_NEAR(solid.volume, 10 * 10 * 30, 1e-9);
    // Front and back, then four sides of four corners.
    ASSERT_EQ(mesh->faceCount(), 6);
    const FaceView front = mesh->face(0);
    EXPECT_EQ(mesh->normal(front.normals[0]), (Vec3{0, 0, 1}));
    const FaceView side = mesh->face(2);
    ASSERT_EQ(side.vertices.size(), 4U);
    EXPECT_EQ(mesh->vertex(side.vertices[0]), (Vec3{0, 0, -30}));
    EXPECT_EQ(mesh->vertex(side.vertices[1]), (Vec3{10, 0, -30}));
    EXPECT_EQ(mesh->vertex(side.vertices[2]), (Vec3{10, 0, 0}));
    EXPECT_EQ(mesh->vertex(side.vertices[3]), (Vec3{0, 0, 0}));
    EXPECT_EQ(mesh->normal(side.normals[0]), (Vec3{0, -1, 0}));
    EXPECT_EQ(mesh->texVertex(side.texture[3]), (Vec3{0, 1, 0}));
    EXPECT_EQ(mesh->texVertex(side.texture[1]), (Vec3{0.25, 0, 0}));
    const FaceView last = mesh->face(5);
    EXPECT_EQ(mesh->texVertex(last.texture[1]), (Vec3{1, 0, 0}));
    EXPECT_EQ(x.object.transform().origin(), (Vec3{5, 5, -15}));
}

TEST(ObjectX, SolidsAreClosedWithNormalsOutwards) {
    using Arrange = void (*)(Extrusion&);
    const struct {
        const char* what;
        Arrange outline;
        double area;  // 0: not known on paper
    } outlines[] = {
        {"square", [](Extrusion& x) { x.outline.addLines(square(0, 0, 100), true); }, 10000},
        {"clockwise square",
         [](Extrusion& x) {
             x.outline.addLines({{0, 0}, {0, 100}, {100, 100}, {100, 0}}, true);
         },
         10000},
        {"frame",
         [](Extrusion& x) {
             x.outline.addLines(square(0, 0, 100), true);
             x.outline.addLines(square(30, 30, 40), true);
         },
         8400},
        {"island in a hole",
         [](Extrusion& x) {
             x.outline.addLines(square(0, 0, 100), true);
             x.outline.addLines(square(20, 20, 60), true);
             x.outline.addLines(square(40, 40, 20), true);
         },
         10000 - 3600 + 400},
        {"L",
         [](Extrusion& x) {
             x.outline.addLines({{0, 0}, {100, 0}, {100, 40}, {40, 40}, {40, 100}, {0, 100}}, true);
         },
         6400},
        {"O",
         [](Extrusion& x) {
             x.outline.addCircle({0, 0}, 60);
             x.outline.addCircle({0, 0}, -35);
         },
         0},
        {"8",
         [](Extrusion& x) {
             x.outline.addLines({{0, 0}, {60, 0}, {60, 110}, {0, 110}}, true);
             x.outline.addCircle({30, 30}, -15);
             x.outline.addCircle({30, 80}, 15);
         },
         0},
    };
    const struct {
        const char* what;
        Arrange edge;
    } edges[] = {{"straight", [](Extrusion& x) { x.straightEdge(); }},
                 {"bevel", [](Extrusion& x) { x.bevelEdge(); }},
                 {"round", [](Extrusion& x) { x.roundEdge(); }}};
    for (const auto& outline : outlines)
        for (const auto& edge : edges)
            for (const auto mitre : {ObjectXStyle::Mitre::kFast, ObjectXStyle::Mitre::kComplex}) {
                Extrusion x;
                x.style.setMitreMethod(mitre);
                outline.outline(x);
                edge.edge(x);
                const Mesh3* mesh = x.build();
                ASSERT_NE(mesh, nullptr);
                const Solid solid = examine(*mesh);
                SCOPED_TRACE(std::string(outline.what) + ", " + edge.what);
                EXPECT_EQ(solid.openEdges, 0);
                EXPECT_EQ(solid.oddNormals, 0);
                EXPECT_EQ(solid.inwardCorners, 0);
                if (outline.area > 0.0) {
                    EXPECT_NEAR(solid.frontArea, outline.area, 1e-9 * outline.area);
                }
                // The round edge ends flat: then it counts with the back.
                EXPECT_GE(solid.backArea, solid.frontArea * (1 - 1e-9));
                EXPECT_GT(solid.volume, 29.9 * solid.frontArea);
            }
}

TEST(ObjectX, ABevelHasTheVolumeOfItsSlices) {
    Extrusion x;
    x.bevelEdge();
    x.outline.addLines(square(0, 0, 100), true);
    // Two frusta of a tenth of the depth from 100 to 106, and a block between them.
    const double frustum = 3.0 * (10000.0 + 106.0 * 106.0 + 100.0 * 106.0) / 3.0;
    EXPECT_NEAR(examine(*x.build()).volume, 2 * frustum + 24.0 * 106.0 * 106.0, 1e-6);
    x.style.setPerimXScale(2.0);
    const double wide = 3.0 * (10000.0 + 112.0 * 112.0 + 100.0 * 112.0) / 3.0;
    EXPECT_NEAR(examine(*x.build()).volume, 2 * wide + 24.0 * 112.0 * 112.0, 1e-6);
}

TEST(ObjectX, PointsBetweenTwoAtTheirPlaceHaveNoNormalAndNoFace) {
    Extrusion x;
    x.bevelEdge();
    x.outline.addLines({{0, 0}, {10, 0}, {10, 0}, {10, 10}, {0, 10}}, true);
    const Mesh3* mesh = x.build();
    ASSERT_NE(mesh, nullptr);
    int without = 0;
    for (const Vec3 n : mesh->normals())
        without += n == Vec3{};
    EXPECT_EQ(without, 2 * 6);  // of the corner's four points, on each ring
    EXPECT_EQ(examine(*mesh).oddNormals, 0);
}

TEST(ObjectX, PartsAndDepthLeaveOutWhatTheySay) {
    Extrusion x;
    x.straightEdge();
    x.outline.addLines(square(0, 0, 100), true);
    x.outline.addLines(square(30, 30, 40), true);
    const auto sides = [&] {
        int count = 0;
        const Mesh3* mesh = x.build();
        for (int f = 0; f < mesh->faceCount(); ++f)
            count += mesh->normal(mesh->face(f).normals[0]).z == 0.0;
        return count;
    };
    EXPECT_EQ(sides(), 8);
    x.style.setPart(false, ObjectXStyle::kHoleEdge);
    EXPECT_EQ(sides(), 4);
    EXPECT_TRUE(x.object.isOpenOrClear(false));
    x.style.setPart(false, ObjectXStyle::kFront | ObjectXStyle::kBack);
    EXPECT_EQ(x.build()->faceCount(), 4);
    x.style.setPart(true, ObjectXStyle::kAllParts);
    x.style.setDepth(0.0);
    const Solid flat = examine(*x.build());
    EXPECT_NEAR(flat.frontArea, 8400, 1e-9);
    EXPECT_EQ(flat.backArea, 0.0);
    EXPECT_EQ(sides(), 0);
}

TEST(ObjectX, MaterialsChangeAtTheirBoundaries) {
    Extrusion x;
    x.straightEdge();
    x.outline.addLines(square(0, 0, 10), true);
    x.style.setFrontMtl(4);
    x.style.setPerimIntervalMaterial(0, MaterialIntervals({{0, 0.5, 1}, {0.5, 1, 2}}));
    const Mesh3* mesh = x.build();
    ASSERT_NE(mesh, nullptr);
    EXPECT_EQ(mesh->face(0).material, 4);
    ASSERT_EQ(mesh->faceCount(), 2 + 8);
    for (int f = 2; f < 10; ++f)
        for (const int v : mesh->face(f).vertices) {
            const double z = mesh->vertex(v).z;
            EXPECT_TRUE(mesh->face(f).material == 1 ? z >= -15.0 : z <= -15.0);
        }
    // Materials that end before the edge does.
    x.style.setPerimIntervalMaterial(0, MaterialIntervals({{0, 0.5, 1}}));
    EXPECT_EQ(x.build(), nullptr);
    EXPECT_TRUE(x.object.needsUpdate(1));
}

TEST(ObjectX, MeshingDividesFacesAndEdges) {
    Extrusion x;
    x.straightEdge();
    x.outline.addLines(square(1, 1, 30), true);
    ObjectX::Meshing meshing;
    meshing.on = true;
    meshing.bestTileResolution = {10, 10};
    x.object.setMeshing(meshing);
    const Mesh3* mesh = x.build();
    ASSERT_NE(mesh, nullptr);
    // Lines at 10, 20 and 30 in front and behind; 7 strips of 4 sides.
    EXPECT_EQ(mesh->faceCount(), 2 * 16 + 7 * 4);
    EXPECT_NEAR(examine(*mesh).frontArea, 900, 1e-9);
    draftMode = true;
    x.object.setMeshing(meshing);
    EXPECT_EQ(x.build()->faceCount(), 2 * 4 + 4 * 4);
    draftMode = false;
    meshing.bestTileResolution = {1e-9, 0};
    meshing.bestEdgeMeshing = 1e-9;
    x.object.setMeshing(meshing);
    EXPECT_LT(x.build()->faceCount(), 20000);
}

TEST(ObjectX, OffsetAndSpikesChangeTheOutlineFirst) {
    Extrusion x;
    x.straightEdge();
    x.outline.addLines({{0, 0}, {100, 0}, {100, 60}, {0, 60}}, true);
    x.style.setFrontFaceOffset(-5);
    Solid solid = examine(*x.build());
    EXPECT_NEAR(solid.frontArea, 90 * 50, 1e-9);
    EXPECT_EQ(solid.openEdges, 0);
    EXPECT_EQ(solid.inwardCorners, 0);  // the corners stay hard
    x.style.setFrontFaceOffset(5);
    EXPECT_NEAR(examine(*x.build()).frontArea, 110 * 70, 1e-9);
    x.style.setFrontFaceOffset(-40);  // nothing is left
    const Mesh3* gone = x.build();
    ASSERT_NE(gone, nullptr);
    EXPECT_EQ(gone->faceCount(), 0);
    EXPECT_EQ(x.object.localBounds().size(), Vec3{});
    EXPECT_FALSE(x.object.needsUpdate(1));

    // The square ends of a bar are none.
    x.style.setFrontFaceOffset(0);
    x.style.setSpikeAngle(30);
    EXPECT_NEAR(examine(*x.build()).frontArea, 6000, 1e-9);
}

TEST(ObjectX, SpikesAreBluntedByTheirPullBack) {
    // A needle of 200 with an edge of 0.2 at its tip and points close behind it.
    PolyShape2 shape;
    test::addLoop(
        shape,
        {{0, 0}, {0, 0}, {199.9, 4.898}, {200, 4.9}, {200, 5.1}, {199.9, 5.102}, {0, 10}, {0, 10}});
    removeSpikes(shape, 5, 10);
    std::vector<std::vector<Vec2>> loops;
    ASSERT_EQ(shape.collectLoops(loops), kSuccess);
    ASSERT_EQ(loops.size(), 1U);
    ASSERT_EQ(loops[0].size(), 8U);
    EXPECT_EQ(loops[0][2], loops[0][3]);
    EXPECT_NEAR(loops[0][2].x, 190, 0.01);
    EXPECT_NEAR(loops[0][2].y, 4.9 * 190 / 200, 0.01);
    EXPECT_NEAR(loops[0][5].y, 10 - 4.9 * 190 / 200, 0.01);
    EXPECT_EQ(loops[0][7], (Vec2{0, 10}));

    // There and back and on: a side that lies in the short edge itself is none.
    PolyShape2 fold;
    test::addLoop(fold, {{0.2, 0}, {0, 0}, {0.2, 0}, {10, 0}, {5, 9}});
    removeSpikes(fold, 5, 0.1);
    EXPECT_EQ(fold.precs.size(), 5U);
}

TEST(ObjectX, BuildsOnlyWhenSomethingChanged) {
    Extrusion x;
    x.bevelEdge();
    x.outline.addLines(square(0, 0, 100), true);
    std::uint32_t first = 0, revision = 0;
    ASSERT_NE(x.object.mesh(1, first), nullptr);
    const auto changes = [&] {
        const std::uint32_t before = revision;
        x.object.mesh(1, revision);
        return revision != before;
    };
    EXPECT_TRUE(changes());  // from 0
    EXPECT_EQ(revision, first);
    EXPECT_FALSE(changes());
    x.object.setFlatRender(0.1);
    EXPECT_FALSE(changes());
    x.style.setPerimXScale(0.5);
    EXPECT_TRUE(changes());
    x.outline.touch();
    EXPECT_TRUE(changes());
    x.edge.touch();
    EXPECT_TRUE(changes());
    x.object.setHardShadingAngle(40, true);
    EXPECT_TRUE(changes());
    EXPECT_FALSE(changes());
    EXPECT_TRUE(x.object.needsUpdate(0));
    x.build(0);
    EXPECT_TRUE(changes());

    // A front alone doesn't mind its depth.
    Extrusion card;
    card.outline.addLines(square(0, 0, 100), true);
    card.style.setPart(false, ObjectXStyle::kBack | ObjectXStyle::kPerimEdge);
    card.style.setPart(false, ObjectXStyle::kHoleEdge);
    card.build();
    card.style.setDepth(99);
    EXPECT_FALSE(card.object.needsUpdate(1));
}

TEST(OutlineProfile, KeepsNoShapeThatFailed) {
    SceneX scene;
    test::CurveProfile profile(scene, "p");
    profile.addCircle({0, 0}, 10);
    std::uint32_t stamp = 0;
    ASSERT_NE(profile.getShape(0.5, 20.0, stamp), nullptr);
    profile.outline().paths[0].curves.emplace_back(
        Curve2::Type::kBezier, std::vector<Vec2>(Curve2::kMaxControlPoints + 1));
    EXPECT_NE(profile.getShape(0.5, 20.0, stamp), nullptr) << "nobody told of a change";
    for (int i = 0; i < 2; ++i)
        EXPECT_EQ(profile.getShape(0.1, 20.0, stamp), nullptr);
}

TEST(ObjectX, OddOutlinesGiveAMeshOrNothing) {
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const std::vector<std::vector<Vec2>> outlines[] = {
        {},
        {{{0, 0}, {5, 0}}},
        {{{1, 1}, {1, 1}, {1, 1}, {1, 1}}},
        {{{0, 0}, {5, 0}, {9, 0}}},
        {{{nan, 0}, {5, 0}, {9, 9}}, square(0, 0, 5)},
        {square(0, 0, 1e12)},
        {square(0, 0, 1e-12)},
        {{{0, 0}, {10, 10}, {10, 0}, {0, 10}}},
        {square(0, 0, 10), square(0, 0, 10), square(5, 0, 10)},
    };
    for (const auto& outline : outlines)
        for (const double offset : {0.0, 3.0, -3.0}) {
            Extrusion x;
            x.roundEdge();
            ObjectX::Meshing meshing;
            meshing.on = true;
            x.object.setMeshing(meshing);
            x.style.setFrontFaceOffset(offset);
            x.style.setSpikeAngle(10);
            for (const auto& loop : outline)
                x.outline.addLines(loop, true);
            EXPECT_NE(x.build(0), nullptr);
            EXPECT_NE(x.build(1), nullptr);
        }
    Extrusion missing;
    missing.object.setFace("nobody");
    EXPECT_EQ(missing.build(), nullptr);
    Extrusion noEdge;
    noEdge.style.setPerim("nobody");
    noEdge.outline.addLines(square(0, 0, 10), true);
    ASSERT_NE(noEdge.build(), nullptr);
    EXPECT_EQ(noEdge.build()->faceCount(), 2);
}

TEST(ObjectX, StreamRoundTripKeepsObjectAndStyle) {
    registerExtrusionClasses();
    Extrusion x;
    ObjectX::Meshing meshing;
    meshing.on = true;
    meshing.draftTileResolution = {3, 4};
    meshing.bestEdgeMeshing = 2.5;
    x.object.setMeshing(meshing);
    x.object.setFlatPreview(1.5);
    x.style.setDepth(12.5);
    x.style.setTrackXScale(false);
    x.style.setHoleXScale(3);
    MemoryStream out(nullptr);
    ASSERT_EQ(out.writeObject(x.object), kSuccess);
    ASSERT_EQ(out.writeObject(x.style), kSuccess);
    const std::string text = out.takeText();

    SceneX scene;
    MemoryStream in(nullptr, text);
    ASSERT_EQ(loadBlock(in, scene), kSuccess);
    auto* const object = scene.memberAs<ObjectX>(MemberKind::kObject, "object");
    auto* const style = scene.memberAs<ObjectXStyle>(MemberKind::kStyle, "style");
    ASSERT_TRUE(object != nullptr && style != nullptr);
    EXPECT_EQ(object->style(), style);
    EXPECT_EQ(object->faceName(), "outline");
    EXPECT_EQ(object->meshing().draftTileResolution, (Vec2{3, 4}));
    EXPECT_EQ(object->meshing().bestEdgeMeshing, 2.5);
    EXPECT_TRUE(object->meshing().on);
    EXPECT_EQ(object->flatPreview(), 1.5);
    EXPECT_EQ(style->depth(), 12.5);
    EXPECT_EQ(style->holeXScale(), 3);
    MemoryStream again(nullptr);
    again.writeObject(*object);
    again.writeObject(*style);
    EXPECT_EQ(again.text(), text);
}

}  // namespace
}  // namespace orvin
