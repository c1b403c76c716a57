// GlTextures: the pictures of a context, as texture names that live from frame to frame.
#pragma once

#include <cstddef>
#include <map>
#include <string>
#include <unordered_map>
#include <utility>

#include "render/image/SummedImage.h"
#include "toolkit/Identity.h"

namespace orvin {

/// All calls need the context that the cache was used with before, and each context its own cache.
class GlTextures {
  public:
    /// The texture of a picture, by its path: made at the first use, and again where another
    /// picture has come under the path. Leaves it bound.
    void bind(const SummedImage& image);

    /// Binds the picture of a spot light's cone: 1 within the inner angle, 0 from the outer one on,
    /// over the tangents of the outer angle from -1 to 1 (radians, see coneTexels()).
    void bindCone(double inner, double outer);

    /// Deletes the textures of pictures that are gone, and of cones that nobody asked for since.
    void sweep();

    /// Forgets all without a call: the context is gone, and its textures with it.
    void forget();

    /// Pictures that were handed to OpenGL since the start.
    std::size_t loaded() const { return loaded_; }

  private:
    struct Picture {
        Picture(const Identity& identity, unsigned textureName)
            : image(identity), name(textureName) {}
        IdentityRef image;
        unsigned name;
    };
    struct Cone {
        unsigned name = 0;
        bool used = true;
    };

    std::unordered_map<std::string, Picture> pictures_;  // by path
    std::map<std::pair<double, double>, Cone> cones_;
    std::size_t loaded_ = 0;
};

}  // namespace orvin
