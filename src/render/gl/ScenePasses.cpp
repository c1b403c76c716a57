#include "render/gl/ScenePasses.h"

#include <cmath>

#include "geometry/ShownObjects.h"
#include "render/gl/ConeTexels.h"
#include "render/gl/GlApi.h"
#include "scene/SceneX.h"

namespace orvin {

namespace {

void load(const Matrix4& matrix) {
    glLoadMatrixd(&matrix.m[0][0]);
}

void multiply(const Matrix4& matrix) {
    glMultMatrixd(&matrix.m[0][0]);
}

void setLight(unsigned name, const FixedLight& light) {
    const std::array<float, 3> along{0.0F, 0.0F, -1.0F};
    glLightfv(name, GL_AMBIENT, light.ambient.data());
    glLightfv(name, GL_DIFFUSE, light.diffuse.data());
    glLightfv(name, GL_SPECULAR, light.diffuse.data());
    glLightfv(name, GL_POSITION, light.position.data());
    glLightfv(name, GL_SPOT_DIRECTION, along.data());
    glLightf(name, GL_SPOT_EXPONENT, light.exponent);
    glLightf(name, GL_SPOT_CUTOFF, light.cutoff);
}

void setMaterial(const MaterialX* material) {
    const FixedMaterial fixed =
        fixedMaterial(material != nullptr ? material->look() : MaterialX::Look{});
    glMaterialfv(GL_FRONT_AND_BACK, GL_AMBIENT, fixed.ambient.data());
    glMaterialfv(GL_FRONT_AND_BACK, GL_DIFFUSE, fixed.diffuse.data());
    glMaterialfv(GL_FRONT_AND_BACK, GL_SPECULAR, fixed.specular.data());
    glMaterialf(GL_FRONT_AND_BACK, GL_SHININESS, fixed.shininess);
}

// Puts the object in its place. The front of a mirrored one turns clockwise.
template <typename Item>
void draw(const Item& item) {
    load(item.cameraFromObject);
    glFrontFace(item.mirrored ? GL_CW : GL_CCW);
    glCallList(item.list);
}

// From surface coordinates to the picture's, as ResolvedMap takes them.
void loadTexturePlacement(const ImageMap& map, const SummedImage& image) {
    const MapDomain& domain = map.domain();
    const double s = (image.width() - 1.0) / image.width() / (domain.highS - domain.lowS);
    const double t = (image.height() - 1.0) / image.height() / (domain.highT - domain.lowT);
    Matrix4 placement;
    if (std::isfinite(s) && std::isfinite(t)) {
        placement.m[0][0] = s;
        placement.m[1][1] = t;
        placement.m[3] = {-domain.lowS * s, -domain.lowT * t, 0.0, 1.0};
    }
    glMatrixMode(GL_TEXTURE);
    load(placement);
    glMatrixMode(GL_MODELVIEW);
}

void resetTextureMatrix() {
    glMatrixMode(GL_TEXTURE);
    glLoadIdentity();
    glMatrixMode(GL_MODELVIEW);
}

}  // namespace

std::vector<ScenePasses::Item> ScenePasses::gather(SceneX& scene, MeshForm form) {
    std::vector<Item> items;
    for (MeshObject* object : shownObjects(scene)) {
        Item item;
        item.cameraFromObject = object->world() * view_.cameraFromWorld;
        item.mirrored = item.cameraFromObject.determinant3() < 0.0;
        for (const GlMeshPart& part : meshes_.parts(*object, form, options_.quality)) {
            item.list = part.list;
            item.material = dynamic_cast<const MaterialX*>(object->faceMaterial(part.face));
            items.push_back(item);
        }
    }
    return items;
}

const ScenePasses::Maps& ScenePasses::mapsOf(const MaterialX& material) {
    const auto [found, isNew] = maps_.try_emplace(&material);
    if (isNew) {
        const auto resolve = [&material](MapUse use) {
            const ImageMap* map = material.map(use);
            return map != nullptr ? map->resolve() : ResolvedMap();
        };
        if (material.hasFlag(MaterialX::kColorMap)) found->second.color = resolve(MapUse::kColor);
        if (material.hasFlag(MaterialX::kReflectionMap))
            found->second.reflection = resolve(MapUse::kReflection);
    }
    return found->second;
}

void ScenePasses::setLights(SceneX& scene) {
    plainLights_.clear();
    spots_.clear();
    GLint most = 0;
    glGetIntegerv(GL_MAX_LIGHTS, &most);
    unsigned name = GL_LIGHT0;
    for (const LightX* light : enabledLights(scene)) {
        if (name == GL_LIGHT0 + static_cast<unsigned>(most)) break;
        const FixedLight fixed = fixedLight(*light, options_.advancedLighting);
        const Matrix4 cameraFromLight = light->world() * view_.cameraFromWorld;
        load(cameraFromLight);
        setLight(name, fixed);
        const auto lightFromCamera = cameraFromLight.inverse();
        if (fixed.isSpot && options_.advancedLighting && lightFromCamera)
            spots_.push_back(
                {name, *lightFromCamera, light->innerAngle(false), light->outerAngle(false)});
        else
            plainLights_.push_back(name);
        ++name;
    }
}

void ScenePasses::basePass(const std::vector<Item>& items) {
    glEnable(GL_LIGHTING);
    for (const unsigned name : plainLights_)
        glEnable(name);
    for (const Item& item : items) {
        setMaterial(item.material);
        draw(item);
    }
    for (const unsigned name : plainLights_)
        glDisable(name);
}

// Each adds its own light, multiplied by the picture of its cone that it throws on the scene.
void ScenePasses::spotPasses(const std::vector<Item>& items) {
    if (spots_.empty()) return;
    glBlendFunc(GL_SRC_ALPHA, GL_ONE);
    glEnable(GL_TEXTURE_2D);
    glTexEnvi(GL_TEXTURE_ENV, GL_TEXTURE_ENV_MODE, GL_MODULATE);
    const std::array<GLenum, 4> axes{GL_S, GL_T, GL_R, GL_Q};
    const std::array<GLenum, 4> generators{GL_TEXTURE_GEN_S, GL_TEXTURE_GEN_T, GL_TEXTURE_GEN_R,
                                           GL_TEXTURE_GEN_Q};
    for (std::size_t i = 0; i < axes.size(); ++i) {
        std::array<float, 4> plane{};
        plane[i] = 1.0F;
        glTexGeni(axes[i], GL_TEXTURE_GEN_MODE, GL_OBJECT_LINEAR);
        glTexGenfv(axes[i], GL_OBJECT_PLANE, plane.data());
        glEnable(generators[i]);
    }
    for (auto spot = spots_.rbegin(); spot != spots_.rend(); ++spot) {
        glEnable(spot->light);
        textures_.bindCone(spot->inner, spot->outer);
        const double reach = std::tan(coneAngle(spot->outer));
        for (const Item& item : items) {
            glMatrixMode(GL_TEXTURE);
            glLoadIdentity();
            glTranslated(0.5, 0.5, 0.0);
            glScaled(0.5, 0.5, 1.0);
            glFrustum(-reach, reach, -reach, reach, 1.0, 10000.0);
            multiply(spot->lightFromCamera);
            multiply(item.cameraFromObject);
            glMatrixMode(GL_MODELVIEW);
            setMaterial(item.material);
            draw(item);
        }
        glDisable(spot->light);
    }
    for (const GLenum generator : generators)
        glDisable(generator);
    glDisable(GL_TEXTURE_2D);
    resetTextureMatrix();
}

void ScenePasses::colorMapPass(const std::vector<Item>& items) {
    glDisable(GL_LIGHTING);
    glBlendFunc(GL_ZERO, GL_SRC_COLOR);
    glColor4f(1.0F, 1.0F, 1.0F, 1.0F);
    glEnable(GL_TEXTURE_2D);
    // Where the picture is clear, the surface stays as it is.
    glTexEnvi(GL_TEXTURE_ENV, GL_TEXTURE_ENV_MODE, GL_DECAL);
    for (const Item& item : items) {
        if (item.material == nullptr) continue;
        const ResolvedMap& map = mapsOf(*item.material).color;
        if (!map) continue;
        textures_.bind(*map.image());
        loadTexturePlacement(*item.material->map(MapUse::kColor), *map.image());
        draw(item);
    }
    glDisable(GL_TEXTURE_2D);
    resetTextureMatrix();
}

void ScenePasses::reflectionPass(const std::vector<Item>& items) {
    GLint boundBefore = 0;
    glGetIntegerv(GL_TEXTURE_BINDING_2D, &boundBefore);
    glPushAttrib(GL_ALL_ATTRIB_BITS);
    glDisable(GL_LIGHTING);
    glBlendFunc(GL_SRC_ALPHA, GL_ONE);
    glColorMask(GL_TRUE, GL_TRUE, GL_TRUE, GL_FALSE);
    glEnable(GL_TEXTURE_2D);
    glTexEnvi(GL_TEXTURE_ENV, GL_TEXTURE_ENV_MODE, GL_MODULATE);
    glTexGeni(GL_S, GL_TEXTURE_GEN_MODE, GL_SPHERE_MAP);
    glTexGeni(GL_T, GL_TEXTURE_GEN_MODE, GL_SPHERE_MAP);
    glEnable(GL_TEXTURE_GEN_S);
    glEnable(GL_TEXTURE_GEN_T);
    for (const Item& item : items) {
        if (item.material == nullptr) continue;
        const ResolvedMap& map = mapsOf(*item.material).reflection;
        if (!map) continue;
        glColor4f(1.0F, 1.0F, 1.0F, static_cast<float>(item.material->reflectivity()));
        textures_.bind(*map.image());
        draw(item);
    }
    glPopAttrib();
    glBindTexture(GL_TEXTURE_2D, static_cast<GLuint>(boundBefore));
}

void ScenePasses::drawSurfaces(SceneX& scene) {
    setLights(scene);
    const std::vector<Item> items = gather(scene, MeshForm::kSurface);
    basePass(items);
    glDepthFunc(GL_EQUAL);
    glEnable(GL_BLEND);
    spotPasses(items);
    if (options_.textures) {
        colorMapPass(items);
        reflectionPass(items);
    }
    glDisable(GL_BLEND);
    glDisable(GL_LIGHTING);
    glDepthFunc(GL_LEQUAL);
}

void ScenePasses::drawEdges(SceneX& scene, bool hidden, const std::array<float, 3>& surface) {
    if (hidden) {
        // Pushed back a little, or half of each line would sink into its own surface.
        glEnable(GL_POLYGON_OFFSET_FILL);
        glPolygonOffset(1.0F, 1.0F);
        glColor4f(surface[0], surface[1], surface[2], 0.0F);
        for (const Item& item : gather(scene, MeshForm::kSurface))
            draw(item);
        glDisable(GL_POLYGON_OFFSET_FILL);
    }
    for (const Item& item : gather(scene, MeshForm::kEdges)) {
        const MaterialX::Look look =
            item.material != nullptr ? item.material->look() : MaterialX::Look{};
        glColor4f(look.diffuse[0], look.diffuse[1], look.diffuse[2], 1.0F);
        draw(item);
    }
}

}  // namespace orvin
