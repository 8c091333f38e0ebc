// LoadedSound: which of two loads wins, and what stays after one that fails.
#include "mix/player/loaded_sound.h"

#include "mix/player/lane_labels.h"
#include "playback_fixture.h"

namespace brindlehum {
namespace {

using Loading = test::PlayerTest;

TEST_F(Loading, TheNewestLoadWins) {
    const auto a = file("a.wav", 2);
    const auto b = file("b.wav", 6);
    player_->load(a, true);
    player_->load(b, false);
    settle();
    EXPECT_EQ(sound().info()->url, b);
    EXPECT_FALSE(transport().isPlaying()) << "the older load's auto-play is dropped with it";

    player_->load(a, false);
    player_->load(b, false);
    settle();
    EXPECT_EQ(sound().info()->url, b) << "the loaded file was asked for again";
    EXPECT_TRUE(sound().waveform() && sound().waveform()->isComplete());

    player_->load(folder_ / "absent.wav", false);
    player_->load(a, false);
    settle();
    EXPECT_EQ(sound().info()->url, a);
    EXPECT_EQ(message(), "(none)");
}

TEST_F(Loading, TheLoadedFileStartsAtRestAndIsNeverRestarted) {
    const auto a = file("a.wav");
    load(a);
    EXPECT_FALSE(transport().isPlaying());
    load(a, true);
    EXPECT_TRUE(transport().isPlaying());
    pump(20);
    const double before = engine_.ctx().position();
    load(a, true);
    EXPECT_EQ(engine_.ctx().position(), before);
    EXPECT_EQ(audio_.opened(), 1);
}

// Each load is by a new player, which knows only what is stored.
TEST_F(Loading, AFormatOverrideIsRememberedForItsFileAndOnDemandForTheFolder) {
    const auto a = file("a.wav", 8);
    const auto b = file("b\xE9.wav", 8);  // a name that isn't UTF-8
    const auto wave = SourceFormat::waveOrders(8).front();
    const auto film = SourceFormat::options(8)[1];
    const auto reads = [&](const std::filesystem::path& path, const std::optional<SourceFormat>& format) {
        player_ = makePlayer();
        load(path);
        EXPECT_EQ(sound().formatOverride(), format) << path.filename();
    };
    load(a);
    sound().setFormatOverride(wave);
    reads(b, std::nullopt);
    reads(a, wave);
    sound().setForFolder(true);
    reads(file("six.wav", 6), std::nullopt);
    reads(b, wave);
    sound().setFormatOverride(std::nullopt);
    reads(b, std::nullopt);
    sound().setFormatOverride(film);
    std::filesystem::rename(b, folder_ / "c.wav");
    player_->formats().rename(b, folder_ / "c.wav");
    reads(folder_ / "c.wav", film);
    reads(a, wave);
    sound().setForFolder(false);
    sound().setFormatOverride(std::nullopt);
    reads(a, std::nullopt);
    for (const char* unreadable : {"{", R"({"files": [3, {"path": 4}]})"}) {
        defaults_.set(FormatOverrides::key, unreadable);
        reads(a, std::nullopt);
    }
}

TEST_F(Loading, ANewSoundStartsAfresh) {
    const auto b = file("b.wav");
    load(file("a.wav"));
    sound().setFormatOverride(SourceFormat::discrete(2));
    transport().select(FrameRange{1000, 9000});
    settle();
    EXPECT_TRUE(transport().isPlaying());
    player_->load(b, false);
    settle();
    EXPECT_FALSE(transport().isPlaying());
    EXPECT_FALSE(transport().selection());
    EXPECT_EQ(transport().cueFrame(), 0);
    EXPECT_EQ(transport().playhead().frame(), 0);
    EXPECT_EQ(sound().source(), SourceFormat::stereo());
}

TEST_F(Loading, AStartDuringALoadIsMeantForTheFileThatIsBeingLoaded) {
    const auto a = file("a.wav");
    const auto b = file("b.wav");
    const std::function<void()> starts[] = {[&] { player_->play(std::nullopt); }, [&] { player_->play(2000); },
                                            [&] { transport().seek(2000); }};
    for (const auto& start : starts) {
        load(a);
        player_->load(b, false);
        start();
        EXPECT_FALSE(engine_.isRunning() && transport().isPlaying());
        settle();
        EXPECT_EQ(sound().info()->url, b);
        EXPECT_TRUE(transport().isPlaying());
        EXPECT_EQ(heardFrom(), 0);
    }
}

TEST_F(Loading, AFileReplacedAtItsPathIsReadAgain) {
    const auto a = file("a.wav", 2, 48000);
    load(a, true);
    pump(10);
    loop_.advance(0.034);
    const auto replace = [&](int channels, int64_t frames) {
        std::filesystem::rename(file("new.wav", channels, frames), a);
    };
    replace(2, 30000);
    load(a);
    EXPECT_EQ(sound().info()->frames, 30000);
    ASSERT_TRUE(sound().waveform() && sound().waveform()->isComplete());
    EXPECT_TRUE(transport().isPlaying());
    EXPECT_EQ(heardFrom(), 10 * block - 1) << "plays on, from the new file";
    const auto before = sound().waveform();
    replace(2, 30000);
    load(a);
    EXPECT_NE(sound().waveform(), before) << "the same facts, but another content";
    load(file("b.wav"));
    replace(1, 20000);
    load(a);
    EXPECT_EQ(sound().info()->frames, 20000);
    EXPECT_EQ(sound().waveform()->channels, 1) << "no old picture from the cache";
    replace(2, 10000);
    play();
    EXPECT_EQ(sound().info()->frames, 10000) << "a start sees it, too";
}

TEST_F(Loading, ARenamedFilePlaysOn) {
    const auto a = file("a.wav", 2, 480000);
    load(a, true);
    const auto b = folder_ / "b.wav";
    std::filesystem::rename(a, b);
    sound().rename(a, b);
    settle();
    EXPECT_EQ(sound().info()->url, b);
    EXPECT_TRUE(sound().waveform() && sound().waveform()->isComplete());
    pumpUntil([&] { return engine_.ctx().position() > 200000; });  // more than the ring holds
    EXPECT_TRUE(transport().isPlaying());
    transport().seek(100);
    settle();
    EXPECT_EQ(heardFrom(), 100);
    const auto c = file("c.wav");
    const auto d = folder_ / "d.wav";
    sound().load(c, false, AskedBy::fileManager);
    std::filesystem::rename(c, d);
    sound().rename(c, d);
    settle();
    EXPECT_EQ(sound().info()->url, d) << "renamed while it was being loaded";
    EXPECT_EQ(sound().askedBy(), AskedBy::fileManager);
}

TEST_F(Loading, AFileThatCannotBePlayedIsNamedAndTheOldSoundStays) {
    load(file("good.wav"));
    std::filesystem::create_directory(folder_ / "folder.wav");
    test::writeBytes(folder_ / "garbage.wav", std::string(5000, '\x42'));
    test::writeBytes(folder_ / "empty.wav", "");
    for (const auto& [name, reason] : {std::pair("absent.wav", "No such file or directory"),
                                       {"folder.wav", "it is a folder"},
                                       {"garbage.wav", "it holds no audio that can be read"},
                                       {"empty.wav", "it is empty"}}) {
        load(folder_ / name, true);
        EXPECT_EQ(message(), std::string("Can't read ") + name + ": " + reason);
        EXPECT_TRUE(player_->message().isProblem());
        EXPECT_FALSE(transport().isPlaying());
        EXPECT_EQ(sound().info()->url, folder_ / "good.wav");
    }
    loop_.advance(PlayerMessage::readingSeconds);
    EXPECT_EQ(message(), "(none)") << "there was time to read it";
    load(file("wide.wav", 65, 1000), true);
    EXPECT_EQ(message(), "Unsupported channel count (65)");
    EXPECT_FALSE(transport().isPlaying());
    load(folder_ / "good.wav", true);
    EXPECT_EQ(message(), "(none)");
    EXPECT_EQ(heardFrom(), 0) << "still usable";
}

TEST_F(Loading, ADragDeliversTheFileItself) {
    EXPECT_FALSE(player_->dragOut().exportForDrag(false));
    const auto a = file("a.wav");
    load(a);
    EXPECT_EQ(player_->dragOut().exportForDrag(false), a);
    EXPECT_EQ(player_->dragOut().exportForDrag(true), a) << "without a selection, the whole file";
    transport().select(FrameRange{0, 24000});
    settings_.change([&](AppSettings& s) { s.pullsFolder = (folder_ / "Pulls").string(); });
    const auto part = player_->dragOut().exportForDrag(true);
    ASSERT_TRUE(part) << message();
    EXPECT_EQ(part->filename(), "a_0.000-0.500s.wav");
    EXPECT_EQ(AudioFileInfo::load(*part).frames, 24000);
    std::filesystem::remove(a);
    EXPECT_FALSE(player_->dragOut().exportForDrag(false));
    EXPECT_EQ(message(), "Can't read a.wav: No such file or directory");
}

TEST_F(Loading, AChosenFormOfDragLastsAsLongAsTheSoundOffersIt) {
    DragOut& drag = player_->dragOut();
    load(file("bed.wav", 6));
    drag.setDragExport(DragExport::bed(LayoutID::l714));
    load(file("other.wav", 12));
    EXPECT_EQ(drag.dragExport(), DragExport::bed(LayoutID::l714));
    sound().setFormatOverride(SourceFormat::discrete(12));
    EXPECT_EQ(drag.dragExport(), DragExport::original());

    load(file("stereo.wav", 2));
    EXPECT_EQ(drag.dragOptions().size(), 1U);
    UpmixSettings upmix;
    upmix.enabled = true;
    listening().setUpmix(upmix);
    EXPECT_EQ(drag.dragOptions().back(), DragExport::upmix(LayoutID::l51));
    drag.setDragExport(DragExport::upmix(LayoutID::l51));
    upmix.enabled = false;
    listening().setUpmix(upmix);
    loop_.advance(0);
    EXPECT_EQ(drag.dragExport(), DragExport::original());
}

TEST_F(Loading, ADragTellsOfWhatTheUserMustKnow) {
    settings_.change([&](AppSettings& s) { s.pullsFolder = (folder_ / "Pulls").string(); });
    DragOut& drag = player_->dragOut();
    test::Planes loud = test::counting(6, 1000);
    loud[0][500] = 2;
    test::writeAudio(folder_ / "loud.wav", loud);
    load(folder_ / "loud.wav");
    drag.setDragExport(DragExport::bed(LayoutID::l51));
    ASSERT_TRUE(drag.exportForDrag(false)) << message();
    EXPECT_EQ(message(), "loud_51.wav: peaks 6.0 dB above full scale were clipped");
    settings_.change([](AppSettings& s) { s.pullsAsFloat = true; });
    player_->message().clear();
    EXPECT_TRUE(drag.exportForDrag(false));
    EXPECT_EQ(message(), "(none)");

    const auto job = std::make_shared<ExportJob>(*drag.request(false), Completion(), nullptr);  // on no queue
    EXPECT_FALSE(drag.awaitFile(job, 0));
    EXPECT_EQ(message(), "The file is still being rendered: drag again in a moment");
    settings_.change([&](AppSettings& s) { s.pullsFolder = (folder_ / "loud.wav").string(); });
    EXPECT_FALSE(drag.exportForDrag(false));
    EXPECT_NE(message().find("Couldn't create the folder"), std::string::npos) << message();
}

TEST(LaneLabels, NameTheChannels) {
    using Labels = std::vector<std::string>;
    const auto l71 = SourceFormat::speakers(speakers(LayoutID::l71));
    EXPECT_EQ(laneLabels(SourceFormat::mono(), 1), Labels{""});
    EXPECT_EQ(laneLabels(SourceFormat::ambisonic(1, AmbiNorm::fuma), 5), (Labels{"W", "X", "Y", "Z"}));
    EXPECT_EQ(laneLabels(SourceFormat::ambisonic(2, AmbiNorm::n3d), 9),
              (Labels{"W", "Y", "Z", "X", "4", "5", "6", "7", "8"}));
    EXPECT_EQ(laneLabels(SourceFormat::discrete(3), 3), (Labels{"1", "2", "3"}));
    EXPECT_EQ(laneLabels(l71, 8), (Labels{"L", "R", "C", "LFE", "Lss", "Rss", "Lrs", "Rrs"}));
}

}  // namespace
}  // namespace brindlehum
