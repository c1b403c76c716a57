#include "render/gl/GlTextures.h"

#include <vector>

#include "render/gl/ConeTexels.h"
#include "render/gl/GlApi.h"

namespace orvin {

namespace {

constexpr int kConeSide = 256;

unsigned newName() {
    GLuint name = 0;
    glGenTextures(1, &name);
    return name;
}

void deleteName(unsigned name) {
    const GLuint names[1] = {name};
    glDeleteTextures(1, names);
}

// Lookups beyond the picture are held at its edge. OpenGL 1.1 mixes the border's colour in there;
// its younger versions don't, where asked.
void holdAtEdge() {
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_S, GL_CLAMP);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_T, GL_CLAMP);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_S, GL_CLAMP_TO_EDGE);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_T, GL_CLAMP_TO_EDGE);
    glGetError();
}

void load(const SummedImage& image) {
    const ImageBuffer pixels = image.toImage();
    const GLenum format = image.hasAlpha() ? GL_RGBA : GL_RGB;
    glPixelStorei(GL_UNPACK_ALIGNMENT, 1);
    holdAtEdge();
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_LINEAR_MIPMAP_LINEAR);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GL_LINEAR);
    gluBuild2DMipmaps(GL_TEXTURE_2D, static_cast<GLint>(format), image.width(), image.height(),
                      format, GL_UNSIGNED_BYTE, pixels.direct());
}

}  // namespace

void GlTextures::bind(const SummedImage& image) {
    const IdentityRef identity(image.identity());
    const auto found = pictures_.find(image.path());
    if (found != pictures_.end()) {
        glBindTexture(GL_TEXTURE_2D, found->second.name);
        if (found->second.image == identity) return;
        found->second.image = identity;
    } else {
        const auto added = pictures_.try_emplace(image.path(), image.identity(), newName());
        glBindTexture(GL_TEXTURE_2D, added.first->second.name);
    }
    load(image);
    ++loaded_;
}

void GlTextures::bindCone(double inner, double outer) {
    const auto [found, isNew] = cones_.try_emplace({inner, outer});
    found->second.used = true;
    if (!isNew) {
        glBindTexture(GL_TEXTURE_2D, found->second.name);
        return;
    }
    found->second.name = newName();
    glBindTexture(GL_TEXTURE_2D, found->second.name);
    const std::vector<unsigned char> texels = coneTexels(inner, outer, kConeSide);
    glPixelStorei(GL_UNPACK_ALIGNMENT, 1);
    holdAtEdge();
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_LINEAR);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GL_LINEAR);
    glTexImage2D(GL_TEXTURE_2D, 0, GL_LUMINANCE, kConeSide, kConeSide, 0, GL_LUMINANCE,
                 GL_UNSIGNED_BYTE, texels.data());
}

void GlTextures::sweep() {
    std::erase_if(pictures_, [](const auto& item) {
        if (item.second.image.isAlive()) return false;
        deleteName(item.second.name);
        return true;
    });
    std::erase_if(cones_, [](const auto& item) {
        if (item.second.used) return false;
        deleteName(item.second.name);
        return true;
    });
    for (auto& [angles, cone] : cones_)
        cone.used = false;
}

void GlTextures::forget() {
    pictures_.clear();
    cones_.clear();
}

}  // namespace orvin
