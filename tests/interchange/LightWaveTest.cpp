// LightWave objects: hand-written files of both kinds, and what comes back of our own.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "geometry/ObjectX.h"
#include "interchange/ByteWriter.h"
#include "interchange/ModelFormats.h"
#include "interchange/lightwave/LwoReader.h"
#include "render/MaterialX.h"
#include "tests/interchange/ChunkText.h"
#include "tests/interchange/ModelFixture.h"

namespace orvin {
namespace {

ImportedGroups parsed(const std::string& file) {
    ImportedGroups model;
    ModelInput input(file);
    EXPECT_EQ(parseLwo(input, model), kSuccess);
    return model;
}

std::string points(std::initializer_list<Vec3> list) {
    std::string text;
    for (const Vec3 p : list)
        text += f32(p.x) + f32(p.y) + f32(p.z);
    return chunk("PNTS", text);
}

const std::string kSquare = points({{0, 0, 1}, {0, 2, 1}, {2, 2, 1}, {2, 0, 1}});

std::vector<Vec3> corners(const Mesh3& mesh, int face) {
    std::vector<Vec3> list;
    for (const int v : mesh.face(face).vertices)
        list.push_back(mesh.vertex(v));
    return list;
}

TEST(LwobReader, PolygonsSurfacesAndDetails) {
    const ImportedGroups model = parsed(
        form("LWOB",
             kSquare + chunk("SRFS", text("Skin") + text("Bones")) +
                 // A square of surface 2 with a detail of surface 1, then a line.
                 chunk("POLS", u16(4) + u16(0) + u16(1) + u16(2) + u16(3) + u16(-2) + u16(1) +
                                   u16(3) + u16(0) + u16(1) + u16(2) + u16(1) +  //
                                   u16(2) + u16(0) + u16(3) + u16(1)) +
                 chunk("SURF", text("Bones") + subChunk("COLR", "\xFF\x80" + std::string(2, '\0')) +
                                   subChunk("TRAN", u16(64)))));
    ASSERT_EQ(model.groups.size(), 1U);
    const ImportedGroup& group = model.groups[0];
    EXPECT_EQ(group.name, "LWO group");
    ASSERT_EQ(group.mesh.faceCount(), 3);
    EXPECT_EQ(corners(group.mesh, 0),
              (std::vector<Vec3>{{2, 0, -1}, {2, 2, -1}, {0, 2, -1}, {0, 0, -1}}));
    EXPECT_EQ(group.mesh.facePlane(0).normal, (Vec3{0, 0, 1})) << "towards the viewer, as there";
    EXPECT_EQ(group.mesh.face(2).kind, ElementKind::kLine);
    const auto material = [&](int face) {
        const int slot = group.mesh.face(face).material;
        return model.materials.at(
            static_cast<std::size_t>(group.materials.at(static_cast<std::size_t>(slot))));
    };
    EXPECT_EQ(material(0).name, "Bones");
    EXPECT_EQ(material(0).color, (Rgba{1.0F, 128.0F / 255.0F, 0.0F, 1.0F}));
    EXPECT_EQ(material(0).transparency, 0.25);
    EXPECT_EQ(material(1).name, "Skin");
    EXPECT_EQ(material(2).name, "Skin");
}

TEST(Lwo2Reader, LayersTagsAndTextures) {
    const std::string map = "TXUV" + u16(2) + text("Map");
    const ImportedGroups model = parsed(form(
        "LWO2", chunk("TAGS", text("One") + text("Three")) +
                    chunk("LAYR", u16(0) + u16(0) + f32(0) + f32(0) + f32(0) + text("Left")) +
                    kSquare +
                    chunk("VMAP", map + u16(0) + f32(0) + f32(0) + u16(1) + f32(0) + f32(1) +
                                      u16(2) + f32(1) + f32(1) + u16(3) + f32(1) + f32(0) + u16(9) +
                                      f32(7) + f32(7)) +
                    chunk("POLS", "FACE" + u16(3) + u16(0) + u16(1) + u16(2) + u16(3 | 0x400) +
                                      u16(0) + u16(2) + "\xFF" + std::string(2, '\0') + "\x03") +
                    chunk("PTAG", "SURF" + u16(0) + u16(1) + u16(1) + u16(0)) +
                    chunk("PTAG", "PART" + u16(0) + u16(0)) +
                    chunk("VMAD", map + u16(2) + u16(1) + f32(0.5) + f32(0.25)) +
                    // Tags of no polygons are nobody else's.
                    chunk("PTAG", "SURF") + chunk("POLS", "FACE") + chunk("POLS", "FACE") +
                    chunk("PTAG", "SURF" + u16(0) + u16(0)) +
                    chunk("LAYR", u16(1) + u16(0) + f32(0) + f32(0) + f32(0) + text("Empty")) +
                    chunk("LAYR", u16(2) + u16(0) + f32(0) + f32(0) + f32(0) + text("")) + kSquare +
                    chunk("POLS", "FACE" + u16(4) + u16(0) + u16(1) + u16(2) + u16(3)) +
                    chunk("POLS", "BONE" + u16(2) + u16(0) + u16(1)) +
                    chunk("POLS", "CURV" + u16(3) + u16(2) + u16(1) + u16(0)) +
                    chunk("SURF", text("Three") + text("") +
                                      subChunk("COLR", f32(0.5) + f32(1) + f32(0) + u16(0)))));
    ASSERT_EQ(model.groups.size(), 2U);
    const Mesh3& left = model.groups[0].mesh;
    EXPECT_EQ(model.groups[0].name, "Left");
    ASSERT_EQ(left.faceCount(), 2);
    EXPECT_EQ(model.materials.at(static_cast<std::size_t>(model.groups[0].materials[0])).name,
              "Three");
    EXPECT_EQ(model.materials.at(static_cast<std::size_t>(model.groups[0].materials[0])).color,
              (Rgba{0.5F, 1.0F, 0.0F, 1.0F}));
    EXPECT_EQ(left.face(1).material, 1);
    const auto texture = [&](int face) {
        std::vector<Vec3> list;
        for (const int t : left.face(face).texture)
            list.push_back(left.texVertex(t));
        return list;
    };
    EXPECT_EQ(texture(0), (std::vector<Vec3>{{1, 1, 0}, {0, 1, 0}, {0, 0, 0}}));
    EXPECT_EQ(texture(1), (std::vector<Vec3>{{1, 0, 0}, {0.5, 0.25, 0}, {0, 0, 0}})) << "its own";
    const Mesh3& right = model.groups[1].mesh;
    EXPECT_EQ(model.groups[1].name, "LWO group");
    ASSERT_EQ(right.faceCount(), 2);
    EXPECT_EQ(right.face(1).kind, ElementKind::kLine);
    EXPECT_EQ(right.face(1).vertices.size(), 3U);
    EXPECT_EQ(model.groups[1].materials[0], ImportedGroup::kNoMaterial);
}

TEST(Lwo2Reader, ConcaveFacesAreSplitAndPointsGathered) {
    // An arrow head: its notch is the fourth corner.
    const ImportedGroups model = parsed(form(
        "LWO2", points({{0, 0, 0}, {2, 3, 0}, {4, 0, 0}, {2, 1, 0}, {9, 9, 9}, {8, 8, 8}}) +
                    chunk("POLS", "FACE" + u16(4) + u16(0) + u16(1) + u16(2) + u16(3) + u16(1) +
                                      u16(0) + u16(1) + u16(2) + u16(0) + u16(1) + u16(4))));
    const Mesh3& mesh = model.groups.at(0).mesh;
    EXPECT_EQ(mesh.vertexCount(), 5) << "a point that nothing uses is left out";
    double area = 0.0;
    std::vector<std::size_t> lists;
    for (int i = 0; i < mesh.faceCount(); ++i) {
        if (mesh.face(i).kind == ElementKind::kPointList) {
            lists.push_back(mesh.face(i).vertices.size());
            continue;
        }
        const auto list = corners(mesh, i);
        ASSERT_EQ(list.size(), 3U);
        const Vec3 twice = cross(list[1] - list[0], list[2] - list[0]);
        EXPECT_GT(twice.z, 0.0);
        area += twice.z / 2.0;
    }
    EXPECT_DOUBLE_EQ(area, 4.0);
    EXPECT_EQ(lists, std::vector<std::size_t>{3});
}

TEST(LwoReader, MoreThanSixSurfacesMakeMoreGroups) {
    std::string tags;
    std::string polygons = "FACE";
    std::string surfaces = "SURF";
    for (int i = 0; i < 8; ++i) {
        tags += text("s" + std::to_string(i));
        polygons += u16(3) + u16(0) + u16(1) + u16(2);
        surfaces += u16(i) + u16(i);
    }
    const ImportedGroups model = parsed(form(
        "LWO2", chunk("TAGS", tags) + kSquare + chunk("POLS", polygons) + chunk("PTAG", surfaces)));
    ASSERT_EQ(model.groups.size(), 2U);
    EXPECT_EQ(model.groups[0].mesh.faceCount(), 6);
    ASSERT_EQ(model.groups[1].mesh.faceCount(), 2);
    const int slot = model.groups[1].mesh.face(1).material;
    const int material = model.groups[1].materials.at(static_cast<std::size_t>(slot));
    EXPECT_EQ(model.materials.at(static_cast<std::size_t>(material)).name, "s7");
}

TEST(LwoReader, DamagedFiles) {
    const std::string triangle = chunk("POLS", "FACE" + u16(3) + u16(0) + u16(1) + u16(2));
    const std::string good = form("LWO2", kSquare + triangle);
    ImportedGroups model;
    for (const std::string& file : {std::string(), std::string("FORM"), form("LWO3", kSquare),
                                    "form" + good.substr(4), form("AIFF", "")}) {
        ModelInput input(file);
        EXPECT_EQ(parseLwo(input, model), kFailure);
    }
    // Any beginning of a file reads, as does a FORM that says it is longer than it is.
    for (std::size_t size = 12; size < good.size(); ++size)
        parsed(good.substr(0, size));
    std::string lying = good;
    lying[4] = '\x7F';
    EXPECT_EQ(parsed(lying).faceCount(), 1U);
    struct {
        const char* name;
        std::string chunks;
        std::size_t faces;
    } const cases[] = {
        {"index out of range",
         kSquare + chunk("POLS", "FACE" + u16(3) + u16(0) + u16(1) + u16(4) + u16(3) + u16(0) +
                                     u16(1) + u16(2)),
         1},
        {"long index out of range",
         kSquare + chunk("POLS", "FACE" + u16(3) + u16(0) + u16(1) + "\xFF\xFF\xFF\xFF"), 0},
        {"polygon cut short", kSquare + chunk("POLS", "FACE" + u16(3) + u16(0) + u16(1)), 0},
        {"polygons without points", triangle, 0},
        {"odd chunk with its padding", chunk("ICON", "x") + kSquare + triangle, 1},
        {"odd chunk without it", "ICON" + u32(1) + "x" + kSquare + triangle, 1},
        {"tag of no name", kSquare + triangle + chunk("PTAG", "SURF" + u16(0) + u16(7)), 1},
        {"tags of no polygon", kSquare + triangle + chunk("PTAG", "SURF\xFF\xFF\xFF\xFF" + u16(7)),
         1},
        {"corners at infinity", points({{1e39, 0, 0}, {0, 1, 0}, {0, 0, 1}}) + triangle, 1},
        {"chunk with half a head", kSquare + triangle + "PNT", 1},
    };
    for (const auto& c : cases)
        EXPECT_EQ(parsed(form("LWO2", c.chunks)).faceCount(), c.faces) << c.name;

    // What comes again and again: a long name, and a tag far beyond the polygons.
    std::string often = chunk("TAGS", text(std::string(1 << 20, 'n')));
    for (int i = 0; i < 5000; ++i)
        often += chunk("LAYR", std::string(18, '\0')) + kSquare + triangle +
                 chunk("PTAG", "SURF" + u16(0) + u16(0) + "\xFF\xFF\xFF\xF0" + u16(0));
    EXPECT_EQ(parsed(form("LWO2", often)).faceCount(), 5000U);
}

TEST_F(ModelFiles, LightWaveKeepsSeamsSectionsAndElements) {
    Mesh3 mesh;
    for (const Vec3 p : {Vec3{0, 0, 0}, {1, 0, 0}, {1, 1, 0}, {0, 1, 0}, {2, 0, 5}})
        mesh.addVertex(p);
    for (const Vec3 t : {Vec3{0, 0, 0}, {1, 0, 0}, {1, 1, 0}, {0.25, 0.5, 0}})
        mesh.addTexVertex(t);
    using Three = std::array<int, 3>;
    mesh.addFace(ElementKind::kPolygon, 1, Three{0, 1, 2}, Three{0, 1, 2});
    mesh.addFace(ElementKind::kPolygon, 1, Three{0, 2, 3}, Three{3, 2, 1});
    mesh.addFace(ElementKind::kPolygon, 4, Three{1, 4, 2});
    mesh.addFace(ElementKind::kLine, 4, Three{0, 1, 4});
    mesh.addFace(ElementKind::kPointList, 4, Three{3, 2, 1});
    auto& object = scene_.make<ObjectP>("seam");
    object.setMesh(std::move(mesh));
    auto& glass = scene_.make<MaterialX>("glass");
    glass.setTransparency(0.75);
    glass.setFlag(MaterialX::kTransparency, true);
    object.setMaterial(4, "glass");
    const fs::path path = folder_ / "seam.lwo";
    MeshObject* const objects[] = {&object};
    ASSERT_EQ(exportModel(path, objects), kSuccess);

    SceneX second;
    second.make<MaterialX>("glass");
    std::vector<ObjectP*> made;
    ASSERT_EQ(importModel(second, path, &made), kSuccess);
    ASSERT_EQ(made.size(), 2U);
    EXPECT_EQ(made[0]->name(), "seam-Section 2");
    EXPECT_EQ(made[1]->name(), "seam-Section 5");
    EXPECT_EQ(made[1]->materialName(0), "glass.1");
    EXPECT_EQ(dynamic_cast<MaterialX&>(*made[1]->material(0)).transparency(), 0.75);
    std::uint32_t revision = 0;
    const Mesh3& back = *made[0]->mesh(1, revision);
    ASSERT_EQ(back.faceCount(), 2);
    const FaceView face = back.face(1);
    for (std::size_t i = 0; i < 3; ++i) {
        const Vec3 p = back.vertex(face.vertices[i]);
        const Vec3 expected = p == Vec3{0, 0, 0}   ? Vec3{0.25, 0.5, 0}
                              : p == Vec3{1, 1, 0} ? Vec3{1, 1, 0}
                                                   : Vec3{1, 0, 0};
        EXPECT_EQ(back.texVertex(face.texture[i]), expected);
    }
    const Mesh3& rest = *made[1]->mesh(1, revision);
    ASSERT_EQ(rest.faceCount(), 4);
    EXPECT_EQ(rest.face(1).kind, ElementKind::kLine);
    EXPECT_EQ(rest.face(3).kind, ElementKind::kPointList);
    EXPECT_EQ(rest.face(3).vertices.size(), 3U);
}

TEST_F(ModelFiles, LightWaveTakesLargeFacesAndManyPoints) {
    Mesh3 mesh;
    std::vector<int> rim;
    for (int i = 0; i < 70000; ++i) {
        const double a = 2.0 * kPi * i / 70000;
        const int vertex = mesh.addVertex({1000 * std::cos(a), 1000 * std::sin(a), 0.0});
        if (i % 35 == 0) rim.push_back(vertex);
        if (i > 1 && i % 7 == 0)
            mesh.addFace(ElementKind::kPolygon, 0,
                         std::array<int, 3>{vertex - 2, vertex - 1, vertex});
    }
    mesh.addFace(ElementKind::kPolygon, 0, rim);
    auto& object = scene_.make<ObjectP>("disc");
    object.setMesh(std::move(mesh));
    const fs::path path = folder_ / "disc.lwo";
    MeshObject* const objects[] = {&object};
    ASSERT_EQ(exportModel(path, objects), kSuccess);
    ImportedGroups model;
    ASSERT_EQ(readLwo(path, model), kSuccess);
    double area = 0.0;
    const Mesh3& back = model.groups.at(0).mesh;
    std::uint32_t revision = 0;
    double expected = 0.0;
    const auto areaOf = [](const Mesh3& m) {
        double sum = 0.0;
        for (int i = 0; i < m.faceCount(); ++i) {
            const auto list = corners(m, i);
            for (std::size_t j = 2; j < list.size(); ++j)
                sum += cross(list[j - 1] - list[0], list[j] - list[0]).z / 2.0;
        }
        return sum;
    };
    area = areaOf(back);
    expected = areaOf(*object.mesh(1, revision));
    EXPECT_NEAR(area, expected, 1e-3 * expected);
    EXPECT_EQ(back.faceCount(), 10000 + 2 - 1);
}

TEST_F(ModelFiles, LwobHoldsAllSectionsInOneList) {
    auto& flat = triangle("flat", {0, 2});
    flat.setHardShadingAngle(-1.0, false);
    flat.setMaterial(0, "plain");
    flat.setMaterial(2, "clear\nglass");
    auto& other = scene_.make<ObjectP>("other");
    Mesh3 mesh;
    for (const Vec3 p : {Vec3{1, 2, 3}, {4, 5, 6}, {7, 8, 9}})
        mesh.addVertex(p);
    mesh.addFace(ElementKind::kLine, 0, std::array<int, 3>{0, 1, 2});
    mesh.addFace(ElementKind::kPointList, 1, std::array<int, 1>{1});
    other.setMesh(std::move(mesh));
    other.setHardShadingAngle(90.0, false);
    other.setMaterial(0, "clear glass");  // one line, as the other one's name will be
    other.setMaterial(1, "plain");
    scene_.make<MaterialX>("plain").setDiffuse({0.0F, 0.5F, 1.0F, 1.0F});
    auto& clear = scene_.make<MaterialX>("clear\nglass");
    clear.setDiffuse({2.0F, -1.0F, 0.0F, 1.0F});
    clear.setTransparency(0.3);
    clear.setFlag(MaterialX::kTransparency, true);
    scene_.make<MaterialX>("clear glass").setDiffuse({0.0F, 0.0F, 0.0F, 1.0F});
    const fs::path path = folder_ / "older.lwo";
    MeshObject* const objects[] = {&flat, &other};
    ExportOptions options;
    options.lwob = true;
    ASSERT_EQ(exportModel(path, objects, options), kSuccess);

    const std::vector<Vec3> corner{{0, 0, 0}, {1, 0, 0}, {0, 1, 0}};
    const auto color = [](std::string_view bytes) { return subChunk("COLR", std::string(bytes)); };
    const std::string whole = subChunk("DIFF", u16(256));
    EXPECT_EQ(contents(path),
              form("LWOB",
                   points({corner[0],
                           corner[1],
                           corner[2],
                           corner[0],
                           corner[1],
                           corner[2],  //
                           {1, 2, -3},
                           {4, 5, -6},
                           {7, 8, -9},
                           {4, 5, -6}}) +
                       chunk("SRFS", text("plain") + text("clear glass") + text("clear glass.1")) +
                       chunk("POLS", u16(3) + u16(2) + u16(1) + u16(0) + u16(1) +      //
                                         u16(3) + u16(5) + u16(4) + u16(3) + u16(2) +  //
                                         u16(2) + u16(7) + u16(6) + u16(3) +           //
                                         u16(2) + u16(8) + u16(7) + u16(3) +           //
                                         u16(1) + u16(9) + u16(1)) +
                       chunk("SURF", text("plain") + color({"\x00\x80\xFF\x00", 4}) +
                                         subChunk("FLAG", u16(0)) + whole) +
                       chunk("SURF", text("clear glass") + color({"\xFF\x00\x00\x00", 4}) +
                                         subChunk("FLAG", u16(0)) + whole +
                                         subChunk("TRAN", u16(77)) + subChunk("VTRN", f32(0.3))) +
                       chunk("SURF", text("clear glass.1") + color({"\x00\x00\x00\x00", 4}) +
                                         subChunk("FLAG", u16(4)) + whole +
                                         subChunk("SMAN", f32(kPi / 2)))));

    const ImportedGroups model = parsed(contents(path));
    ASSERT_EQ(model.groups.size(), 1U);
    EXPECT_EQ(model.faceCount(), 5U);
    ASSERT_EQ(model.materials.size(), 3U);
    EXPECT_EQ(model.materials[1].name, "clear glass");
    EXPECT_NEAR(model.materials[1].transparency, 0.3, 1e-7);
    EXPECT_EQ(model.materials[2].name, "clear glass.1");
}

TEST_F(ModelFiles, LwobNumbers65535Points) {
    auto& last = triangle("last", {0});
    auto& cloud = scene_.make<ObjectP>("cloud");
    const auto setPoints = [&cloud](int count) {
        Mesh3 mesh;
        std::vector<int> all;
        for (int i = 0; i < count; ++i)
            all.push_back(mesh.addVertex({1.0 * i, 0, 5}));
        mesh.addFace(ElementKind::kPointList, 1, all);
        cloud.setMesh(std::move(mesh));
    };
    const fs::path path = file("full.lwo", "old");
    MeshObject* const objects[] = {&cloud, &last};
    ExportOptions options;
    options.lwob = true;
    setPoints(0xFFFF - 2);
    testing::internal::CaptureStderr();
    EXPECT_EQ(exportModel(path, objects, options), kFailure);
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "write_lwo: more than 65535 points, the most that the older LightWave form (LWOB) "
              "can number. Write fewer objects, or LWO2.\n");
    EXPECT_EQ(contents(path), "old");
    EXPECT_EQ(filesInFolder(), 1U);

    setPoints(0xFFFF - 3);
    ASSERT_EQ(exportModel(path, objects, options), kSuccess);
    const ImportedGroups model = parsed(contents(path));
    ASSERT_EQ(model.groups.size(), 1U);
    const Mesh3& mesh = model.groups[0].mesh;
    EXPECT_EQ(mesh.vertexCount(), 0xFFFF);
    EXPECT_EQ(corners(mesh, mesh.faceCount() - 1),
              (std::vector<Vec3>{{0, 0, 0}, {1, 0, 0}, {0, 1, 0}}));
}

}  // namespace
}  // namespace orvin
