// DXF: the colour index by its published rule, exact text out, 3DFACE entities in.
#include <gtest/gtest.h>

#include <string>

#include "geometry/ObjectX.h"
#include "interchange/ModelFormats.h"
#include "interchange/dxf/DxfColors.h"
#include "interchange/dxf/DxfReader.h"
#include "interchange/dxf/DxfWriter.h"
#include "render/MaterialX.h"
#include "tests/interchange/ModelFixture.h"
#include "toolkit/Progress.h"

namespace orvin {
namespace {

using Bytes3 = std::array<int, 3>;

Bytes3 bytesOf(int index) {
    const DxfColor c = dxfColors()[static_cast<std::size_t>(index - 1)];
    const auto byte = [](float value) { return static_cast<int>(value * 255.0F + 0.5F); };
    return {byte(c.red), byte(c.green), byte(c.blue)};
}

TEST(DxfColors, RowsOfThePublishedIndex) {
    struct {
        int index;
        Bytes3 color;
    } const rows[] = {
        {1, {255, 0, 0}},       {2, {255, 255, 0}},     {3, {0, 255, 0}},
        {4, {0, 255, 255}},     {5, {0, 0, 255}},       {6, {255, 0, 255}},
        {7, {255, 255, 255}},   {8, {128, 128, 128}},   {9, {192, 192, 192}},
        {13, {165, 82, 82}},    {16, {76, 0, 0}},       {19, {38, 19, 19}},
        {23, {165, 103, 82}},   {60, {191, 255, 0}},    {115, {63, 127, 95}},
        {140, {0, 191, 255}},   {195, {95, 63, 127}},   {243, {165, 82, 103}},
        {250, {51, 51, 51}},    {251, {91, 91, 91}},    {252, {132, 132, 132}},
        {253, {173, 173, 173}}, {254, {214, 214, 214}}, {255, {255, 255, 255}},
        {256, {255, 255, 255}},
    };
    for (const auto& row : rows)
        EXPECT_EQ(bytesOf(row.index), row.color) << row.index;
}

/// Hue in degrees, saturation and value of every row between follow from its number alone.
TEST(DxfColors, HueSaturationAndValueByRule) {
    const double values[] = {1.0, 0.65, 0.5, 0.3, 0.15};
    for (int index = 10; index < 250; ++index) {
        const DxfColor c = dxfColors()[static_cast<std::size_t>(index - 1)];
        const double r = static_cast<double>(c.red);
        const double g = static_cast<double>(c.green);
        const double b = static_cast<double>(c.blue);
        const double high = std::max({r, g, b});
        const double low = std::min({r, g, b});
        const double byte = 1.0 / 255.0;
        EXPECT_NEAR(high, values[index % 10 / 2], byte) << index;
        EXPECT_NEAR(low, index % 2 == 0 ? 0.0 : high / 2.0, byte) << index;
        const double sector = high == r   ? (g - b) / (high - low)
                              : high == g ? 2.0 + (b - r) / (high - low)
                                          : 4.0 + (r - g) / (high - low);
        const double hue = 60.0 * (sector < 0.0 ? sector + 6.0 : sector);
        EXPECT_NEAR(hue, 15.0 * (index / 10 - 1), 60.0 * 2.0 * byte / (high - low)) << index;
    }
}

TEST(DxfColors, NearestIsTheFirstOfEquals) {
    EXPECT_EQ(nearestDxfColor({1, 1, 1}), 7);
    EXPECT_EQ(nearestDxfColor({1, 0, 0}), 1);
    EXPECT_EQ(nearestDxfColor({5, -1, 0}), 1);
    EXPECT_EQ(nearestDxfColor({0.9F, 0.9F, 0.9F}), 254);  // 0.84, nearer than white
    EXPECT_EQ(nearestDxfColor({0, 0, 0}), 18);            // (38, 0, 0); there is no black
    for (int index = 1; index <= kDxfColorCount; ++index) {
        const int found = nearestDxfColor(dxfColors()[static_cast<std::size_t>(index - 1)]);
        EXPECT_LE(found, index);
        EXPECT_EQ(bytesOf(found), bytesOf(index));
    }
}

ImportedGroups parsed(std::string_view text) {
    ImportedGroups model;
    ModelInput input(text);
    EXPECT_EQ(parseDxf(input, model), kSuccess);
    return model;
}

constexpr std::string_view kStart = "0\nSECTION\n2\nENTITIES\n";

/// Entities of a file, as lines.
std::string entities(std::string_view text) {
    return std::string(kStart) + std::string(text) + "0\nENDSEC\n0\nEOF\n";
}

TEST(DxfReader, FacesInTheirForms) {
    struct {
        const char* name;
        const char* entity;
        std::vector<Vec3> corners;
    } const cases[] = {
        {"quad",
         "0\n3DFACE\n8\na\n10\n1\n20\n2\n30\n3\n11\n4\n21\n5\n31\n6\n12\n7\n22\n8\n32\n9\n"
         "13\n10\n23\n11\n33\n12\n",
         {{1, 3, -2}, {4, 6, -5}, {7, 9, -8}, {10, 12, -11}}},
        {"triangle: corners 2 and 3 are equal",
         "0\n3DFACE\n8\na\n10\n1\n11\n2\n12\n3\n22\n1\n13\n3\n23\n1\n",
         {{1, 0, 0}, {2, 0, 0}, {3, 0, -1}}},
        {"no fourth corner: it is at the origin",
         "0\n3DFACE\n8\na\n10\n1\n11\n2\n12\n3\n",
         {{1, 0, 0}, {2, 0, 0}, {3, 0, 0}, {0, 0, 0}}},
        {"blanks, signs, exponents, other groups",
         "  0\n3DFACE\n100\nAcDbFace\n  8\n a \n 10\n  +1.5e0\n 11\n-2 \n12\nx\n13\ninf\n33\n1\n"
         "70\n5\n14\n9\n",
         {{1.5, 0, 0}, {-2, 0, 0}, {0, 0, 0}, {0, 1, 0}}},
        {"others end a face",
         "0\n3DFACE\n8\na\n10\n1\n12\n2\n0\nLINE\n8\nb\n10\n7\n11\n8\n",
         {{1, 0, 0}, {0, 0, 0}, {2, 0, 0}, {0, 0, 0}}},
    };
    for (const auto& c : cases)
        for (const bool crlf : {false, true}) {
            std::string text = entities(c.entity);
            for (std::size_t at = 0; crlf && (at = text.find('\n', at)) != std::string::npos;
                 at += 2)
                text.insert(at, "\r");
            const ImportedGroups model = parsed(text);
            ASSERT_EQ(model.groups.size(), 1U) << c.name;
            EXPECT_EQ(model.groups[0].name, "a");
            const Mesh3& mesh = model.groups[0].mesh;
            ASSERT_EQ(mesh.faceCount(), 1) << c.name;
            std::vector<Vec3> corners;
            for (const int v : mesh.face(0).vertices)
                corners.push_back(mesh.vertex(v));
            EXPECT_EQ(corners, c.corners) << c.name;
        }
}

TEST(DxfReader, OnlyTheEntitiesSectionCounts) {
    const ImportedGroups model = parsed(
        "999\n3DFACE\n0\n3DFACE\n8\nx\n0\nSECTION\n2\nBLOCKS\n0\n3DFACE\n8\ny\n2\nENTITIES\n0\nENDS"
        "EC\n"
        "0\nSECTION\n2\nENTITIES\n0\n3DFACE\n8\nz\n0\nENDSEC\n0\n3DFACE\n8\nw\n0\nEOF\n");
    ASSERT_EQ(model.groups.size(), 1U);
    EXPECT_EQ(model.groups[0].name, "z");
    EXPECT_EQ(parsed(std::string(kStart) + "0\n3DFACE\n8\nq").groups.at(0).mesh.faceCount(), 1)
        << "a file that ends in a face";
    for (const char* text : {"", "\n", "0", "0\nSECTION", "0\nSECTION\n2\nENTITIES\n0\nLINE\n"})
        EXPECT_TRUE(parsed(text).groups.empty()) << text;
}

TEST(DxfReader, LayersAndTheirMaterials) {
    std::string text;
    const auto face = [&text](const std::string& layer, int color) {
        text += "0\n3DFACE\n8\n" + layer + "\n";
        if (color != 0) text += "62\n   " + std::to_string(color) + "\n";
        text += "10\n1\n11\n2\n12\n2\n22\n1\n13\n3\n";
    };
    face("one", 5);
    face("two", 0);
    face("one", 30);
    face("one", 0);
    face("two", 300);
    face("a name of thirty-one characters A", 30);
    face("a name of thirty-one characters B", 0);
    const ImportedGroups model = parsed(entities(text));
    ASSERT_EQ(model.groups.size(), 3U);
    const auto material = [&](std::size_t group) {
        return model.materials.at(static_cast<std::size_t>(model.groups[group].materials[0]));
    };
    EXPECT_EQ(model.groups[0].mesh.faceCount(), 3);
    EXPECT_EQ(model.groups[0].mesh.vertexCount(), 4) << "corners are shared";
    EXPECT_EQ(material(0).name, "DXF color 30");
    EXPECT_EQ(material(0).color, (Rgba{1.0F, 127.0F / 255.0F, 0.0F, 1.0F}));
    EXPECT_EQ(material(1).name, "two Material");
    EXPECT_EQ(model.groups[2].name, "a name of thirty-one characters");
    EXPECT_EQ(model.groups[2].mesh.faceCount(), 2);
    EXPECT_EQ(model.groups[2].materials[0], model.groups[0].materials[0]);

    text.clear();
    for (int i = 1; i <= 130; ++i)
        face("layer " + std::to_string(i), 0);
    face("layer 3", 0);
    const ImportedGroups many = parsed(entities(text));
    ASSERT_EQ(many.groups.size(), kDxfMaxLayers);
    EXPECT_EQ(many.groups[2].mesh.faceCount(), 2);
    EXPECT_EQ(many.groups[99].name, "layer 100");
    EXPECT_EQ(many.groups[99].mesh.faceCount(), 31);
}

TEST(DxfReader, AStopAddsNothing) {
    std::string text;
    for (int i = 0; i < 30000; ++i)
        text += "0\n3DFACE\n";
    int polls = 0;
    setProgress([&polls](int, int) { return ++polls == 3 ? 1 : 0; });
    ImportedGroups model;
    const std::string file = entities(text);
    ModelInput input(file);
    EXPECT_EQ(parseDxf(input, model), kFailure);
    EXPECT_EQ(polls, 3);
    setProgress({});
    text.resize(text.size() / 10);
    EXPECT_EQ(parsed(entities(text)).faceCount(), 3000U);
}

TEST(DxfWriter, LayerNamesHaveNoBlanksNorPoints) {
    EXPECT_EQ(dxfLayerName("My logo (v1.2), a/b\\c!-Sec 1"), "My_logo__v1_2___a_b_c_-Sec_1");
    EXPECT_EQ(dxfLayerName("plain-Frm3"), "plain-Frm3");
}

TEST_F(ModelFiles, TextOfADxfExport) {
    auto& object = triangle("a.b", {0, 2});
    auto& white = scene_.make<MaterialX>("white");
    MaterialX::Look look;
    look.diffuse = {1.0F, 1.0F, 1.0F, 1.0F};
    white.setLook(look);
    object.setMaterial(2, "white");
    object.transform().setTranslate({0, 2, 3});

    Mesh3 mesh;
    for (int i = 0; i < 5; ++i)
        mesh.addVertex({std::cos(i * 1.2), std::sin(i * 1.2), 0});
    mesh.addFace(ElementKind::kPolygon, 0, std::array<int, 5>{0, 1, 2, 3, 4});
    auto& pentagon = scene_.make<ObjectP>("pentagon");
    pentagon.setMesh(std::move(mesh));

    MeshObject* const objects[] = {&object, &pentagon};
    const fs::path path = folder_ / "out.dxf";
    testing::internal::CaptureStderr();
    ExportOptions options;
    options.lineEnd = "\r\n";
    ASSERT_EQ(exportModel(path, objects, options), kSuccess);
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "write_dxf: 1 polygons of 'pentagon' have more than 4 corners: left out.\n");
    const auto face = [](const char* layer, const char* color) {
        return std::string("0\n3DFACE\n  8\n") + layer + "\n62\n   " + color +
               "\n10\n0.000000\n20\n-3.000000\n30\n2.000000\n"
               "11\n1.000000\n21\n-3.000000\n31\n2.000000\n"
               "12\n0.000000\n22\n-3.000000\n32\n3.000000\n"
               "13\n0.000000\n23\n-3.000000\n33\n3.000000\n";
    };
    std::string expected =
        "999\nCREATED_BY_TARNWICK_3D-ORVINEX\n999\nDXF_FILE\n  0\nSECTION\n  2\nENTITIES\n" +
        face("a_b-Sec_1", "254") + face("a_b-Sec_3", "7") + "0\nENDSEC\n   0\nEOF\n";
    for (std::size_t at = 0; (at = expected.find('\n', at)) != std::string::npos; at += 2)
        expected.insert(at, "\r");
    EXPECT_EQ(contents(path), expected);
}

TEST_F(ModelFiles, DxfColorsBecomeMaterialsOfTheScene) {
    auto& old = scene_.make<MaterialX>("DXF color 30");
    const fs::path path =
        file("faces.dxf", entities("0\n3DFACE\n8\nskin\n62\n30\n10\n1\n0\n3DFACE\n8\nbone\n11\n1\n"
                                   "0\n3DFACE\n8\nhair\n62\n  3\n11\n1\n"));
    scene_.make<ObjectP>("skin");
    std::vector<ObjectP*> made;
    ASSERT_EQ(importModel(scene_, path, &made), kSuccess);
    ASSERT_EQ(made.size(), 3U);
    EXPECT_EQ(made[0]->name(), "skin.1");
    EXPECT_EQ(made[0]->fileType(), ModelFileType::kDxf);
    EXPECT_EQ(made[0]->material(0), &old) << "one that is there serves";
    EXPECT_EQ(made[1]->materialName(0), "bone Material");
    EXPECT_EQ(made[2]->materialName(0), "DXF color 3");
    EXPECT_EQ(dynamic_cast<MaterialX&>(*made[2]->material(0)).diffuse(),
              (Rgba{0.0F, 1.0F, 0.0F, 1.0F}));
    std::uint32_t revision = 0;
    EXPECT_EQ(made[0]->mesh(1, revision)->face(0).normals.size(), 3U);
    testing::internal::CaptureStderr();
    EXPECT_EQ(importModel(scene_, file("none.dxf", "0\nEOF\n")), kFailure);
    EXPECT_NE(testing::internal::GetCapturedStderr().find("no 3DFACE"), std::string::npos);
}

}  // namespace
}  // namespace orvin
