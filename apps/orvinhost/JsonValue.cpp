#include "orvinhost/JsonValue.h"

#include "common/Files.h"
#include "common/Options.h"

#include <cmath>

namespace orvin::stand_in {
namespace {

double number(const nlohmann::json& json, const std::string& what) {
    if (json.is_boolean()) return json.get<bool>() ? 1.0 : 0.0;
    if (!json.is_number()) throw apps::Failure(what + ": a number was expected");
    const double value = json.get<double>();
    if (!std::isfinite(value)) throw apps::Failure(what + ": the number is too large");
    return value;
}

// Deep nesting would recurse deeply when the document is freed; no file of ours nests like that.
void refuseDeepNesting(const std::string& text, const std::filesystem::path& path) {
    int depth = 0;
    bool quoted = false;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const char c = text[i];
        if (quoted) {
            if (c == '\\') ++i;
            if (c == '"') quoted = false;
        } else if (c == '"') {
            quoted = true;
        } else if (c == '[' || c == '{') {
            if (++depth > 64) throw apps::Failure(path.string() + ": nested too deeply");
        } else if (c == ']' || c == '}') {
            --depth;
        }
    }
}

bool isSmooth(const nlohmann::json& keys) {
    return keys.size() > 1 && keys[0] == "smooth" && keys[1].is_array();
}

}  // namespace

nlohmann::json readJson(const std::filesystem::path& path) {
    const std::string text = apps::readText(path);
    refuseDeepNesting(text, path);
    try {
        return nlohmann::json::parse(text, nullptr, true, true);
    } catch (const nlohmann::json::exception& error) {
        throw apps::Failure(path.string() + ": " + error.what());
    }
}

Values jsonValues(const nlohmann::json& json, std::size_t count, const std::string& what) {
    if (count == 1 && !json.is_array()) return {number(json, what)};
    if (!json.is_array() || json.size() != count)
        throw apps::Failure(what + ": " +
                            (count == 1 ? std::string("a number was expected")
                                        : std::to_string(count) + " numbers were expected"));
    Values values;
    for (const nlohmann::json& part : json)
        values.push_back(number(part, what));
    return values;
}

bool isKeyList(const nlohmann::json& json) {
    return json.is_array() && !json.empty() && (json[0].is_array() || isSmooth(json));
}

Track jsonTrack(const nlohmann::json& json, std::size_t count, const std::string& what) {
    if (!isKeyList(json)) return Track(jsonValues(json, count, what));
    const bool smooth = isSmooth(json);
    std::vector<Track::Key> keys;
    for (std::size_t i = smooth ? 1 : 0; i < json.size(); ++i) {
        const nlohmann::json& key = json[i];
        if (!key.is_array() || key.size() != 2)
            throw apps::Failure(what + ": a key is [frame, value]");
        keys.push_back({number(key[0], what), jsonValues(key[1], count, what)});
    }
    return Track(std::move(keys), smooth ? Track::Between::kSmooth : Track::Between::kStraight);
}

}  // namespace orvin::stand_in
