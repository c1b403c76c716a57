// A host for tests: memory handles that count locks and remember what was done to them wrongly,
// suites that count their users, parameters to check out, and the life of sequence data.
#pragma once

#include <cstdint>
#include <cstring>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <utility>
#include <vector>

#include "host/Entry.h"

namespace orvin {

class FakeHost {
  public:
    FakeHost() {
        current() = this;
        utils_.host_new_handle = newHandle;
        utils_.host_lock_handle = lockHandle;
        utils_.host_unlock_handle = unlockHandle;
        utils_.host_dispose_handle = disposeHandle;
        utils_.host_get_handle_size = handleSize;
        utils_.host_resize_handle = resizeHandle;
        basic_.AcquireSuite = acquireSuite;
        basic_.ReleaseSuite = releaseSuite;
    }
    ~FakeHost() { current() = nullptr; }
    FakeHost(const FakeHost&) = delete;
    FakeHost& operator=(const FakeHost&) = delete;

    PF_SpecVersion version{13, 0};
    std::uint64_t largestHandle = ~std::uint64_t{0};  // larger requests are refused
    std::vector<PF_ParamDef> params = std::vector<PF_ParamDef>(125);
    A_long currentTime = 0;
    A_long timeStep = 1;
    A_long totalTime = 100;
    PF_RationalScale pixelAspect{1, 1};
    bool refusesLocks = false;

    std::vector<std::string> mistakes;  // of the effect
    std::vector<std::string> suiteLog;  // "+name version" and "-name version"
    std::map<std::pair<std::string, int>, const void*> suites;
    int checkedOut = 0;
    int progressCalls = 0;
    int abortCalls = 0;
    PF_Err abortAnswer = 0;
    PF_OutData out{};  // of the last command

    std::size_t handleCount() const { return blocks_.size(); }

    PF_InData inData() {
        PF_InData in{};
        in.utils = &utils_;
        in.pica_basicP = &basic_;
        in.version = version;
        in.quality = PF_Quality_HI;
        in.current_time = currentTime;
        in.time_step = timeStep;
        in.total_time = totalTime;
        in.time_scale = 25;
        in.width = 64;
        in.height = 48;
        in.downsample_x = in.downsample_y = {1, 1};
        in.pixel_aspect_ratio = pixelAspect;
        in.inter.checkout_param = checkoutParam;
        in.inter.checkin_param = checkinParam;
        in.inter.progress = progress;
        in.inter.abort = abort;
        return in;
    }

    /// A command without sequence data.
    PF_Err call(PF_Cmd cmd) {
        PF_Handle none = nullptr;
        return call(cmd, none);
    }

    /// A command on an instance, whose sequence data follows what the effect answers.
    PF_Err call(PF_Cmd cmd, PF_Handle& sequence, void* extra = nullptr) {
        PF_OutData answer{};
        const PF_Err error = call(cmd, sequence, answer, extra);
        out = answer;
        return error;
    }

    PF_Err call(PF_Cmd cmd, PF_Handle& sequence, PF_OutData& answer, void* extra) {
        PF_InData in = inData();
        in.sequence_data = sequence;
        answer.sequence_data = sequence;
        std::vector<PF_ParamDef*> array;
        for (PF_ParamDef& param : params)
            array.push_back(&param);
        const PF_Err error = effectMain(cmd, &in, &answer, array.data(), world, extra);
        sequence = answer.sequence_data;
        return error;
    }
    PF_LayerDef* world = nullptr;

    PF_Handle handleOf(const void* bytes, std::size_t size) {
        PF_Handle handle = newHandle(size);
        if (size > 0) std::memcpy(*handle, bytes, size);
        return handle;
    }
    PF_Handle handleOf(const std::string& bytes) { return handleOf(bytes.data(), bytes.size()); }
    std::string bytesOf(PF_Handle handle) {
        return {static_cast<const char*>(*handle), block(handle)->bytes.size()};
    }
    void dispose(PF_Handle handle) { disposeHandle(handle); }

    int locks() {
        const std::lock_guard<std::mutex> guard(mutex_);
        int sum = 0;
        for (const auto& [handle, b] : blocks_)
            sum += b->locks;
        return sum;
    }

  private:
    struct Block {
        void* data = nullptr;
        std::vector<std::uint8_t> bytes;
        int locks = 0;
    };

