// SequenceView: one command's look at the sequence data. A stack value: it locks the handle when it
// opens and unlocks it when it closes.
#pragma once

#include <cstdint>
#include <span>

#include "host/SequenceRecord.h"
#include "scene/HandleMemory.h"

namespace orvin {

class SequenceView {
  public:
    explicit SequenceView(HandleMemory& memory) : memory_(memory) {}
    ~SequenceView() { close(); }
    SequenceView(const SequenceView&) = delete;
    SequenceView& operator=(const SequenceView&) = delete;

    /// Closes what was open and opens `handle` (null: leaves the view empty). A live record becomes
    /// the current one: gSequenceRecord, gApp and the shading code's hard angle follow, and a
    /// handle that this thread stashed before is given up.
    void open(Handle handle);
    void close();

    bool empty() const { return data_ == nullptr; }
    bool isLive() const { return isLive_; }
    /// True when the data is the flat form.
    bool isFlat() const;

    Handle handle() const { return handle_; }
    /// The record; null unless live.
    SequenceRecord* record() const;
    std::span<const std::uint8_t> bytes() const;

  private:
    HandleMemory& memory_;
    Handle handle_ = nullptr;
    void* data_ = nullptr;  // locked
    bool isLive_ = false;
};

/// True when `bytes` are those of a record that this process made.
bool isLiveRecord(std::span<const std::uint8_t> bytes);

}  // namespace orvin
