// The tabs of the settings.
#include "ui/settings/settings_window.h"

#include <QApplication>
#include <QCheckBox>
#include <QGroupBox>
#include <QKeyEvent>
#include <QLineEdit>
#include <QShortcut>
#include <QTabWidget>
#include <QTimer>
#include <QVBoxLayout>

#include "platform/file_manager_watch.h"
#include "platform/session.h"
#include "ui/look/form_scroll.h"
#include "ui/look/icons.h"
#include "ui/look/screen_fit.h"
#include "ui/look/setting_action.h"
#include "ui/settings/file_manager_settings.h"
#include "ui/settings/generation_settings.h"
#include "ui/settings/hrtf_settings.h"
#include "ui/settings/library_settings.h"
#include "ui/settings/link_settings.h"
#include "ui/settings/outputs_settings.h"
#include "ui/settings/pulls_settings.h"
#include "ui/settings/session_settings.h"

namespace brindlehum {
namespace {

constexpr QSize usualSize(820, 640);  // logical pixels

QGroupBox* section(const QString& title, QWidget* content) {
    auto* box = new QGroupBox(title);
    auto* layout = new QVBoxLayout(box);
    layout->addWidget(content);
    return box;
}

QWidget* makeAudition(SettingsStore& settings, Session& session, DiskWork& looks, QWidget* generation) {
    const FileManagerWatch* watch = session.fileManagerWatch();
    auto* page = new QWidget;
    auto* layout = new QVBoxLayout(page);
    layout->setContentsMargins(16, 8, 16, 16);
    layout->setSpacing(8);
    layout->addWidget(section(QCoreApplication::translate("SettingsWindow", "File Manager"),
                              new FileManagerSettings(settings, watch && watch->seesWindows())));
    layout->addWidget(
        section(QCoreApplication::translate("SettingsWindow", "Routing"),
                makeSetting(QCoreApplication::translate("SettingsWindow", "Mono files play from the center speaker"),
                            settings, &AppSettings::monoToCenter)));
    layout->addWidget(
        section(QCoreApplication::translate("SettingsWindow", "Headphones"), new HRTFSettings(settings, looks)));
    layout->addWidget(
        section(QCoreApplication::translate("SettingsWindow", "Pulls (drag-to-DAW renders and downloaded links)"),
                new PullsSettings(settings, session.fileManager(), looks)));
    layout->addWidget(
        section(QCoreApplication::translate("SettingsWindow", "Open Copied Link"), new LinkSettings(settings, looks)));
    layout->addWidget(section(
        QCoreApplication::translate("SettingsWindow", "Generation Service (Build-a-Score in the editor)"), generation));
    layout->addWidget(section(QCoreApplication::translate("SettingsWindow", "Media keys and lock screen"),
                              makeSetting(QCoreApplication::translate("SettingsWindow", "Name the sound that plays"),
                                          settings, &AppSettings::mediaShowsTitle)));
    layout->addWidget(section(QCoreApplication::translate("SettingsWindow", "Session"), new SessionSettings));
    layout->addStretch(1);
    return page;
}

}  // namespace

SettingsWindow::SettingsWindow(SettingsStore& settings, LibraryRoots& roots, LibrarySearch& search,
                               const AudioDevices& devices, SpeakerTest& test, Session& session, MainLoop& loop,
                               std::function<void()> addFolder, GenerationKey& generationKey)
    : looks_(loop, "Brindlehum.settings") {
    setObjectName("window");
    setWindowTitle(tr("Settings"));
    setAttribute(Qt::WA_StyledBackground);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 8, 0, 0);
    auto* tabs = tabs_ = new QTabWidget;
    generation_ = new GenerationSettings(settings, generationKey);
    tabs->setAccessibleName(tr("Settings"));
    tabs->addTab(new OutputsSettings(settings, devices, test), symbol("speakers"), tr("Outputs"));
    audition_ = new FormScroll(makeAudition(settings, session, looks_, generation_));
    tabs->addTab(audition_, symbol("file"), tr("Audition"));
    tabs->addTab(new LibrarySettings(settings, roots, search, std::move(addFolder)), symbol("library"), tr("Library"));
    layout->addWidget(tabs);
    resize(fittingSize(*this, usualSize));
    connect(new QShortcut(QKeySequence("Ctrl+W"), this), &QShortcut::activated, this, &QWidget::close);
}

void SettingsWindow::addPage(QWidget* page, const QIcon& icon, const QString& title) {
    tabs_->addTab(page, icon, title);
}

void SettingsWindow::showPage(const QWidget* page) {
    for (int i = 0; i < tabs_->count(); ++i) {
        if (tabs_->widget(i)->isAncestorOf(page) || tabs_->widget(i) == page) { tabs_->setCurrentIndex(i); }
    }
}

void SettingsWindow::showGeneration() {
    tabs_->setCurrentWidget(audition_);
    generation_->address().setFocus();
    // Once the page has its size.
    QTimer::singleShot(0, this, [this] { audition_->ensureWidgetVisible(generation_, 0, 24); });
}

// A shortcut would take the key from an open drop-down. Some platforms bring its keys here, too.
void SettingsWindow::keyPressEvent(QKeyEvent* event) {
    if (event->key() != Qt::Key_Escape) { return QWidget::keyPressEvent(event); }
    QWidget* dropDown = QApplication::activePopupWidget();
    (dropDown ? dropDown : this)->close();
}

}  // namespace brindlehum
