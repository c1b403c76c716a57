#include "orvinhost/Comp.h"

#include <cstring>

namespace orvin::stand_in {
namespace {

Vec3 vector(const Track& track, double frame, Vec3 fallback) {
    const Values v = track.at(frame);
    return v.size() == 3 ? Vec3{v[0], v[1], v[2]} : fallback;
}

double scalar(const Track& track, double frame, double fallback) {
    const Values v = track.at(frame);
    return v.empty() ? fallback : v[0];
}

// Rows are the images of the layer's axes: z towards the target, x level, y down.
Matrix4 lookAt(Vec3 from, Vec3 to) {
    const Vec3 z = normalize(to - from);
    Vec3 x = cross(Vec3{0, 1, 0}, z);
    if (length(z) == 0.0) return Matrix4::identity();
    x = length(x) < 1e-9 ? Vec3{1, 0, 0} : normalize(x);
    Matrix4 m;
    m.setRow(0, x);
    m.setRow(1, cross(z, x));
    m.setRow(2, z);
    return m;
}

}  // namespace

bool CompLayer::activeAt(double frame) const {
    return active.empty() || active.at(frame)[0] >= 0.5;
}

Matrix4 CompLayer::worldFromLayer(double frame) const {
    Matrix4 m;
    const Values given = matrix.at(frame);
    if (given.size() == 16) {
        for (std::size_t i = 0; i < 16; ++i)
            m.m[i / 4][i % 4] = given[i];
        return m;
    }
    const Vec3 origin = vector(position, frame, {});
    // Of both triples z acts first on a point, x last, as in the host's transform chain.
    m = Matrix4::rotation(vector(rotation, frame, {}), "xyz") *
        Matrix4::rotation(vector(orientation, frame, {}), "xyz");
    if (!interest.empty()) m = m * lookAt(origin, vector(interest, frame, {}));
    return m * Matrix4::translation(origin);
}

bool CompLayer::streamValue(AEGP_LayerStream stream, double frame, AEGP_StreamVal& value,
                            AEGP_StreamType& kind) const {
    std::memset(&value, 0, sizeof value);
    kind = AEGP_StreamType_OneD;
    const bool camera = type == AEGP_ObjectType_CAMERA;
    const bool light = type == AEGP_ObjectType_LIGHT;
    const bool spot = light && lightType == AEGP_LightType_SPOT;
    const bool shadows = light && lightType != AEGP_LightType_AMBIENT;
    switch (stream) {
        case AEGP_LayerStream_POSITION: {
            const Vec3 p = worldFromLayer(frame).origin();
            value.three_d = {p.x, p.y, p.z};
            kind = AEGP_StreamType_ThreeD_SPATIAL;
            return true;
        }
        case AEGP_LayerStream_ZOOM:
            value.one_d = scalar(zoom, frame, 0.0);
            return camera;
        case AEGP_LayerStream_INTENSITY:
            value.one_d = scalar(intensity, frame, 100.0);
            return light;
        case AEGP_LayerStream_COLOR: {
            const Vec3 c = vector(color, frame, {1, 1, 1});
            value.color = {1.0, c.x, c.y, c.z};
            kind = AEGP_StreamType_COLOR;
            return light;
        }
        case AEGP_LayerStream_CONE_ANGLE:
            value.one_d = scalar(coneAngle, frame, spot ? 90.0 : 0.0);
            return light;
        case AEGP_LayerStream_CONE_FEATHER:
            value.one_d = scalar(coneFeather, frame, spot ? 50.0 : 0.0);
            return light;
        case AEGP_LayerStream_SHADOW_DARKNESS:
            value.one_d = scalar(shadowDarkness, frame, 100.0);
            return shadows;
        case AEGP_LayerStream_SHADOW_DIFFUSION:
            value.one_d = scalar(shadowDiffusion, frame, 0.0);
            return shadows;
        case AEGP_LayerStream_CASTS_SHADOWS:
            value.one_d = scalar(castsShadows, frame, 0.0);
            return shadows;
        default:
            return false;
    }
}

Comp::Comp(int width, int height) : width_(width), height_(height) {
    CompLayer layer;
    layer.name = "effect layer";
    layers_.push_back(std::move(layer));
}

int Comp::activeCamera(double frame) const {
    for (std::size_t i = 0; i < layers_.size(); ++i)
        if (layers_[i].type == AEGP_ObjectType_CAMERA && layers_[i].activeAt(frame))
            return static_cast<int>(i);
    return -1;
}

std::map<std::string, std::shared_ptr<ImageSource>> Comp::images() const {
    std::map<std::string, std::shared_ptr<ImageSource>> images;
    for (const CompLayer& layer : layers_)
        if (layer.image != nullptr) images.emplace(layer.name, layer.image);
    return images;
}

}  // namespace orvin::stand_in
