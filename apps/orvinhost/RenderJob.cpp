#include "orvinhost/RenderJob.h"

#include "common/ProgressBar.h"

#include <chrono>
#include <cstdio>

namespace orvin::stand_in {
namespace {

using Clock = std::chrono::steady_clock;

double secondsSince(Clock::time_point start) {
    return std::chrono::duration<double>(Clock::now() - start).count();
}

// As when the host saves its project: the flat data is copied away, and the instance goes on.
std::vector<std::uint8_t> flattenAndGoOn(Session& session) {
    std::vector<std::uint8_t> flat;
    Session::require(session.instance().flatten(flat), PF_Cmd_SEQUENCE_FLATTEN);
    Session::require(session.instance().resetup(), PF_Cmd_SEQUENCE_RESETUP);
    return flat;
}

}  // namespace

RenderJob renderJob(const apps::ParsedOptions& parsed) {
    RenderJob job;
    job.session = sessionOptions(parsed);
    if (!job.session.project && !job.session.flat) throw apps::UsageError("a project is missing");
    if (!parsed.has("--out")) throw apps::UsageError("--out is missing");
    job.out = apps::FramePattern(parsed.value("--out"));
    job.reload = parsed.has("--reload");
    if (parsed.has("--save-flat")) job.saveFlat = parsed.value("--save-flat");
    HostSettings& settings = job.session.settings;
    if (parsed.has("--frames"))
        job.frames = apps::frameRangeOption(parsed.value("--frames"), "--frames");
    else if (settings.duration > 0)
        job.frames = {0, settings.duration - 1, 1};
    if (settings.duration == 0) settings.duration = std::max(1, job.frames.last + 1);
    if (job.frames.last > job.frames.first && !job.out.numbered())
        throw apps::UsageError("--out wants a number for several frames, like frame-%04d.png");
    job.session.firstFrame = job.frames.first;
    // The host counts time in 32 bits.
    const double last =
        static_cast<double>(settings.timeStep()) * std::max(settings.duration, job.frames.last + 1);
    if (last > 2147483647.0) throw apps::UsageError("--frames: too far for the frame rate's clock");
    return job;
}

void RenderJob::run(Session& run) const {
    Host& host = run.host();
    const HostSettings& settings = host.settings();
    const bool dynamic = (host.outFlags2 & PF_OutFlag2_SUPPORTS_QUERY_DYNAMIC_FLAGS) != 0;
    const int count = (frames.last - frames.first) / frames.step + 1;
    const auto scaled = [&settings](int side) {
        return (side + settings.downsample - 1) / settings.downsample;
    };
    apps::ProgressBar bar("render", session.quiet);
    int done = 0;
    host.setProgress([&bar, &done, count](double part) { bar.update((done + part) / count); });
    run.openInstance();
    run.drawPanel(frames.first);
    for (int frame = frames.first; frame <= frames.last; frame += frames.step, ++done) {
        bar.update(static_cast<double>(done) / count);
        if (dynamic)
            Session::require(run.instance().queryDynamicFlags(frame), PF_Cmd_QUERY_DYNAMIC_FLAGS);
        World output(scaled(settings.width), scaled(settings.height));
        const Clock::time_point start = Clock::now();
        const Outcome outcome = run.instance().render(frame, output);
        const double seconds = secondsSince(start);
        nlohmann::ordered_json note{
            {"frame", frame}, {"error", outcome.error}, {"seconds", seconds}};
        if (!outcome.message.empty()) note["message"] = outcome.message;
        if (outcome.aborted) note["aborted"] = true;
        if (outcome.aborted || outcome.failed()) {
            run.noteFrame(std::move(note));
            bar.clear();
            if (outcome.aborted)
                throw apps::Failure("frame " + std::to_string(frame) +
                                    ": stopped by the host after " +
                                    std::to_string(settings.abortAfter) + " polls, result " +
                                    std::to_string(outcome.error));
            Session::require(outcome, PF_Cmd_RENDER);
        }
        const std::filesystem::path file = out.path(frame);
        apps::writePng(file, output.picture());
        note["file"] = file.string();
        run.noteFrame(std::move(note));
        if (frame != frames.first) continue;
        if ((outcome.flags & PF_OutFlag_REFRESH_UI) != 0) run.drawPanel(frame);
        const std::vector<std::uint8_t> flat = flattenAndGoOn(run);
        if (!reload) continue;
        run.closeInstance();
        run.reopenInstance(flat);
    }
    bar.clear();
    if (saveFlat) apps::writeFile(*saveFlat, flattenAndGoOn(run));
}

}  // namespace orvin::stand_in
