// The windows in another language than that of the sources.
#include "ui/look/translations.h"

#include <QApplication>
#include <QLabel>
#include <QMenuBar>
#include <QPushButton>
#include <QToolButton>

#include "ui/editor/key_name.h"
#include "ui/inspector/inspector_view.h"
#include "ui/look/fitting_row.h"
#include "ui/window/app_windows.h"
#include "window_fixture.h"

namespace brindlehum {
namespace {

TEST(Translations, FirstLanguageWithTextsIsTakenAndEnglishNeedsNone) {
    const std::pair<QStringList, bool> cases[] = {
        {{"de-DE", "de"}, true},        {{"de-AT"}, true}, {{"tlh", "de-CH"}, true}, {{"de-Latn-DE"}, true},
        {{"en-GB", "en", "de"}, false}, {{"C"}, false},    {{"tlh"}, false},         {{}, false}};
    for (const auto& [languages, german] : cases) {
        const Translations translations(languages);
        EXPECT_EQ(translations.isInstalled(), german) << languages.join(' ').toStdString();
        EXPECT_EQ(QCoreApplication::translate("MainMenus", "&File"), german ? "&Datei" : "&File");
    }
    EXPECT_EQ(QCoreApplication::translate("MainMenus", "&File"), "&File") << "after the last one has gone";
}

TEST(Translations, KeyOfMusicHasItsOwnNameInEachLanguage) {
    const std::tuple<const char*, const char*, const char*> cases[] = {
        {"B", "major", "H-Dur"}, {"B", "minor", "h-Moll"}, {"A#", "minor", "ais-Moll"}, {"C", "major", "C-Dur"}};
    for (const auto& [tonic, mode, german] : cases) {
        KeyResult key;
        key.tonic = tonic;
        key.mode = mode;
        EXPECT_EQ(keyName(key), QString("%1 %2").arg(tonic, mode));
        const Translations translations({"de"});
        EXPECT_EQ(keyName(key), german);
    }
}

struct German : test::WindowTest {
    Translations translations{{"de"}};
    AppWindows windows{model};
};

// Of what a key reaches at once: the entries of a menu, or the menus, buttons and captions of a window.
void expectOwnLetters(const QStringList& texts, const QString& where) {
    std::map<QString, QString> owners;
    for (const QString& text : texts) {
        const QString key = QKeySequence::mnemonic(text).toString();
        if (key.isEmpty()) { continue; }
        const auto [other, isNew] = owners.emplace(key, text);
        EXPECT_TRUE(isNew) << where.toStdString() << ", " << key.toStdString() << ": " << text.toStdString() << " and "
                           << other->second.toStdString();
    }
}

TEST_F(German, NoTwoEntriesOrFieldsShareALetter) {
    for (const char* id : {"editor", "monitor", "settings"}) { windows.open(id); }
    size_t letters = 0;
    for (const auto* window : QApplication::topLevelWidgets()) {
        if (qobject_cast<const QMenu*>(window)) { continue; }
        QStringList texts;
        for (const auto* bar : window->findChildren<QMenuBar*>()) {
            for (const auto* menu : bar->actions()) { texts << menu->text(); }
        }
        for (const auto* caption : window->findChildren<QLabel*>()) {
            if (caption->buddy()) { texts << caption->text(); }
        }
        for (const auto* button : window->findChildren<QPushButton*>()) { texts << button->text(); }
        expectOwnLetters(texts, window->windowTitle());
        letters += size_t(texts.filter("&").size());
        for (const auto* menu : window->findChildren<QMenu*>()) {
            QStringList entries;
            for (const auto* entry : menu->actions()) { entries << entry->text(); }
            expectOwnLetters(entries, menu->title());
        }
    }
    EXPECT_GT(letters, 20U);
}

// Buttons and captions are as wide as their texts, in windows of their usual sizes.
TEST_F(German, ButtonsAndCaptionsShowTheirWholeTexts) {
    model.settings().change([](AppSettings& settings) { settings.expertMode = true; });
    for (const char* id : {"main", "editor", "monitor", "settings"}) { windows.open(id); }
    for (auto* window : QApplication::topLevelWidgets()) {
        for (auto* inspector : window->findChildren<InspectorView*>()) {
            BrowserEntry entry;
            entry.url = file("a.wav", 2);
            inspector->setSelection({entry});
        }
    }
    QCoreApplication::processEvents();
    size_t seen = 0;
    for (const auto* window : QApplication::topLevelWidgets()) {
        for (const auto* widget : window->findChildren<QWidget*>()) {
            const auto* label = qobject_cast<const QLabel*>(widget);
            const bool isWhole = qobject_cast<const QAbstractButton*>(widget) || (label && !label->wordWrap());
            if (!isWhole || !widget->isVisible()) { continue; }
            ++seen;
            EXPECT_GE(widget->width(), widget->sizeHint().width()) << widget->property("text").toString().toStdString();
        }
    }
    EXPECT_GT(seen, 50U);
}

TEST_F(German, EditorFitsASmallScreenAndDropsWholeButtons) {
    DocumentModel& document = model.editor().document();
    document.open(file("a.wav", 2));
    ASSERT_TRUE(settle([&] { return document.doc() && !document.loading(); }));
    windows.open("editor");
    for (auto* window : QApplication::topLevelWidgets()) {
        const auto* row = window->findChild<FittingRow*>();
        if (!row) { continue; }
        const int least = window->minimumSizeHint().width();
        EXPECT_LE(least, 1160) << "with the frame, a screen of 1280 is full";
        for (const int width : {1400, least, 1400}) {
            window->resize(width, 700);
            QCoreApplication::processEvents();
            EXPECT_EQ(window->width(), width);
            const auto shown = std::ranges::count_if(row->findChildren<QToolButton*>(), &QWidget::isVisible);
            EXPECT_EQ(shown == 6, width == 1400) << width << ": " << shown;
        }
    }
}

}  // namespace
}  // namespace brindlehum
