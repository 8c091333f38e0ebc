// The field for the download tool's path, and what is used.
#include "ui/settings/link_settings.h"

#include <QLabel>
#include <QLineEdit>
#include <QStyle>
#include <QTimer>
#include <QVBoxLayout>

#include "app/link_loader.h"
#include "settings/settings_store.h"
#include "ui/look/path_text.h"

namespace brindlehum {
namespace {

constexpr int patienceMs = 300;

}  // namespace

LinkSettings::LinkSettings(SettingsStore& settings, DiskWork& looks) : settings_(settings), looks_(looks) {
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(6);
    column->addWidget(path_ = new QLineEdit);
    path_->setPlaceholderText(tr("yt-dlp path (blank = auto)"));
    path_->setAccessibleName(tr("yt-dlp path (blank = auto)"));
    column->addWidget(found_ = new QLabel);
    found_->setTextFormat(Qt::PlainText);
    found_->setWordWrap(true);
    path_->setText(pathText(settings.value().ytDlpPath));
    connect(path_, &QLineEdit::textChanged, this, &LinkSettings::look);
    connect(path_, &QLineEdit::editingFinished, this, &LinkSettings::keep);
    connect(&settings, &SettingsStore::changed, this, [this] {
        if (!path_->hasFocus()) { path_->setText(pathText(settings_.value().ytDlpPath)); }
    });
    look();
}

void LinkSettings::keep() {
    if (line_.isBusy()) { look(); }
    const std::string path = pathOfText(path_->text().trimmed()).string();
    if (path == settings_.value().ytDlpPath) { return; }
    settings_.change([&](AppSettings& s) { s.ytDlpPath = path; });
}

// Says at each keystroke what would be used.
void LinkSettings::look() {
    const std::string custom = pathOfText(path_->text().trimmed()).string();
    QTimer::singleShot(patienceMs, this, [this] {
        if (line_.isBusy()) { say(tr("The disk of this path doesn't answer"), false); }
    });
    looks_.queue().run(
        line_, [custom] { return LinkLoader::ytDlp(custom); },
        [this, custom](const std::optional<std::filesystem::path>& tool) {
            const bool isOther = tool && !custom.empty() && *tool != custom;
            say(isOther ? tr("Using %1: there is no program at the path above").arg(pathText(*tool))
                : tool  ? tr("Using %1").arg(pathText(*tool))
                        : QString::fromLatin1(LinkLoader::notFound.data(), qsizetype(LinkLoader::notFound.size())),
                tool.has_value());
        });
}

void LinkSettings::say(const QString& text, bool isFine) {
    found_->setText(text);
    found_->setProperty("role", isFine ? "caption" : "captionWarning");
    found_->style()->polish(found_);
}

}  // namespace brindlehum
