// What the editor hands to other programs, taken as they would.
#include <QClipboard>
#include <QMimeData>
#include <QTest>

#include "editor/document/clipboard.h"
#include "ui/editor/document_out.h"
#include "ui/look/file_drag.h"
#include "ui/player/drag_handle.h"
#include "window_fixture.h"

namespace brindlehum {
namespace {

namespace fs = std::filesystem;

struct DocumentOutTest : test::WindowTest {
    EditorModel& editor = model.editor();
    DocumentModel& document = editor.document();
    QWidget wave;
    DocumentOut out{editor, wave};

    DocumentOutTest() {
        model.settings().change([&](AppSettings& s) { s.pullsFolder = (folder / "Pulls").string(); });
        document.open(file("rain.wav", 2));
        EXPECT_TRUE(settle([&] { return document.doc().has_value(); }));
        wave.resize(300, 100);
    }
    ~DocumentOutTest() override {
        document.close();
        EditorClipboard::clear();
        QGuiApplication::clipboard()->clear();
    }
    fs::path pasted() {
        const auto files = FileDrag::localPaths(*QGuiApplication::clipboard()->mimeData());
        return files.empty() ? fs::path() : files[0];
    }
    std::vector<std::string> pulls() const {
        std::vector<std::string> names;
        std::error_code none;
        for (const auto& entry : fs::recursive_directory_iterator(folder / "Pulls", none)) {
            if (!entry.is_directory()) { names.push_back(entry.path().filename().string()); }
        }
        return names;
    }
    // What a file of 24 bits holds of the document's part.
    static void expectSame(const fs::path& path, const Sound& sound) {
        const auto planes = test::readAudio(path).planes;
        const auto wanted = sound.gather();
        ASSERT_EQ(planes.size(), wanted.size());
        for (size_t c = 0; c < planes.size(); ++c) {
            ASSERT_EQ(planes[c].size(), wanted[c].size());
            for (size_t i = 0; i < planes[c].size(); ++i) { ASSERT_NEAR(planes[c][i], wanted[c][i], 1e-7) << i; }
        }
    }
};

TEST_F(DocumentOutTest, WhatIsCopiedOrCutIsAFileOnceAnotherProgramAsks) {
    document.setSelection(FrameRange{12000, 24000});
    const Sound part = EditOps::slice(document.sound(), 12000, 24000);
    document.cut();
    EXPECT_EQ(pulls(), std::vector<std::string>()) << "nobody has asked";
    const fs::path cut = pasted();
    EXPECT_EQ(cut.filename(), "rain edit_0.250-0.500s.wav");
    expectSame(cut, part);
    EXPECT_EQ(pasted(), cut) << "asked again";
    const auto list = QGuiApplication::clipboard()->mimeData()->data(FileDrag::copiedFiles);
    EXPECT_TRUE(list.startsWith("copy\nfile:///")) << list.toStdString();
    // The same part of the same sound is the same file; of another sound it isn't.
    document.undo();
    document.setSelection(FrameRange{12000, 24000});
    document.copy();
    EXPECT_EQ(pasted(), cut);
    document.apply("reverse");
    document.copy();
    EXPECT_EQ(pasted().filename(), "rain edit_0.250-0.500s 2.wav");
    EXPECT_EQ(pulls().size(), 2U);
    document.setSelection(std::nullopt);
    document.copy();
    EXPECT_EQ(pasted().filename(), "rain edit_0.250-0.500s 2.wav") << "nothing was copied";
}

TEST_F(DocumentOutTest, TheHandleDragsTheSelectionOrTheWholeDocument) {
    document.setSelection(FrameRange{0, 4800});
    document.cut();
    fs::path dropped;
    out.drags().drag = [&](QWidget*, const std::unique_ptr<QMimeData> data, const FileDrag::Picture& picture) {
        EXPECT_FALSE(picture.image.isNull());
        const auto files = FileDrag::localPaths(*data);
        if (!files.empty()) { dropped = files[0]; }
        return !files.empty();
    };
    const auto drag = [&] {
        DragHandle& handle = *out.handle();
        QTest::mousePress(&handle, Qt::LeftButton, {}, {5, 5});
        QTest::mouseMove(&handle, {40, 9});
        QTest::mouseRelease(&handle, Qt::LeftButton, {}, {40, 9});
        return dropped;
    };
    EXPECT_EQ(drag().filename(), "rain edit.wav");
    expectSame(dropped, document.sound());
    document.setSelection(FrameRange{4800, 9600});
    EXPECT_EQ(drag().filename(), "rain edit_0.100-0.200s.wav");
    expectSame(dropped, EditOps::slice(document.sound(), 4800, 9600));
    QTest::mouseClick(out.handle(), Qt::LeftButton);
    EXPECT_TRUE(settle([&] { return pulls().size() == 2; })) << "a click leaves nothing behind";
}

}  // namespace
}  // namespace brindlehum
