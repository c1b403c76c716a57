#include <gtest/gtest.h>

#include "render/ImageFile.h"
#include "render/LightX.h"
#include "render/MaterialX.h"
#include "render/RenderClasses.h"
#include "scene/FileFlags.h"
#include "scene/MemoryStream.h"
#include "scene/SceneX.h"

namespace orvin {
namespace {

std::string written(Persistent& object) {
    MemoryStream stream(nullptr);
    EXPECT_EQ(stream.writeObject(object), kSuccess);
    return stream.takeText();
}

/// The text of `object` from the line that starts with `key` on.
std::string writtenFrom(Persistent& object, const std::string& key) {
    const std::string text = written(object);
    const auto at = text.find("\n " + key + " ");
    return at == std::string::npos ? "no such key in " + text : text.substr(at + 1);
}

Result load(Persistent& object, const std::string& keys) {
    const std::string text = keys + "\nend " + std::string(object.className()) + "\n";
    MemoryStream stream(nullptr, text);
    return loadBlock(stream, object);
}

TEST(AppearanceStream, CameraIsWrittenLineByLine) {
    SceneX scene;
    CameraX camera(scene, "c");
    camera.setScaleVertically(true);
    camera.setProjection(Projection::kOrthographic);
    EXPECT_EQ(written(camera),
              "begin CameraX\n"
              " name \"c\"\n"
              " enabled 1\n"
              " translate 0.000000 0.000000 0.000000\n"
              " rotate 0.000000 0.000000 0.000000\n"
              " scale 1.000000 1.000000 1.000000\n"
              " origin 0.000000 0.000000 0.000000\n"
              " parent \"root\"\n"
              " mode TRANSFORM\n"
              " lens-type \"\"\n"
              " projection ORTHOGRAPHIC\n"
              " aspect 1.000000\n"
              " lens 50.000000\n"
              " aperture 35.000000\n"
              " clip 1.000000 10000.000000\n"
              " eye 0.000000 0.000000 100.000000\n"
              " target 0.000000 0.000000 0.000000\n"
              " distance 100.000000\n"
              " tumble-left-right 0.000000\n"
              " tumble-up-down 0.000000\n"
              " roll 0.000000\n"
              " ortho-width 400.000000\n"
              " under-scan 0.000000\n"
              " scale-vertically 1\n"
              "end CameraX\n");
}

TEST(AppearanceStream, CameraComesBackInEveryMode) {
    for (const CameraMode mode :
         {CameraMode::kOrbit, CameraMode::kHandHeld, CameraMode::kLookAt, CameraMode::kTransform}) {
        SCOPED_TRACE(cameraModeName(mode));
        SceneX scene;
        CameraX camera(scene, "c");
        camera.setPose({{300, 500, 500}, {1, 2, -15}, 907.25, 30, -20, 12.5});
        camera.setLensType("Normal (50mm)");
        camera.setFieldOfView(50);
        camera.setClip(0.1, 9000);
        camera.setUnderScan(0.5);
        camera.transform().setTranslate({1, 2, 3});
        camera.transform().setRotate({10, 20, 30});
        camera.setMode(mode);
        const std::string text = written(camera);

        SceneX other;
        CameraX copy(other, "c");
        EXPECT_EQ(load(copy, text.substr(text.find('\n'))), kSuccess);
        EXPECT_EQ(written(copy), text);
        EXPECT_EQ(copy.lensType(), "Normal (50mm)");
        for (int row = 0; row < 4; ++row)
            EXPECT_NEAR(length(copy.world().row(row) - camera.world().row(row)), 0.0, 1e-5);
    }
}

TEST(AppearanceStream, LensTypesSurviveTheirOddities) {
    struct Case {
        const char* name;
        const char* line;
        const char* back;
    };
    for (const Case& c :
         {Case{"", "\"\"", ""}, Case{"wide", "wide", "wide"},
          Case{"Fisheye (12mm)", "\"Fisheye (12mm)\"", "Fisheye (12mm)"},
          Case{"#1", "\"#1\"", "#1"}, Case{"a\"b", "\"a\\\"b\"", "a\"b"},
          Case{"c:\\", "c:\\", "c:\\"}, Case{"my lens\\", "\"my lens\\ \"", "my lens\\ "}}) {
        SceneX scene;
        CameraX camera(scene, "c");
        camera.setLensType(c.name);
        const std::string text = written(camera);
        EXPECT_NE(text.find(std::string(" lens-type ") + c.line + "\n"), std::string::npos) << text;
        CameraX copy(scene, "d");
        EXPECT_EQ(load(copy, text.substr(text.find("\n mode"))), kSuccess);
        EXPECT_EQ(copy.lensType(), c.back);
        EXPECT_EQ(copy.projection(), Projection::kPerspective);
    }
}

TEST(AppearanceStream, OddValuesCostThemselvesOnly) {
    SceneX scene;
    CameraX camera(scene, "c");
    EXPECT_EQ(load(camera,
                   "lens 0 aperture -3 aspect nan mode SIDEWAYS projection ROUND "
                   "eye inf 0 0 clip 2 20 mode ORBIT distance 7"),
              kSuccess);
    EXPECT_EQ(camera.lens(), 50.0);
    EXPECT_EQ(camera.aperture(), 35.0);
    EXPECT_EQ(camera.aspect(), 1.0);
    EXPECT_EQ(camera.eye(), (Vec3{0, 0, 100}));
    EXPECT_EQ(camera.farClip(), 20.0);
    EXPECT_EQ(camera.world().origin(), (Vec3{0, 0, 7}));
    EXPECT_EQ(load(camera, "lens fifty"), kFailure);
    // A node moved behind the mode's back follows the mode once the block is read.
    EXPECT_EQ(load(camera, "translate 9 9 9"), kSuccess);
    EXPECT_EQ(camera.world().origin(), (Vec3{0, 0, 7}));
}

TEST(AppearanceStream, LightIsACameraWithItsOwnLinesBehind) {
    SceneX scene;
    LightX light(scene, "l");
    light.setType(LightType::kSpot);
    light.setCastsShadow(true);
    light.setColor({1.0F, 0.5F, 0.25F, 0.0F});
    light.setFalloff(Falloff::kInverseSquare);
    EXPECT_EQ(writtenFrom(light, "scale-vertically"),
              " scale-vertically 0\n"
              " type SPOT\n"
              " shadow 1\n"
              " color 1.000000 0.500000 0.250000 0.000000\n"
              " intensity 1.000000\n"
              " falloff INVERSE_SQUARE\n"
              " distance 5000.000000\n"
              " angles 15.000000 30.000000\n"
              " shadow-softness 6\n"
              " shadow-darkness 0.800000\n"
              " shadowmap-xres 512\n"
              " shadowmap-yres 512\n"
              "end LightX\n");
    const std::string text = written(light);
    LightX copy(scene, "m");
    EXPECT_EQ(load(copy, text.substr(text.find("\n mode"))), kSuccess);
    EXPECT_EQ(writtenFrom(copy, "mode"), writtenFrom(light, "mode"));
}

TEST(AppearanceStream, LightKeysAreRead) {
    SceneX scene;
    LightX light(scene, "l");
    light.setType(LightType::kAmbient);
    // Both distances land in the falloff's: the last one stands.
    EXPECT_EQ(load(light,
                   "distance 250 type LASER falloff LINEAR falloff FAR distance 700 "
                   "angles 100 150 shadow on shadow-softness 3 shadowmap-xres 64 "
                   "intensity nan shadow-darkness 0.5"),
              kSuccess);
    EXPECT_EQ(light.type(), LightType::kAmbient);
    EXPECT_EQ(light.falloff(), Falloff::kLinear);
    EXPECT_EQ(light.falloffDistance(), 700.0);
    EXPECT_EQ(light.distance(), 100.0);
    EXPECT_NEAR(light.innerAngle(), 90.0, 1e-6);
    EXPECT_NEAR(light.outerAngle(), 90.0, 1e-6);
    EXPECT_TRUE(light.castsShadow());
    EXPECT_EQ(light.softness(), 3);
    EXPECT_EQ(light.shadowMapXres(), 64);
    EXPECT_EQ(light.intensity(), 1.0);
    EXPECT_EQ(light.darkness(), 0.5);
}

TEST(AppearanceStream, MaterialIsWrittenLineByLine) {
    SceneX scene;
    MaterialX material(scene, "m");
    EXPECT_EQ(written(material),
              "begin MaterialX\n"
              " name \"m\"\n"
              " ambient 0.150000 0.150000 0.150000\n"
              " diffuse 0.900000 0.900000 0.900000\n"
              " specular 80.000000 0.200000\n"
              " transparency 0.000000\n"
              " reflectivity 0.000000\n"
              " ambientFlag 0\n"
              " diffuseFlag 1\n"
              " specularFlag 1\n"
              " transparencyFlag 1\n"
              " colorMapFlag 0\n"
              " reflectionMapFlag 0\n"
              " transparencyMapFlag 0\n"
              " bumpMapFlag 0\n"
              "end MaterialX\n");
    material.setMap(MapUse::kColor, "say \"c\"");
    material.setMap(MapUse::kTransparency, "t");
    material.setMap(MapUse::kReflection, "r");
    material.setMap(MapUse::kBump, "b");
    material.setBumpScale(0.25);
    material.setReflectivity(0.5);
    material.setFlag(MaterialX::kBumpMap, true);
    const std::string text = writtenFrom(material, "transparency");
    EXPECT_EQ(text.substr(0, text.find(" ambientFlag")),
              " transparency 0.000000\n"
              " colorMap \"say \\\"c\\\"\"\n"
              " transparencyMap \"t\"\n"
              " reflectionMap \"r\"\n"
              " reflectivity 0.500000\n"
              " bumpMap \"b\" 0.250000\n");
    // A map that is named and switched off stays off.
    MaterialX copy(scene, "n");
    EXPECT_EQ(load(copy, writtenFrom(material, "ambient")), kSuccess);
    EXPECT_EQ(writtenFrom(copy, "ambient"), writtenFrom(material, "ambient"));
    EXPECT_FALSE(copy.hasFlag(MaterialX::kColorMap));
    EXPECT_EQ(copy.mapRef(MapUse::kColor).name(), "say \"c\"");
    EXPECT_EQ(copy.bumpScale(), 0.25);
}

TEST(AppearanceStream, ReadingAValueSwitchesItsFlagOn) {
    struct Case {
        const char* keys;
        std::uint32_t flags;  // out of none
    };
    for (const Case& c :
         {Case{"ambient 1 1 1", 0x01}, Case{"diffuse 1 1 1", 0x02}, Case{"specular 9 1", 0x04},
          Case{"transparency 0.5", 0x08}, Case{"colorMap a", 0x10}, Case{"reflectionMap a", 0x20},
          Case{"transparencyMap a", 0x40}, Case{"bumpMap a 1", 0x80}, Case{"reflectivity 1", 0},
          Case{"diffuse 1 1 1 diffuseFlag 0", 0}, Case{"diffuseFlag off diffuse 1 1 1", 0x02},
          Case{"bumpMapFlag on reflectionMapFlag 1", 0xa0}}) {
        SCOPED_TRACE(c.keys);
        SceneX scene;
        MaterialX material(scene, "m");
        MaterialX::Look look;
        look.flags = 0;
        material.setLook(look);
        EXPECT_EQ(load(material, c.keys), kSuccess);
        EXPECT_EQ(material.look().flags, c.flags);
    }
    SceneX scene;
    MaterialX material(scene, "m");
    EXPECT_EQ(load(material, "diffuse 0.5 0.25 0.125"), kSuccess);
    EXPECT_EQ(material.look().flags, 0x0eU);
    EXPECT_EQ(material.diffuse(), (Rgba{0.5F, 0.25F, 0.125F, 1.0F}));
    EXPECT_EQ(load(material, "transparency inf specular 5 nan"), kSuccess);
    EXPECT_EQ(material.transparency(), 0.0);
    EXPECT_EQ(material.specularExponent(), 80.0);
}

TEST(AppearanceStream, MapsAndFilesAreWrittenLineByLine) {
    SceneX scene;
    ImageFile file(scene, "f");
    file.setPath("C:\\pictures\\a \"b\".tga");
    EXPECT_EQ(written(file),
              "begin ImageFile\n name \"f\"\n image \"C:\\pictures\\a \\\"b\\\".tga\"\n"
              "end ImageFile\n");
    ImageMap map(scene, "p");
    map.setImageFile("f");
    map.setDomain({-1, 1, 0, 4});
    map.placement().setRotate({0, 45, 0});
    const std::string text = written(map);
    EXPECT_EQ(text,
              "begin ImageMap\n name \"p\"\n imageFile \"f\"\n"
              " domain -1.000000 1.000000 0.000000 4.000000\n"
              " translate 0.000000 0.000000 0.000000\n"
              " rotate 0.000000 45.000000 0.000000\n"
              " scale 1.000000 1.000000 1.000000\n"
              "end ImageMap\n");
    SceneX other;
    ImageMap copy(other, "p");
    EXPECT_EQ(load(copy, text.substr(text.find('\n'))), kSuccess);
    EXPECT_EQ(written(copy), text);
    EXPECT_EQ(copy.imageFile(), nullptr);  // named before it exists
    // Odd numbers cost their line and no more.
    EXPECT_EQ(load(copy, "rotate 0 9 0 scale 2 inf 2 domain nan 1 0 1"), kSuccess);
    EXPECT_EQ(sceneErrorText(), "");
    EXPECT_EQ(copy.domain(), map.domain());
    EXPECT_EQ(copy.placement().scale(), (Vec3{1, 1, 1}));
    EXPECT_EQ(copy.placement().rotate().y, 9.0);
    ImageFile late(other, "f");
    EXPECT_EQ(load(late, "image \"" + std::string(500, 'x') + "\""), kSuccess);
    EXPECT_EQ(late.path().size(), ImageFile::kPathLimit);
    EXPECT_EQ(copy.imageFile(), &late);
}

TEST(AppearanceStream, ImageFileCarriesItsThumbnail) {
    SceneX scene;
    ImageFile file(scene, "f");
    file.setPath("a.tga");
    file.setThumbnail(std::make_unique<twPicture>());
    EXPECT_EQ(file.thumbnail(), nullptr);
    auto picture = std::make_unique<twPicture>(2, 1);
    picture->writeRgbRow(0, std::array<std::uint8_t, 6>{255, 1, 2, 3, 4, 160});
    file.setThumbnail(std::move(picture));
    const auto pixels = [](const ImageFile& from) {
        std::array<std::uint8_t, 6> row{};
        if (from.thumbnail() != nullptr) from.thumbnail()->readRgbRow(0, row);
        return row;
    };
    for (const bool ascii : {true, false}) {
        const FlagScope form(gSaveThumbnailsAscii, ascii);
        const std::string text = writtenFrom(file, "image");
        if (ascii) {
            EXPECT_EQ(text,
                      " image \"a.tga\"\n ThumbnailSize 2 1\n Thumbnail\n ff01020304a0\n"
                      "end ImageFile\n");
        }
        SceneX other;
        ImageFile copy(other, "g");
        MemoryStream stream(nullptr, text);
        EXPECT_EQ(loadBlock(stream, copy), kSuccess);
        EXPECT_EQ(pixels(copy), pixels(file));
        EXPECT_EQ(pixels(ImageFile(other, copy, "h")), pixels(file));
    }
    file.setThumbnail(std::make_unique<twPicture>(700, 1));
    const FlagScope ascii(gSaveThumbnailsAscii, true);
    EXPECT_NE(written(file).find("BinaryThumbnail"), std::string::npos);
    EXPECT_EQ(load(file, "Thumbnail 00"), kFailure);  // without a size
    EXPECT_EQ(load(file, "ThumbnailSize 2 1 Thumbnail 010203040506 Thumbnail 010203040506"),
              kFailure);  // one size, one picture
}

TEST(AppearanceStream, SceneMakesAndCopiesAllClasses) {
    registerRenderClasses();
    registerRenderClasses();  // changes nothing
    SceneX scene("s");
    auto& light = scene.make<LightX>("l");
    light.setIntensity(0.75);
    light.transform().setTranslate({1, 2, 3});
    scene.make<CameraX>("c").setFieldOfView(20);
    scene.make<ImageFile>("f").setPath("a.tga");
    scene.make<ImageMap>("p").setImageFile("f");
    scene.make<MaterialX>("m").setMap(MapUse::kColor, "p");
    const std::string text = written(scene);

    SceneX loaded;
    EXPECT_EQ(load(loaded, text.substr(text.find('\n'), text.rfind("end") - text.find('\n'))),
              kSuccess);
    EXPECT_EQ(written(loaded), text);
    auto* material = loaded.memberAs<MaterialX>(MemberKind::kMaterial, "m");
    ASSERT_NE(material, nullptr);
    ASSERT_NE(material->map(MapUse::kColor), nullptr);
    EXPECT_EQ(material->map(MapUse::kColor)->imagePath(), "a.tga");

    for (const char* name : {"l", "c", "f", "p", "m"}) {
        SceneMember* original = scene.memberByName(name);
        SceneMember* clone = loaded.cloneMember(*original, std::string(name) + "2");
        ASSERT_NE(clone, nullptr) << name;
        const auto keys = [](SceneMember& member) {
            const std::string all = written(member);
            return all.substr(all.find('\n', all.find('\n') + 1));
        };
        EXPECT_EQ(keys(*clone), keys(*original));
    }
}

}  // namespace
}  // namespace orvin
