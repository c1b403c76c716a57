#include "scene/HandleMemory.h"

#include <algorithm>
#include <cstdlib>
#include <limits>

namespace orvin {

// The handle is the address of the first field.
struct PlainHandleMemory::Block {
    void* data = nullptr;
    std::unique_ptr<void, decltype(&std::free)> bytes{nullptr, std::free};
    std::size_t size = 0;
    int locks = 0;
};

PlainHandleMemory::PlainHandleMemory() : largestBlock_(std::numeric_limits<std::size_t>::max()) {}
PlainHandleMemory::~PlainHandleMemory() = default;

PlainHandleMemory::Block& PlainHandleMemory::block(Handle handle) {
    return *reinterpret_cast<Block*>(handle);
}

Handle PlainHandleMemory::allocate(std::size_t size) {
    auto owned = std::make_unique<Block>();
    Handle handle = &owned->data;
    blocks_.push_back(std::move(owned));
    if (resize(handle, size)) return handle;
    dispose(handle);
    return nullptr;
}

void* PlainHandleMemory::lock(Handle handle) {
    ++block(handle).locks;
    return block(handle).data;
}

void PlainHandleMemory::unlock(Handle handle) {
    --block(handle).locks;
}

std::size_t PlainHandleMemory::size(Handle handle) {
    return block(handle).size;
}

bool PlainHandleMemory::resize(Handle& handle, std::size_t size) {
    Block& resized = block(handle);
    if (resized.locks != 0 || size > largestBlock_) return false;
    // realloc moves large blocks without a copy: streams grow them often.
    void* const bytes = std::realloc(resized.bytes.get(), std::max<std::size_t>(size, 1));
    if (bytes == nullptr) return false;
    static_cast<void>(resized.bytes.release());
    resized.bytes.reset(bytes);
    resized.data = bytes;
    resized.size = size;
    return true;
}

void PlainHandleMemory::dispose(Handle handle) {
    std::erase_if(blocks_, [handle](const auto& b) { return &b->data == handle; });
}

int PlainHandleMemory::lockCount(Handle handle) const {
    return block(handle).locks;
}

}  // namespace orvin
