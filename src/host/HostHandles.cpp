#include "host/HostHandles.h"

namespace orvin {

Handle HostHandles::allocate(std::size_t size) {
    return utils_ != nullptr ? utils_->host_new_handle(size) : nullptr;
}

void* HostHandles::lock(Handle handle) {
    return utils_ != nullptr ? utils_->host_lock_handle(handle) : nullptr;
}

void HostHandles::unlock(Handle handle) {
    if (utils_ != nullptr) utils_->host_unlock_handle(handle);
}

std::size_t HostHandles::size(Handle handle) {
    return utils_ != nullptr ? static_cast<std::size_t>(utils_->host_get_handle_size(handle)) : 0;
}

bool HostHandles::resize(Handle& handle, std::size_t size) {
    return utils_ != nullptr && utils_->host_resize_handle(size, &handle) == PF_Err_NONE;
}

void HostHandles::dispose(Handle handle) {
    if (utils_ != nullptr) utils_->host_dispose_handle(handle);
}

}  // namespace orvin
