#include "interchange/ModelInput.h"

#include <algorithm>
#include <cstring>
#include <system_error>

#include "interchange/ModelFile.h"
#include "toolkit/platform/Platform.h"

namespace orvin {

std::optional<ModelInput> ModelInput::open(const std::filesystem::path& path) {
    // A pipe or a device would never end.
    std::error_code error;
    ModelInput input;
    if (std::filesystem::is_regular_file(path, error) && !error) {
        const std::uintmax_t size = std::filesystem::file_size(path, error);
        if (!error && size <= PTRDIFF_MAX) input.file_.reset(platform::openFile(path, "rb"));
        input.size_ = static_cast<std::size_t>(size);
    }
    if (!input.file_) {
        reportUnopened(path);
        return std::nullopt;
    }
    std::setvbuf(input.file_.get(), nullptr, _IONBF, 0);  // the window is one
    return input;
}

ModelInput::ModelInput(Bytes memory, std::optional<std::size_t> window)
    : memory_(memory), size_(memory.size()) {
    if (window)
        window_ = std::max<std::size_t>(*window, 1);
    else
        view_ = memory;
}

Bytes ModelInput::look(std::size_t at, std::size_t count) {
    count = std::min(count, size_ - at);
    std::size_t from = at - start_;
    if (from < view_.size() && view_.size() - from >= count) return view_.subspan(from);
    if (count == 0) return {};

    const std::size_t kept = from < view_.size() ? view_.size() - from : 0;
    if (buffer_.size() < std::max(count, std::min(window_, size_))) {
        // Twice as much each time, but never more than there is: someone looks for an end.
        const std::size_t size =
            std::min(std::max({count, window_, count > window_ ? 2 * buffer_.size() : 0}), size_);
        std::vector<std::uint8_t> larger(size);
        std::copy_n(view_.data() + from, kept, larger.data());
        buffer_ = std::move(larger);
    } else if (kept > 0) {
        std::memmove(buffer_.data(), view_.data() + from, kept);
    }
    const std::size_t length = std::min(buffer_.size(), size_ - at);
    read(at + kept, std::span(buffer_).first(length).subspan(kept));
    view_ = Bytes(buffer_).first(length);
    start_ = at;
    return view_;
}

void ModelInput::read(std::size_t at, std::span<std::uint8_t> to) {
    std::size_t got = 0;
    if (!file_) {
        got = to.size();
        std::copy_n(memory_.data() + at, got, to.data());
    } else if (!failed_ && platform::seek(file_.get(), at) == 0) {
        got = std::fread(to.data(), 1, to.size(), file_.get());
    }
    if (got == to.size()) return;
    failed_ = true;
    std::fill(to.begin() + static_cast<std::ptrdiff_t>(got), to.end(), std::uint8_t{0});
}

}  // namespace orvin
