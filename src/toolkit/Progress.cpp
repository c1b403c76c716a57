#include "toolkit/Progress.h"

#include <utility>

namespace orvin {

namespace {

struct ProgressHook {
    ProgressCallback callback;
    int stop = 0;
};

ProgressHook& hook() {
    thread_local ProgressHook instance;
    return instance;
}

}  // namespace

void setProgress(ProgressCallback callback) {
    hook() = {std::move(callback), 0};
}

int pollProgress(int current, int total) {
    ProgressHook& h = hook();
    if (h.stop == 0 && h.callback) h.stop = h.callback(current, total);
    return h.stop;
}

int progressStop() {
    return hook().stop;
}

void clearProgressStop() {
    hook().stop = 0;
}

}  // namespace orvin
