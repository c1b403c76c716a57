#include "host/EffectResource.h"

#include <string_view>
#include <utility>

#include "host/EffectIdentity.h"
#include "host/abi/PiPL.h"

namespace orvin {

namespace {

class ResourceWriter {
  public:
    ResourceWriter() {
        put16(1);
        put32(0);
        put32(0);  // the number of properties, known at the end
    }

    void number(std::uint32_t key, std::uint32_t value) {
        head(key, 4);
        put32(value);
    }

    void pair(std::uint32_t key, unsigned first, unsigned second) {
        head(key, 4);
        put16(first);
        put16(second);
    }

    /// Two bytes that count, four that are stored.
    void shortNumber(std::uint32_t key, unsigned value) {
        head(key, 2);
        put16(value);
        put16(0);
    }

    /// `text` behind its length byte, or in front of a NUL.
    void pascalString(std::uint32_t key, std::string_view text) {
        head(key, padded(text.size() + 1));
        bytes_.push_back(static_cast<std::uint8_t>(text.size()));
        characters(text);
        pad();
    }
    void cString(std::uint32_t key, std::string_view text) {
        head(key, padded(text.size() + 1));
        characters(text);
        bytes_.push_back(0);
        pad();
    }

    std::vector<std::uint8_t> finish() {
        bytes_[kCountOffset] = static_cast<std::uint8_t>(count_);
        return std::move(bytes_);
    }

  private:
    static constexpr std::size_t kCountOffset = 6;
    static constexpr std::size_t kHeaderSize = 10;

    static std::uint32_t padded(std::size_t size) {
        return static_cast<std::uint32_t>((size + 3) / 4 * 4);
    }

    void put16(unsigned value) {
        bytes_.push_back(static_cast<std::uint8_t>(value & 0xFFU));
        bytes_.push_back(static_cast<std::uint8_t>(value >> 8 & 0xFFU));
    }
    void put32(std::uint32_t value) {
        put16(value & 0xFFFFU);
        put16(value >> 16);
    }

    void head(std::uint32_t key, std::uint32_t length) {
        put32(kPiPLVendor);
        put32(key);
        put32(0);
        put32(length);
        ++count_;
    }

    void characters(std::string_view text) {
        bytes_.insert(bytes_.end(), text.begin(), text.end());
    }

    void pad() {
        while ((bytes_.size() - kHeaderSize) % 4 != 0)
            bytes_.push_back(0);
    }

    std::vector<std::uint8_t> bytes_;
    unsigned count_ = 0;
};

}  // namespace

std::vector<std::uint8_t> effectResource() {
    ResourceWriter resource;
    resource.number(kPiPLKindProperty, kPiPLKindEffect);
    resource.pascalString(kPiPLNameProperty, kEffectName);
    resource.pascalString(kPiPLCategoryProperty, kEffectCategory);
    resource.cString(kPiPLCodeWin64X86, kEffectEntry);
    resource.pair(kPiPLVersionProperty, 2, 0);
    resource.pair(kPiPLSpecVersionProperty, kEffectSpecMajor, kEffectSpecMinor);
    resource.number(kPiPLEffectVersionProperty, kEffectVersion);
    resource.shortNumber(kPiPLInfoFlagsProperty, 0);
    resource.number(kPiPLOutFlagsProperty, static_cast<std::uint32_t>(kEffectOutFlags));
    resource.number(kPiPLOutFlags2Property, static_cast<std::uint32_t>(kEffectOutFlags2));
    resource.pascalString(kPiPLMatchNameProperty, kEffectMatchName);
    resource.number(kPiPLReservedInfoProperty, 0);
    return resource.finish();
}

}  // namespace orvin
