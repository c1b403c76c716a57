#include "orvinhost/RenderJob.h"

#include <atomic>
#include <chrono>
#include <exception>
#include <thread>

namespace orvin::stand_in {
namespace {

using Clock = std::chrono::steady_clock;

double secondsSince(Clock::time_point start) {
    return std::chrono::duration<double>(Clock::now() - start).count();
}

// Shows the effect's progress while it lives.
class ShowProgress {
  public:
    ShowProgress(Host& host, std::function<void(double)> show) : host_(host) {
        host_.setProgress(std::move(show));
    }
    ~ShowProgress() { host_.setProgress({}); }
    ShowProgress(const ShowProgress&) = delete;
    ShowProgress& operator=(const ShowProgress&) = delete;

  private:
    Host& host_;
};

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
    job.out = apps::FramePattern(apps::pngOption(parsed.value("--out"), "--out"));
    if (job.session.input == parsed.value("--out"))
        throw apps::UsageError("--out would take the place of --input");
    job.reload = parsed.has("--reload");
    job.renderThread = parsed.has("--render-thread");
    if (job.reload && job.renderThread)
        throw apps::UsageError("--reload and --render-thread: only one of them");
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

void RenderJob::renderFrame(Session& run, Instance& instance, int frame) const {
    const HostSettings& settings = run.host().settings();
    if ((run.host().outFlags2 & PF_OutFlag2_SUPPORTS_QUERY_DYNAMIC_FLAGS) != 0)
        Session::require(instance.queryDynamicFlags(frame), PF_Cmd_QUERY_DYNAMIC_FLAGS);
    const auto scaled = [&settings](int side) {
        return (side + settings.downsample - 1) / settings.downsample;
    };
    World output(scaled(settings.width), scaled(settings.height));
    run.host().requirePictures(frame);
    const Clock::time_point start = Clock::now();
    const Outcome outcome = instance.render(frame, output);
    nlohmann::ordered_json note{
        {"frame", frame}, {"error", outcome.error}, {"seconds", secondsSince(start)}};
    if (!outcome.message.empty()) note["message"] = outcome.message;
    if (outcome.aborted) note["aborted"] = true;
    const std::filesystem::path file = out.path(frame);
    if (!outcome.aborted && !outcome.failed()) {
        apps::writePng(file, output.picture());
        note["file"] = file.string();
    }
    run.noteFrame(std::move(note));
    if (outcome.aborted)
        throw apps::Failure("frame " + std::to_string(frame) + ": stopped by the host after " +
                            std::to_string(settings.abortAfter) + " polls, result " +
                            std::to_string(outcome.error));
    Session::require(outcome, PF_Cmd_RENDER);
    // The effect asked for its panel to be drawn again.
    if (frame == frames.first && !renderThread && (outcome.flags & PF_OutFlag_REFRESH_UI) != 0)
        run.drawPanel(frame);
}

void RenderJob::renderFrames(Session& run, Instance& instance, apps::ProgressBar& bar) const {
    int done = 0;
    const ShowProgress show(
        run.host(), [&bar, &done, this](double part) { bar.update((done + part) / count()); });
    for (int frame = frames.first; frame <= frames.last; frame += frames.step, ++done) {
        bar.update(static_cast<double>(done) / count());
        renderFrame(run, instance, frame);
        if (frame == frames.first && !renderThread) afterFirstFrame(run);
    }
}

void RenderJob::afterFirstFrame(Session& run) const {
    const std::vector<std::uint8_t> flat = flattenAndGoOn(run);
    if (!reload) return;
    run.closeInstance();
    run.reopenInstance(flat);
}

// As today's hosts do it: the render thread has an instance of its own, made from a copy of the
// project, while commands of the user interface go on here.
void RenderJob::renderOnThread(Session& run, apps::ProgressBar& bar) const {
    const std::vector<std::uint8_t> flat = flattenAndGoOn(run);
    std::exception_ptr failure;
    std::atomic<bool> over = false;
    std::thread thread([&] {
        try {
            Instance copy(run.host(), run.entry());
            Session::require(copy.resetup(flat), PF_Cmd_SEQUENCE_RESETUP);
            try {
                renderFrames(run, copy, bar);
            } catch (...) {
                failure = std::current_exception();
            }
            Session::require(copy.sequenceSetdown(), PF_Cmd_SEQUENCE_SETDOWN);
        } catch (...) {
            failure = std::current_exception();
        }
        over = true;
    });
    while (!over) {
        run.instance().plainEvent(PF_Event_IDLE, frames.first);
        std::this_thread::sleep_for(std::chrono::milliseconds(2));
    }
    thread.join();
    if (failure) std::rethrow_exception(failure);
}

void RenderJob::run(Session& run) const {
    apps::ProgressBar bar("render", session.quiet);
    run.openInstance();
    run.drawPanel(frames.first);
    if (renderThread)
        renderOnThread(run, bar);
    else
        renderFrames(run, run.instance(), bar);
    if (saveFlat) apps::writeFile(*saveFlat, flattenAndGoOn(run));
}

}  // namespace orvin::stand_in
