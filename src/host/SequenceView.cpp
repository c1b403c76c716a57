#include "host/SequenceView.h"

#include "host/HostState.h"
#include "host/OrvinApp.h"
#include "host/Stash.h"

namespace orvin {

namespace {

bool hasTag(std::span<const std::uint8_t> bytes, std::string_view tag) {
    return bytes.size() >= kTagSize && std::memcmp(bytes.data(), tag.data(), kTagSize) == 0;
}

}  // namespace

const void* SequenceRecord::liveMark() {
    static const char mark = 0;
    return &mark;
}

bool isLiveRecord(std::span<const std::uint8_t> bytes) {
    if (bytes.size() < sizeof(SequenceRecord) || !hasTag(bytes, kLiveTag)) return false;
    const void* mark = nullptr;
    std::memcpy(&mark, bytes.data() + offsetof(SequenceRecord, mark), sizeof mark);
    return mark == SequenceRecord::liveMark();
}

void SequenceView::open(Handle handle) {
    close();
    if (handle == nullptr) return;
    data_ = memory_.lock(handle);
    if (data_ == nullptr) {
        memory_.unlock(handle);
        return;
    }
    handle_ = handle;
    isLive_ = isLiveRecord(bytes());
    gSequenceRecord = record();
    if (!isLive_) return;
    gApp = record()->app;
    gApp->applyHardShadingAngle();
    if (gStashedLiveHandle == handle)
        takeStash();  // the host goes on with it as if it had never been flattened
    else
        dropStash(memory_);
}

void SequenceView::close() {
    if (data_ != nullptr) memory_.unlock(handle_);
    handle_ = nullptr;
    data_ = nullptr;
    isLive_ = false;
    gSequenceRecord = nullptr;
    gApp = nullptr;
}

bool SequenceView::isFlat() const {
    return !empty() && hasTag(bytes(), kFlatTag);
}

SequenceRecord* SequenceView::record() const {
    return isLive_ ? static_cast<SequenceRecord*>(data_) : nullptr;
}

std::span<const std::uint8_t> SequenceView::bytes() const {
    if (data_ == nullptr) return {};
    return {static_cast<const std::uint8_t*>(data_), memory_.size(handle_)};
}

}  // namespace orvin
