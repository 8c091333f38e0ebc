// Exported files: the same as what is heard, whole or not there, and never in place of another.
#include "mix/export/exporter.h"

#include <numeric>

#include "audio/stream/file_source.h"
#include "export_fixture.h"
#include "mix/config/mix_builder.h"
#include "mix/export/export_job.h"
#include "mix/render/offline_render.h"
#include "support/child.h"
#include "support/full_disk.h"
#include "support/platform/manual_main_loop.h"
#include "support/refusal.h"
#include "support/traced.h"

namespace brindlehum::test {
namespace {

using Names = std::vector<std::string>;
constexpr double halfStep = 0.5001 / 8388607;  // of 24 bits; the rest is the test's own rounding

SourceFormat layout(LayoutID id) {
    return SourceFormat::speakers(speakers(id));
}

// The sound as a device would play it; each layout's speaker on the device channel that the file has for it.
Planes heard(const Exporter::Request& request, int64_t frames) {
    OutputProfile profile;
    std::optional<UpmixSettings> upmix;
    const bool onEars = request.mode == DragExport::binaural();
    profile.kind = onEars ? OutputProfile::Kind::headphones : OutputProfile::Kind::speakers;
    profile.layout = request.mode.layout;
    if (request.mode.kind == DragExport::Kind::upmix) { upmix = {true, UpmixPreset::broadcast, request.upmix}; }
    if (profile.layout == LayoutID::l714) { profile.outputs = {0, 1, 2, 3, 6, 7, 4, 5, 8, 9, 10, 11}; }
    const int channels = onEars ? 2 : int(speakers(profile.layout).size());
    const auto config = MixBuilder::config(request.source, request.info.channels, profile, channels, request.listen,
                                           request.rotation, request.monoToCenter, upmix);
    const FrameRange range = request.range.value_or(FrameRange{0, request.info.frames});
    auto reader = std::make_shared<StreamReader>(std::make_unique<FileSource>(request.info.url),
                                                 request.info.sampleRate, range.lower, range.upper, false, 0, 0);
    OfflineRender render(config, reader, request.info.sampleRate, channels, 256, 1);
    Planes out(static_cast<size_t>(channels));
    while (const int count = render.next()) {
        for (size_t c = 0; c < out.size(); ++c) {
            out[c].insert(out[c].end(), render.planes()[c], render.planes()[c] + count);
        }
    }
    for (auto& plane : out) { plane.resize(size_t(frames)); }
    return out;
}

using Export = ExportTest;

TEST_F(Export, IsWhatIsHeardInEachForm) {
    const struct {
        SourceFormat source;
        DragExport mode;
        std::optional<FrameRange> range;
        Rotation rotation;
        ListenMode listen;
    } cases[] = {
        {SourceFormat::mono(), DragExport::bed(LayoutID::l51), {}, {}, ListenMode::normal},
        {SourceFormat::stereo(), DragExport::bed(LayoutID::stereo), FrameRange{100, 9000}, {}, ListenMode::mono},
        {layout(LayoutID::l916), DragExport::bed(LayoutID::l714), FrameRange{1, 7000}, {}, ListenMode::normal},
        {layout(LayoutID::l51), DragExport::bed(LayoutID::l712), {}, {}, ListenMode::normal},
        {SourceFormat::ambisonic(1, AmbiNorm::fuma),
         DragExport::bed(LayoutID::l714),
         {},
         {30, 10, 0},
         ListenMode::normal},
        {SourceFormat::ambisonic(3, AmbiNorm::sn3d), DragExport::bed(LayoutID::stereo), {}, {}, ListenMode::normal},
        {SourceFormat::stereo(), DragExport::upmix(LayoutID::l714), FrameRange{3000, 9999}, {}, ListenMode::normal},
        {SourceFormat::stereo(), DragExport::upmix(LayoutID::l916), FrameRange{3000, 3100}, {}, ListenMode::normal},
        {layout(LayoutID::l51), DragExport::upmix(LayoutID::l714), {}, {}, ListenMode::normal},
        {layout(LayoutID::l714), DragExport::binaural(), {}, {}, ListenMode::normal},
        {SourceFormat::ambisonic(1, AmbiNorm::sn3d),
         DragExport::binaural(),
         FrameRange{0, 500},
         {90, 0, 0},
         ListenMode::normal},
    };
    for (const auto& c : cases) {
        Exporter::Request asked = request(noisePlanes(c.source.channels(), 10000), c.mode);
        asked.source = c.source;
        asked.range = c.range;
        asked.rotation = c.rotation;
        asked.listen = c.listen;
        const auto result = Exporter::make(asked);
        ASSERT_TRUE(result);
        const std::string what = result->url.filename().string() + " of " + c.source.displayName();
        const int64_t frames = (c.range ? c.range->length() : 10000) + (c.mode == DragExport::binaural() ? 12000 : 0);
        EXPECT_EQ(result->frames, frames) << what;
        const Planes file = written(result->url);
        const Planes expected = heard(asked, frames);
        ASSERT_EQ(file.size(), expected.size()) << what;
        double peak = 0;
        for (size_t channel = 0; channel < file.size(); ++channel) {
            for (const float sample : expected[channel]) { peak = std::max(peak, double(std::abs(sample))); }
            if (peak <= 1) { EXPECT_LT(largestDifference(file[channel], expected[channel]), halfStep) << what; }
        }
        EXPECT_NEAR(result->peak.value_or(0), peak, 1e-6) << what;
    }
}

TEST_F(Export, AnUntouchedOriginalIsTheFileItselfAndAPartOfItACopy) {
    const Planes planes = noisePlanes(6, 5000);
    Exporter::Request asked = request(planes);
    asked.listen = ListenMode::mono;  // for stereo only
    EXPECT_EQ(Exporter::make(asked)->url, folder_ / "rain.wav");
    EXPECT_TRUE(pulls().empty());
    asked.range = FrameRange{1000, 3000};
    writeAudio(folder_ / "rain.wav", planes, {.kind = FileKind::wav, .bits = 24});
    const Planes integers = readAudio(folder_ / "rain.wav").planes;
    for (const bool asFloat : {false, true}) {
        asked.asFloat = asFloat;
        const auto part = Exporter::make(asked);
        EXPECT_EQ(part->url.filename(), asFloat ? "rain_0.021-0.062s 2.wav" : "rain_0.021-0.062s.wav");
        const Planes file = readAudio(part->url).planes;
        for (size_t c = 0; c < 6; ++c) {
            EXPECT_EQ(file[c], std::vector(integers[c].begin() + 1000, integers[c].begin() + 3000));
        }
        EXPECT_EQ(AudioFileInfo::load(part->url).bextDescription, "Pulled from rain.wav [0.021-0.062 s] 5.1");
    }
    Exporter::Request mono = request(noisePlanes(2, 100));
    mono.listen = ListenMode::mono;
    const auto sum = Exporter::make(mono);
    EXPECT_EQ(sum->url.filename(), "rain_mono.wav");
    EXPECT_EQ(written(sum->url)[0], written(sum->url)[1]);
}

// Where the endless loop knows nothing of its start any more, and its round begins with a hop of the upmix.
TEST_F(Export, ALoopStartsAsItEnds) {
    constexpr int hop = 256;
    const Planes stereo = noisePlanes(2, 60000);
    Planes film = noisePlanes(6, 60000);
    for (auto& plane : film) {
        for (float& sample : plane) { sample *= 0.2F; }  // six at once stay below full scale
    }
    for (const DragExport mode : {DragExport::upmix(LayoutID::l714), DragExport::binaural()}) {
        for (const int64_t length : {1, 300, 4096, 48000}) {
            Planes rounds = mode == DragExport::binaural() ? film : stereo;
            Exporter::Request asked = request(rounds, mode);
            asked.range = FrameRange{5000, 5000 + length};
            asked.loop = true;
            const auto result = Exporter::make(asked);
            ASSERT_TRUE(result);
            EXPECT_EQ(result->frames, length);

            const int64_t at = std::lcm(length, int64_t(hop)) * (1 + 30000 / std::lcm(length, int64_t(hop)));
            for (auto& plane : rounds) {
                const std::vector<float> round(plane.begin() + 5000, plane.begin() + 5000 + length);
                plane.clear();
                while (int64_t(plane.size()) < at + 2 * length + 2000) {
                    plane.insert(plane.end(), round.begin(), round.end());
                }
            }
            const Planes endless = heard(request(rounds, mode, "endless.wav"), at + length);
            const Planes file = written(result->url);
            // The last hop fades into the next round, whose hops begin as this one's do.
            const int64_t faded = length < 1024 ? 0 : hop;
            std::vector<float> end;
            std::vector<float> endlessEnd;
            for (size_t c = 0; c < file.size(); ++c) {
                const std::vector<float> round(endless[c].begin() + at, endless[c].end() - faded);
                EXPECT_LT(errorDb({file[c].begin(), file[c].end() - faded}, round), -50)
                    << id(mode) << " of " << length << ", channel " << c;
                const auto last = std::ptrdiff_t(std::min<int64_t>(length, 16));
                const auto next = endless[c].begin() + std::ptrdiff_t(at);
                end.insert(end.end(), file[c].end() - last, file[c].end());
                endlessEnd.insert(endlessEnd.end(), next - last, next);
            }
            EXPECT_LT(errorDb(end, endlessEnd), -50) << id(mode) << " of " << length << ", its end";
        }
    }
}

TEST_F(Export, ALongNameLeavesRoomForTheChannelsInTheDescription) {
    const std::string name = std::string(240, 'n') + ".wav";
    const auto result = Exporter::make(request(noisePlanes(6, 10), DragExport::bed(LayoutID::l916), name));
    const auto description = AudioFileInfo::load(result->url).bextDescription.value_or("");
    EXPECT_TRUE(description.starts_with("Pulled from nnn")) << description;
    EXPECT_TRUE(description.ends_with("nn [0.000-0.000 s] " + result->label)) << description;
}

TEST_F(Export, NeverTouchesAFileThatIsThere) {
    Exporter::Request asked = request(noisePlanes(6, 3000), DragExport::bed(LayoutID::stereo));
    const auto first = Exporter::make(asked);
    const std::string bytes = readBytes(first->url);
    EXPECT_EQ(Exporter::make(asked)->url, first->url) << "the same content";
    asked.source = SourceFormat::discrete(6);  // another reading, by the same name
    const auto other = Exporter::make(asked);
    EXPECT_EQ(other->url.filename(), "rain_st 2.wav");
    EXPECT_EQ(Exporter::make(asked)->url, other->url);
    std::filesystem::create_directory(first->url.parent_path() / "rain_st 3.wav");
    asked.range = FrameRange{0, 2999};
    const auto cut = Exporter::make(asked);
    asked.range.reset();
    asked.source = SourceFormat::ambisonic(1, AmbiNorm::sn3d);
    EXPECT_EQ(Exporter::make(asked)->url.filename(), "rain_st 4.wav");
    EXPECT_EQ(readBytes(first->url), bytes);
    EXPECT_EQ(pulls(), (Names{"rain_0.000-0.062s_st.wav", "rain_st 2.wav", "rain_st 4.wav", "rain_st.wav"}));
}

TEST_F(Export, MeasuresWhatIsBeyondFullScale) {
    Planes loud = noisePlanes(6, 1000);
    loud[0][10] = 1.5F;
    loud[0][11] = -1.25F;
    loud[1][12] = 1;
    loud[2][500] = std::numeric_limits<float>::quiet_NaN();
    Exporter::Request asked = request(loud);
    asked.range = FrameRange{0, 400};
    const auto result = Exporter::make(asked);
    EXPECT_EQ(result->peak, 1.5);
    EXPECT_EQ(result->clipped, 2);
    EXPECT_EQ(Exporter::remark(*result), "peaks 3.5 dB above full scale were clipped");
    asked.asFloat = true;
    EXPECT_EQ(Exporter::make(asked)->clipped, 0);
    EXPECT_EQ(Exporter::make(asked)->peak, 1.5);
    asked.asFloat = false;
    asked.range = FrameRange{400, 900};
    EXPECT_EQ(Exporter::make(asked)->clipped, 1) << "a sample that is no number";
}

TEST_F(Export, AFailureLeavesNothing) {
    Exporter::Request asked = request(noisePlanes(6, 50000), DragExport::bed(LayoutID::l714));
    const auto refused = [&] { return refusalOf([&] { Exporter::make(asked); }).text; };
    const std::string sound = readBytes(folder_ / "rain.wav");

    writeBytes(folder_ / "rain.wav", sound.substr(0, sound.size() / 2));
    EXPECT_EQ(refused(), "rain.wav has changed since it was loaded");
    std::filesystem::remove(folder_ / "rain.wav");
    EXPECT_EQ(refused(), "rain.wav can't be opened: No such file or directory");
    asked.mode = DragExport::original();
    EXPECT_EQ(refused(), "Can't read rain.wav: No such file or directory");
    writeBytes(folder_ / "rain.wav", sound);

    asked.mode = DragExport::bed(LayoutID::l714);
    asked.range = FrameRange{70000, 80000};
    EXPECT_EQ(refused(), "There is nothing to export between these times");
    asked.range.reset();
    asked.info.frames = int64_t(1) << 32;
    EXPECT_EQ(refused(), "Selection too long for a WAV file (4 GB limit)");
    asked.info.frames = 50000;
    {
        const FullDisk full(100000);
        EXPECT_NE(refused().find("File too large"), std::string::npos);
    }
    std::stop_source stop;
    stop.request_stop();
    EXPECT_FALSE(Exporter::make(asked, {{}, stop.get_token()}));
    EXPECT_TRUE(pulls().empty());

    std::filesystem::permissions(folder_.path(), std::filesystem::perms(0755));
    std::filesystem::permissions(folder_ / "Pulls", std::filesystem::perms(0555));
    asked.folder = folder_ / "Pulls" / "locked";
    EXPECT_TRUE(
        Child([&] { return becomeNobody() && refused().find("Permission denied") != std::string::npos; }).succeeded());
    std::filesystem::permissions(folder_ / "Pulls", std::filesystem::perms(0755));
}

TEST_F(Export, AKillAtAnySystemCallLeavesNoHalfFile) {
    Exporter::Request asked = request(noisePlanes(6, 9000), DragExport::bed(LayoutID::l714));
    const auto content = [](const std::filesystem::path& file) { return readBytes(file).erase(388, 18); };
    const auto whole = Exporter::make(asked)->url;
    const std::string expected = content(whole);
    int status = -1;
    for (int last = 0; status != 0; ++last) {
        std::filesystem::remove(whole);
        status =
            runTraced([&] { return Exporter::make(asked) ? 0 : 1; }, [&](int count, long) { return count < last; });
        for (const std::string& name : pulls()) {
            if (name.starts_with('.')) { continue; }
            EXPECT_EQ(name, "rain_714.wav");
            EXPECT_EQ(content(whole), expected) << "killed at call " << last;
        }
    }
    EXPECT_EQ(pulls(), Names{"rain_714.wav"}) << "the leftovers are cleared";
}

TEST_F(Export, AJobServesTheSameRequestOnceAndCanBeAwaitedWithoutTheLoop) {
    ManualMainLoop loop;
    ExportQueue queue(loop);
    const Exporter::Request asked = request(noisePlanes(6, 200000), DragExport::bed(LayoutID::l714));
    const auto job = queue.start(asked);
    EXPECT_EQ(queue.start(asked), job);
    ASSERT_TRUE(job->wait(30));
    EXPECT_EQ(job->state(), ExportJob::State::done) << job->failure();
    EXPECT_EQ(job->progress(), 1);
    EXPECT_EQ(queue.start(asked), job) << "its file is there";
    std::filesystem::remove(job->result()->url);
    const auto again = queue.start(asked);
    EXPECT_NE(again, job);
    again->cancel();
    EXPECT_TRUE(again->wait(30));
    int finished = 0;
    QObject::connect(&queue, &ExportQueue::finished, [&](const auto&) { ++finished; });
    EXPECT_TRUE(loop.runUntil([&] { return finished == 2; }));
    EXPECT_EQ(pulls().size(), again->state() == ExportJob::State::done ? 1U : 0U);
    std::filesystem::remove_all(folder_ / "Pulls");
    std::shared_ptr<ExportJob> cut;
    {
        ExportQueue ending(loop);
        cut = ending.start(asked);
    }
    EXPECT_TRUE(cut->isOver()) << "nobody waits for a queue that is gone";
    EXPECT_EQ(pulls().size(), cut->state() == ExportJob::State::done ? 1U : 0U);
}

TEST_F(Export, AShortOneGoesBesideALongOneAndBeforeTheNext) {
    ManualMainLoop loop;
    ExportQueue queue(loop);
    const auto asked = [&](const std::string& name, int frames) {
        Exporter::Request one = request({std::vector<float>(size_t(frames))}, DragExport::bed(LayoutID::l51), name);
        one.asFloat = true;
        return one;
    };
    // Held, so that it keeps its thread until all others have been started.
    const auto hold = queue.start(asked("long.wav", 121 * rate), ExportQueue::Hold::untilKept);
    const auto next = queue.start(asked("next.wav", 121 * rate));
    const auto gone = queue.start(asked("gone.wav", 121 * rate));
    gone->cancel();
    const auto brief = queue.start(asked("brief.wav", rate));
    ASSERT_TRUE(brief->wait(30));
    EXPECT_EQ(brief->state(), ExportJob::State::done);
    EXPECT_TRUE(gone->wait(30));
    EXPECT_EQ(next->progress(), 0) << "long ones leave a thread to the short ones";
    EXPECT_FALSE(next->isOver() || hold->isOver());
    hold->keep();
    ASSERT_TRUE(next->wait(30));
    EXPECT_EQ(next->state(), ExportJob::State::done);
    EXPECT_EQ(hold->state(), ExportJob::State::done);

    // Two files of one name are never written at once.
    std::filesystem::create_directories(folder_ / "other");
    const auto rain = queue.start(asked("rain.wav", rate), ExportQueue::Hold::untilKept);
    const auto twin = queue.start(asked("other/rain.wav", 2 * rate));
    ASSERT_TRUE(queue.start(asked("wind.wav", rate))->wait(30));
    EXPECT_EQ(twin->progress(), 0);
    rain->keep();
    ASSERT_TRUE(twin->wait(30));
    EXPECT_EQ(twin->state(), ExportJob::State::done) << twin->failure();
    EXPECT_EQ(twin->result()->url.filename(), "rain_51 2.wav");
}

TEST_F(Export, AHeldJobShowsNoFileUntilItIsKept) {
    ManualMainLoop loop;
    ExportQueue queue(loop);
    const Exporter::Request asked = request(noisePlanes(6, 20000), DragExport::bed(LayoutID::l714));
    const auto rendered = [&](const auto& job) { return loop.runUntil([&] { return job->progress() == 1; }); };
    const auto visible = [&] {
        auto names = pulls();
        std::erase_if(names, [](const auto& name) { return name.starts_with('.'); });
        return names;
    };
    const auto click = queue.start(asked, ExportQueue::Hold::untilKept);
    ASSERT_TRUE(rendered(click));
    EXPECT_FALSE(click->wait(0));
    EXPECT_TRUE(visible().empty());
    click->letGo();
    ASSERT_TRUE(click->wait(30));
    EXPECT_TRUE(pulls().empty()) << "a press that was no drag leaves nothing";

    const auto drag = queue.start(asked, ExportQueue::Hold::untilKept);
    ASSERT_TRUE(rendered(drag));
    EXPECT_EQ(queue.start(asked), drag) << "who wants the file keeps the job";
    drag->letGo();
    ASSERT_TRUE(drag->wait(30));
    EXPECT_EQ(drag->state(), ExportJob::State::done) << "another has kept it";
    EXPECT_EQ(pulls().size(), 1U);
}

}  // namespace
}  // namespace brindlehum::test
