// orvinhost render: frames of a project into files.
#pragma once

#include "common/Files.h"
#include "orvinhost/Session.h"

namespace orvin::stand_in {

struct RenderJob {
    SessionOptions session;
    apps::FramePattern out{""};
    apps::FrameRange frames;
    std::optional<std::filesystem::path> saveFlat;
    bool reload = false;  // set down and open again after the first frame

    /// Throws Failure when a frame can't be rendered or written.
    void run(Session& session) const;
};

/// Reads the command line. Throws UsageError.
RenderJob renderJob(const apps::ParsedOptions& parsed);

}  // namespace orvin::stand_in
