#include "scene/SceneStream.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "toolkit/Numbers.h"

namespace orvin {

namespace {

constexpr std::size_t kFirstStackCapacity = 12;

constexpr auto kBlanks = [] {
    std::array<char, kLineCapacity> blanks{};
    blanks.fill(' ');
    return blanks;
}();

}  // namespace

SceneStream::SceneStream(Persistent* root) {
    stack_.reserve(kFirstStackCapacity);
    if (root != nullptr) stack_.push_back(root);
}

// ---- writing

Result SceneStream::putLine() {
    std::string_view text = line_.view();
    if (text.ends_with('\n')) text.remove_suffix(1);
    const std::size_t depth = std::min(stack_.size(), kLineCapacity);
    const bool fits = !line_.overflowed() && depth + text.size() + 1 <= kLineCapacity;
    const Result result = fits ? storeLine({kBlanks.data(), depth}, text) : kFailure;
    if (result != kSuccess) writeFailed_ = true;
    line_.clear();
    return result;
}

Result SceneStream::putText(std::string_view key, std::string_view value) {
    line_.clear().text(key).character(' ').quoted(value);
    return putLine();
}

Result SceneStream::putName(std::string_view key, std::string_view name) {
    line_.clear().text(key).character(' ').quotedName(name);
    return putLine();
}

Result SceneStream::putWord(std::string_view key, std::string_view word) {
    line_.clear().text(key).character(' ').text(word);
    return putLine();
}

Result SceneStream::putDouble(std::string_view key, double value) {
    return putDoubles(key, {&value, 1});
}

Result SceneStream::putDoubles(std::string_view key, std::span<const double> values) {
    line_.clear().text(key);
    for (const double value : values)
        line_.character(' ').number(value);
    return putLine();
}

Result SceneStream::putVector(std::string_view key, Vec3 value) {
    const double values[3] = {value.x, value.y, value.z};
    return putDoubles(key, values);
}

Result SceneStream::putInt(std::string_view key, long long value) {
    line_.clear().text(key).character(' ').whole(value);
    return putLine();
}

Result SceneStream::putAuxLine() {
    return kSuccess;
}

Result SceneStream::writeObject(Persistent& object) {
    line_.clear().text("begin ").text(object.className());
    if (const Result result = putLine(); result != kSuccess) return result;
    push(object);
    const Result body = object.writeBody(*this);
    pop();
    if (body != kSuccess) return body;
    line_.clear().text("end ").text(object.className());
    return putLine();
}

// ---- reading

Result SceneStream::nextToken(std::string_view& token) {
    const Result result = reader_.next(token);
    if (result == kSuccess && token == kEndOfStream && !reader_.delimiterPending())
        return atEndMark();
    return result;
}

Result SceneStream::nextToken(std::string& token, std::size_t capacity) {
    std::string_view word;
    const Result result = nextToken(word);
    if (result != kSuccess) return result;
    word = word.substr(0, capacity - 1);
    token = word.substr(0, word.find('\0'));
    return kSuccess;
}

Result SceneStream::readText(std::string& value, std::size_t capacity) {
    return nextToken(value, capacity) == kSuccess ? kSuccess : kFailure;
}

Result SceneStream::readDouble(double& value) {
    std::string_view token;
    if (nextToken(token) != kSuccess || !orvin::readDouble(token, value)) return kFailure;
    return kSuccess;
}

Result SceneStream::readFloat(float& value) {
    double wide = 0.0;
    if (readDouble(wide) != kSuccess) return kFailure;
    constexpr auto kLargest = static_cast<double>(std::numeric_limits<float>::max());
    if (std::abs(wide) > kLargest) wide = std::copysign(HUGE_VAL, wide);
    value = static_cast<float>(wide);
    return kSuccess;
}

Result SceneStream::readVector3(Vec3& value) {
    for (int axis = 0; axis < 3; ++axis)
        if (readDouble(value[axis]) != kSuccess) return kFailure;
    return kSuccess;
}

Result SceneStream::readVector2(Vec2& value) {
    if (readDouble(value.x) != kSuccess) return kFailure;
    return readDouble(value.y);
}

Result SceneStream::readColor(std::span<float> channels) {
    for (float& channel : channels)
        if (readFloat(channel) != kSuccess) return kFailure;
    return kSuccess;
}

Result SceneStream::readInt(int& value) {
    std::string_view token;
    if (nextToken(token) != kSuccess) return kFailure;
    if (token == "on" || token == "off") {
        value = token == "on" ? 1 : 0;
        return kSuccess;
    }
    return readWhole(token, value) ? kSuccess : kFailure;
}

Result SceneStream::readBool(bool& value) {
    int number = 0;
    if (readInt(number) != kSuccess) return kFailure;
    value = number != 0;
    return kSuccess;
}

// ---- command stack

void SceneStream::pop() {
    if (!stack_.empty()) stack_.pop_back();
}

void SceneStream::unwind(std::size_t depth) {
    if (stack_.size() > depth) stack_.resize(depth);
}

}  // namespace orvin
