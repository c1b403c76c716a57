// orvinhost render: frames of a project into files.
#pragma once

#include "common/Files.h"
#include "common/ProgressBar.h"
#include "orvinhost/Session.h"

namespace orvin::stand_in {

struct RenderJob {
    SessionOptions session;
    apps::FramePattern out{""};
    apps::FrameRange frames;
    std::optional<std::filesystem::path> saveFlat;
    bool reload = false;        // set down and open again after the first frame
    bool renderThread = false;  // render on a thread of its own, from a copy of the project

    /// Throws Failure when a frame can't be rendered or written.
    void run(Session& session) const;

  private:
    int count() const { return (frames.last - frames.first) / frames.step + 1; }
    void renderFrames(Session& session, Instance& instance, apps::ProgressBar& bar) const;
    void renderFrame(Session& session, Instance& instance, int frame) const;
    void afterFirstFrame(Session& session) const;
    void renderOnThread(Session& session, apps::ProgressBar& bar) const;
};

/// Reads the command line. Throws UsageError.
RenderJob renderJob(const apps::ParsedOptions& parsed);

}  // namespace orvin::stand_in
