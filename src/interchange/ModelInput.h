// ModelInput: the bytes of a model file through a window, so that no file lies in memory whole.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <limits>
#include <memory>
#include <optional>
#include <span>
#include <string_view>
#include <vector>

namespace orvin {

using Bytes = std::span<const std::uint8_t>;

class ModelInput {
  public:
    static constexpr std::size_t kWindow = 1 << 16;

    /// A regular file; none, with "Cannot open '...'." on standard error, where it can't be opened.
    static std::optional<ModelInput> open(const std::filesystem::path& path);

    /// Bytes in memory, which must outlive this. They are seen as they lie there; with a window
    /// they are read through it as a file is.
    explicit ModelInput(Bytes memory, std::optional<std::size_t> window = std::nullopt);
    explicit ModelInput(std::string_view text, std::optional<std::size_t> window = std::nullopt)
        : ModelInput(Bytes(reinterpret_cast<const std::uint8_t*>(text.data()), text.size()),
                     window) {}

    std::size_t size() const { return size_; }

    /// True where the file couldn't be read to its end: what was missing came as zeros.
    bool failed() const { return failed_; }

    /// `count` bytes at `at`, all of them in the file. They hold until the next call.
    const std::uint8_t* bytes(std::size_t at, std::size_t count) {
        const std::size_t from = at - start_;
        if (from < view_.size() && view_.size() - from >= count) return view_.data() + from;
        return look(at, count).data();
    }

    /// The bytes from `at` to the window's end: at least `count`, or all that the file has. They
    /// hold until the next call.
    Bytes look(std::size_t at, std::size_t count);

  private:
    struct Close {
        void operator()(std::FILE* file) const { std::fclose(file); }
    };

    ModelInput() = default;
    void read(std::size_t at, std::span<std::uint8_t> to);

    std::unique_ptr<std::FILE, Close> file_;
    Bytes memory_;  // in its place
    std::size_t size_ = 0;
    std::size_t window_ = kWindow;
    bool failed_ = false;
    std::vector<std::uint8_t> buffer_;
    Bytes view_;  // what is seen of the file, from start_ on
    std::size_t start_ = 0;
};

}  // namespace orvin