    static FakeHost*& current() {
        static FakeHost* host = nullptr;
        return host;
    }

    Block* block(PF_Handle handle) {
        const auto found = blocks_.find(handle);
        if (found != blocks_.end()) return found->second.get();
        mistakes.emplace_back("unknown handle");
        return nullptr;
    }

    static PF_Handle newHandle(A_HandleSize size) {
        FakeHost& host = *current();
        const std::lock_guard<std::mutex> guard(host.mutex_);
        if (size > host.largestHandle) return nullptr;
        auto made = std::make_unique<Block>();
        made->bytes.assign(size, 0xCD);
        made->data = made->bytes.data();
        PF_Handle handle = &made->data;
        host.blocks_[handle] = std::move(made);
        return handle;
    }
    static void* lockHandle(PF_Handle handle) {
        FakeHost& host = *current();
        const std::lock_guard<std::mutex> guard(host.mutex_);
        Block* b = host.block(handle);
        if (b == nullptr) return nullptr;
        ++b->locks;
        return host.refusesLocks ? nullptr : b->data;
    }
    static void unlockHandle(PF_Handle handle) {
        FakeHost& host = *current();
        const std::lock_guard<std::mutex> guard(host.mutex_);
        Block* b = host.block(handle);
        if (b != nullptr && --b->locks < 0) host.mistakes.emplace_back("unlocked too often");
    }
    static void disposeHandle(PF_Handle handle) {
        FakeHost& host = *current();
        const std::lock_guard<std::mutex> guard(host.mutex_);
        const Block* b = host.block(handle);
        if (b == nullptr) return;
        if (b->locks != 0) host.mistakes.emplace_back("disposed of while locked");
        host.blocks_.erase(handle);
    }
    static A_HandleSize handleSize(PF_Handle handle) {
        FakeHost& host = *current();
        const std::lock_guard<std::mutex> guard(host.mutex_);
        const Block* b = host.block(handle);
        return b != nullptr ? b->bytes.size() : 0;
    }
    static PF_Err resizeHandle(A_HandleSize size, PF_Handle* handle) {
        FakeHost& host = *current();
        const std::lock_guard<std::mutex> guard(host.mutex_);
        Block* b = host.block(*handle);
        if (b == nullptr || size > host.largestHandle) return PF_Err_OUT_OF_MEMORY;
        if (b->locks != 0) host.mistakes.emplace_back("resized while locked");
        b->bytes.resize(size);
        b->bytes.shrink_to_fit();
        b->data = b->bytes.data();
        return PF_Err_NONE;
    }

    static PF_Err checkoutParam(PF_ProgPtr, PF_ParamIndex index, A_long, A_long, A_u_long,
                                PF_ParamDef* param) {
        FakeHost& host = *current();
        if (index < 0 || static_cast<std::size_t>(index) >= host.params.size())
            return PF_Err_INVALID_INDEX;
        ++host.checkedOut;
        *param = host.params[static_cast<std::size_t>(index)];
        return PF_Err_NONE;
    }
    static PF_Err checkinParam(PF_ProgPtr, PF_ParamDef*) {
        --current()->checkedOut;
        return PF_Err_NONE;
    }
    static PF_Err progress(PF_ProgPtr, A_long, A_long) {
        ++current()->progressCalls;
        return PF_Err_NONE;
    }
    static PF_Err abort(PF_ProgPtr) {
        ++current()->abortCalls;
        return current()->abortAnswer;
    }

    static SPErr acquireSuite(const char* name, std::int32_t number, const void** suite) {
        FakeHost& host = *current();
        const auto found = host.suites.find({name, number});
        if (found == host.suites.end()) return kSPSuiteNotFoundError;
        host.suiteLog.push_back("+" + std::string(name) + " " + std::to_string(number));
        *suite = found->second;
        return kSPNoError;
    }
    static SPErr releaseSuite(const char* name, std::int32_t number) {
        current()->suiteLog.push_back("-" + std::string(name) + " " + std::to_string(number));
        return kSPNoError;
    }

    std::mutex mutex_;
    std::map<PF_Handle, std::unique_ptr<Block>> blocks_;
    PF_UtilCallbacks utils_{};
    SPBasicSuite basic_{};
};

}  // namespace orvin
