// Fields for the service's address, header and key; the key is written, never shown.
#include "ui/settings/generation_settings.h"

#include <QCheckBox>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QStyle>
#include <QVBoxLayout>
#include <cstring>

#include "base/text.h"
#include "edits/generation_protocol.h"
#include "platform/web_address.h"
#include "ui/look/caption_label.h"
#include "ui/look/setting_action.h"

namespace brindlehum {
namespace {

void overwrite(const void* bytes, qsizetype size) {
    ::explicit_bzero(const_cast<void*>(bytes), size_t(size));
}

// Overwrites the text, wherever it is shared.
SecretText taken(const QString& text) {
    const QByteArray bytes = text.toUtf8();
    SecretText secret(trimmed({bytes.constData(), size_t(bytes.size())}));
    overwrite(bytes.constData(), bytes.size());
    overwrite(text.constData(), text.size() * qsizetype(sizeof(QChar)));
    return secret;
}

}  // namespace

GenerationSettings::GenerationSettings(SettingsStore& settings, GenerationKey& key)
    : settings_(settings), stored_(key) {
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(6);
    column->addWidget(address_ = new QLineEdit(QString::fromStdString(settings.value().generationAddress)));
    address_->setPlaceholderText(tr("https://… (blank = no service)"));
    address_->setAccessibleName(tr("Address of the generation service"));
    const auto makeState = [] {
        auto* label = new QLabel;
        label->setTextFormat(Qt::PlainText);
        label->setWordWrap(true);
        return label;
    };
    column->addWidget(addressState_ = makeState());
    auto* grid = new QGridLayout;
    grid->setHorizontalSpacing(8);
    header_ = new QLineEdit(QString::fromStdString(settings.value().generationHeader));
    header_->setAccessibleName(tr("Header"));
    header_->setToolTip(
        tr("The HTTP header that carries the key. In Authorization, a bare key becomes “Bearer” and the key."));
    key_ = new QLineEdit;
    key_->setEchoMode(QLineEdit::Password);
    key_->setAccessibleName(tr("Key"));
    grid->addWidget(new CaptionLabel(tr("Header"), *header_), 0, 0);
    grid->addWidget(header_, 0, 1);
    grid->addWidget(new CaptionLabel(tr("Key"), *key_), 0, 2);
    grid->addWidget(key_, 0, 3);
    grid->addWidget(forget_ = new QPushButton(tr("Forget Key")), 0, 4);
    grid->setColumnStretch(1, 2);
    grid->setColumnStretch(3, 3);
    column->addLayout(grid);
    column->addWidget(keyState_ = makeState());
    column->addWidget(makeSetting(tr("Send the file's name"), settings, &AppSettings::generationSendsName));
    connect(address_, &QLineEdit::textChanged, this, [this](const QString& text) {
        settings_.change([&](AppSettings& s) { s.generationAddress = text.trimmed().toStdString(); });
    });
    connect(header_, &QLineEdit::editingFinished, this, &GenerationSettings::keepHeader);
    connect(key_, &QLineEdit::editingFinished, this, &GenerationSettings::keepKey);
    connect(forget_, &QPushButton::clicked, this, [this] { stored_.forget(origin()); });
    connect(&settings, &SettingsStore::changed, this, &GenerationSettings::refresh);
    connect(&key, &GenerationKey::changed, this, &GenerationSettings::refresh);
    refresh();
}

std::string GenerationSettings::origin() const {
    const auto address = baseAddress(settings_.value().generationAddress);
    return address ? address->origin : std::string();
}

void GenerationSettings::keepHeader() {
    const std::string name = header_->text().trimmed().toStdString();
    if (!GenerationProtocol::isHeaderName(name)) {
        header_->setText(QString::fromStdString(settings_.value().generationHeader));
    } else if (name != settings_.value().generationHeader) {
        settings_.change([&](AppSettings& s) { s.generationHeader = name; });
    }
}

// Setting the text also empties the field's own undo.
void GenerationSettings::keepKey() {
    const QString typed = key_->text();
    key_->setText({});
    const SecretText key = taken(typed);
    if (key.isEmpty() || origin().empty()) { return; }
    if (!GenerationProtocol::isKey(key.view())) {
        return say(*keyState_, tr("A key has letters, digits and signs of ASCII only"), true);
    }
    stored_.set(origin(), key);
}

void GenerationSettings::refresh() {
    const auto address = baseAddress(settings_.value().generationAddress);
    const QString typed = QString::fromStdString(settings_.value().generationAddress);
    if (!address_->hasFocus() && address_->text() != typed) { address_->setText(typed); }
    if (address) {
        say(*addressState_,
            tr("The editor asks %1 for intros, endings and variations, when you press a button there and not before.")
                .arg(QString::fromStdString(address->host)));
    } else if (typed.isEmpty()) {
        say(*addressState_, tr("Off. Nothing is sent anywhere."));
    } else {
        say(*addressState_, tr("Off: the address must begin with https://, or with http:// for this machine."), true);
    }
    const auto place = stored_.place(origin());
    for (QWidget* each : {static_cast<QWidget*>(header_), static_cast<QWidget*>(key_)}) {
        each->setEnabled(address.has_value());
    }
    forget_->setEnabled(place != GenerationKey::Place::none);
    key_->setPlaceholderText(place == GenerationKey::Place::none ? tr("Type the key, then Enter")
                                                                 : tr("Type to replace it"));
    if (place == GenerationKey::Place::keyring) { return say(*keyState_, tr("The key is stored in the keyring.")); }
    if (place == GenerationKey::Place::none) { return say(*keyState_, tr("No key: requests are sent without one.")); }
    const QString why = QString::fromStdString(GenerationProtocol::plainLine(stored_.problem()));
    say(*keyState_,
        why.isEmpty() ? tr("The key is kept for this run only.")
                      : tr("The key is kept for this run only, since no keyring has taken it: %1").arg(why),
        !why.isEmpty());
}

void GenerationSettings::say(QLabel& label, const QString& text, bool isProblem) {
    label.setText(text);
    const char* role = isProblem ? "captionWarning" : "caption";
    if (label.property("role") == role) { return; }
    label.setProperty("role", role);
    label.style()->polish(&label);
}

}  // namespace brindlehum
