#include "host/ParameterTable.h"

namespace orvin {

namespace {

/// Appends entries and gives each its id. Ids are written into projects and never change, which is
/// why the later additions (ortho size, Use Comp boxes) stand out of order.
class TableBuilder {
  public:
    explicit TableBuilder(HostGeneration host) : host_(host) {}

    void group(int id, std::string name) {
        if (host_.hasGroups) add(ParameterKind::kGroupStart, id, std::move(name));
    }
    void endGroup(int id) {
        if (host_.hasGroups) add(ParameterKind::kGroupEnd, id, {});
    }
    void checkbox(int id, const char* label, bool animated) {
        ParameterEntry& entry = add(ParameterKind::kCheckbox, id, {});
        entry.text = label;
        entry.animated = animated;
    }
    void slider(int id, std::string name, double initial, double valid, double slider) {
        range(id, std::move(name), initial, -valid, valid, -slider, slider);
    }
    void range(int id, std::string name, double initial, double validMin, double validMax,
               double sliderMin, double sliderMax) {
        ParameterEntry& entry = add(ParameterKind::kSlider, id, std::move(name));
        entry.initial = initial;
        entry.validMin = validMin;
        entry.validMax = validMax;
        entry.sliderMin = sliderMin;
        entry.sliderMax = sliderMax;
    }
    ParameterEntry& add(ParameterKind kind, int id, std::string name) {
        ParameterEntry& entry = table_.emplace_back();
        entry.kind = kind;
        entry.id = id;
        entry.name = std::move(name);
        return entry;
    }
    std::vector<ParameterEntry> take() { return std::move(table_); }

  private:
    HostGeneration host_;
    std::vector<ParameterEntry> table_;
};

void addCamera(TableBuilder& t) {
    t.group(2, "Camera");
    ParameterEntry& type = t.add(ParameterKind::kPopup, 3, "Camera Type");
    type.text = "Orbit|Look At|Hand Held";
    type.initial = 1;
    t.slider(4, "(L,H) Camera Eye X", 300, 30000, 3000);
    t.slider(5, "(L,H) Camera Eye Y", 500, 30000, 3000);
    t.slider(6, "(L,H) Camera Eye Z", 500, 30000, 3000);
    t.slider(7, "(O,L) Camera Target X", 0, 30000, 3000);
    t.slider(8, "(O,L) Camera Target Y", 0, 30000, 3000);
    t.slider(9, "(O,L) Camera Target Z", -15, 30000, 3000);
    t.range(10, "(O) Camera Distance", 907, 0, 30000, 0, 3000);
    t.slider(11, "(O,H) Camera Tumble Left", 30, 30000, 1800);
    t.slider(12, "(O,H) Camera Tumble Up", -20, 30000, 1800);
    t.slider(13, "(O,L,H) Camera Roll", 0, 30000, 360);
    t.range(122, "(O,L,H) Camera Ortho Size", 500, 0.1, 5000, 1, 1000);
    t.endGroup(14);
}

void addLights(TableBuilder& t) {
    struct Light {
        std::array<std::uint8_t, 3> color;
        double intensity, direction, elevation;
    };
    constexpr Light kLights[param::kLightCount] = {{{255, 255, 255}, 100, -38, -42},
                                                   {{255, 222, 178}, 80, 94, 48},
                                                   {{255, 181, 161}, 30, -170, 11}};
    t.group(15, "Lights");
    int id = 16;
    for (int i = 0; i < param::kLightCount; ++i) {
        const Light& light = kLights[i];
        const std::string name = "Light " + std::to_string(i + 1);
        t.group(id, name);
        t.add(ParameterKind::kColor, id + 1, name + " Color").color = light.color;
        t.range(id + 2, name + " Intensity", light.intensity, 0, 300, 0, 200);
        t.slider(id + 3, name + " Direction", light.direction, 7200, 360);
        t.slider(id + 4, name + " Elevation", light.elevation, 7200, 90);
        t.endGroup(id + 5);
        id += 6;
    }
    t.endGroup(34);
}

void addSets(TableBuilder& t, int setCount) {
    t.group(35, "Sets");
    for (int k = 1; k < setCount; ++k) {
        const int id = 36 + 9 * (k - 1);
        const std::string name = "Set " + std::to_string(k);
        t.group(id, name);
        const char* const sliders[] = {" X Position", " Y Position", " Z Position",
                                       " X Rotation", " Y Rotation", " Z Rotation"};
        for (int i = 0; i < 6; ++i)
            t.slider(id + 1 + i, name + sliders[i], 0, 30000, 3000);
        t.range(id + 7, name + " Depth Scale", 100, 0, 30000, 0, 500);
        t.endGroup(id + 8);
    }
    t.endGroup(108);
}

}  // namespace

std::vector<ParameterEntry> parameterTable(HostGeneration host) {
    TableBuilder t(host);
    t.add(ParameterKind::kPanel, 1, "Scene Preview");
    if (host.hasCompLinks) {
        t.checkbox(123, "Use Comp Camera", false);
        t.checkbox(124, "Use Comp Lights", false);
    }
    addCamera(t);
    addLights(t);
    addSets(t, setCountFor(host));
    t.group(109, "Layer Maps");
    for (int n = 1; n <= param::kLayerMapCount; ++n)
        t.add(ParameterKind::kLayer, 109 + n, "Layer Map " + std::to_string(n));
    t.endGroup(120);
    t.checkbox(121, "Composite On Original", true);
    return t.take();
}

}  // namespace orvin
