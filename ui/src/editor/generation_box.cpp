// The lowest part of the temp edits panel.
#include "ui/editor/generation_box.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QScrollArea>
#include <QStyle>
#include <QVBoxLayout>

#include "editor/model/editor_model.h"
#include "ui/editor/take_row.h"
#include "ui/look/plain_tool_tip.h"

namespace brindlehum {
namespace {

constexpr int listHeight = 112;  // logical pixels: three rows and the beginning of a fourth

QPushButton* smallButton(const QString& text) {
    auto* button = new QPushButton(text);
    button->setProperty("role", "small");
    return button;
}

}  // namespace

GenerationBox::GenerationBox(EditorModel& editor, SettingsStore& settings, Asks asks, QWidget* parent)
    : QWidget(parent), editor_(editor), generator_(editor.generator()), settings_(settings), asks_(std::move(asks)) {
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 4, 0, 0);
    column->setSpacing(6);
    auto* head = new QHBoxLayout;
    auto* title = new QLabel(tr("Build-a-Score"));
    title->setProperty("role", "headline");
    head->addWidget(title, 1);
    head->addWidget(setUp_ = smallButton(tr("Set Up…")));
    setUp_->setToolTip(tr("Choose a generation service in the settings"));
    connect(setUp_, &QPushButton::clicked, this, [this] { asks_.openSettings(); });
    column->addLayout(head);
    auto* row = new QHBoxLayout;
    row->setSpacing(4);
    for (const GenerationKind kind : generationKinds) {
        auto* button = smallButton(brindlehum::title(kind));
        connect(button, &QPushButton::clicked, this, [this, kind] { generate(kind); });
        row->addWidget(button);
        buttons_[kind] = button;
    }
    row->addStretch();
    column->addLayout(row);
    makeStatus(*column);
    connect(&generator_, &AIGenerator::changed, this, &GenerationBox::refresh);
    connect(&editor.music(), &MusicModel::changed, this, &GenerationBox::refreshButtons);
    connect(&editor.transport(), &EditorTransport::changed, this, &GenerationBox::refreshRows);
    connect(&editor.document(), &DocumentModel::opened, this, &GenerationBox::refresh);
    connect(&settings, &SettingsStore::changed, this, &GenerationBox::refresh);
    refresh();
}

void GenerationBox::makeStatus(QVBoxLayout& column) {
    column.addWidget(progress_ = new QProgressBar);
    progress_->setTextVisible(false);
    progress_->setRange(0, 0);
    auto* row = new QHBoxLayout;
    row->addWidget(status_ = new QLabel, 1);
    status_->setTextFormat(Qt::PlainText);
    status_->setWordWrap(true);
    row->addWidget(cancel_ = smallButton(tr("Cancel")), 0, Qt::AlignTop);
    connect(cancel_, &QPushButton::clicked, this, [this] { generator_.cancel(); });
    row->addWidget(reveal_ = smallButton(tr("Reveal")), 0, Qt::AlignTop);
    connect(reveal_, &QPushButton::clicked, this, [this] { asks_.reveal(generator_.results().front()); });
    column.addLayout(row);
    auto* content = new QWidget;
    rows_ = new QVBoxLayout(content);
    rows_->setContentsMargins(0, 0, 4, 0);
    rows_->setSpacing(4);
    list_ = new QScrollArea;
    list_->setWidgetResizable(true);
    list_->setFrameShape(QFrame::NoFrame);
    list_->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    list_->setWidget(content);
    list_->setAccessibleName(tr("Takes"));
    column.addWidget(list_);
    column.addWidget(usage_ = new QLabel);
    usage_->setProperty("role", "caption");
    usage_->setTextFormat(Qt::PlainText);
    usage_->setWordWrap(true);
}

std::optional<GenerationSource> GenerationBox::source() const {
    return generationSource(editor_.document(), editor_.music());
}

void GenerationBox::generate(GenerationKind kind) {
    const auto service = generator_.service();
    auto piece = source();
    if (!service || !piece) { return; }
    if (settings_.value().generationAgreed != service->origin) {
        const auto consent = asks_.consent(generationQuestion(QString::fromStdString(service->host), *piece, kind,
                                                              settings_.value().generationSendsName));
        if (!consent) { return; }
        settings_.change([&](AppSettings& s) {
            s.generationAgreed = service->origin;
            s.generationSendsName = *consent;
        });
    }
    generator_.generate(kind, std::move(*piece));
}

void GenerationBox::refresh() {
    const auto service = generator_.service();
    setUp_->setVisible(!service);
    const bool isRunning = generator_.running().has_value();
    progress_->setVisible(isRunning);
    cancel_->setVisible(isRunning);
    reveal_->setVisible(!isRunning && !generator_.results().empty());
    // Before the first job it names who would be asked; the buttons then stay in their place.
    const QString idle = service ? tr("Asks %1").arg(QString::fromStdString(service->host)) : QString();
    const auto& told = generator_.status();
    const QString status = told ? QString::fromStdString(*told) : idle;
    status_->setVisible(!status.isEmpty());
    status_->setText(status);
    const char* role = generator_.isProblem() ? "warning" : "secondary";
    if (status_->property("role") != role) {
        status_->setProperty("role", role);
        status_->style()->polish(status_);
    }
    usage_->setVisible(generator_.usage().has_value());
    usage_->setText(QString::fromStdString(generator_.usage().value_or("")));
    refreshButtons();
    refreshRows();
}

void GenerationBox::refreshButtons() {
    const auto service = generator_.service();
    const auto piece = source();
    const bool canAsk = service && piece && !generator_.running();
    for (const auto& [kind, button] : buttons_) {
        button->setEnabled(canAsk);
        button->setToolTip(tip(service, piece, kind));
    }
}

QString GenerationBox::tip(const std::optional<WebAddress>& service, const std::optional<GenerationSource>& piece,
                           GenerationKind kind) const {
    if (!service) { return tr("Needs a generation service: see Set Up"); }
    if (!piece) { return tr("Needs an open piece whose bars are known"); }
    const QString sent = sentText(*piece, kind, settings_.value().generationSendsName);
    return plainToolTip(tr("Sends %1 to %2").arg(sent, QString::fromStdString(service->host)));
}

void GenerationBox::refreshRows() {
    const auto& files = generator_.results();
    const auto heard = editor_.transport().auditioned();
    list_->setVisible(!files.empty());
    if (files == shown_ && heard == shownHeard_) { return; }
    shown_ = files;
    shownHeard_ = heard;
    while (QLayoutItem* item = rows_->takeAt(0)) {
        item->widget()->deleteLater();
        delete item;
    }
    int height = 0;  // the layout knows it only once the rows are shown
    for (const auto& file : files) {
        auto* row = new TakeRow(file, heard == file.filename().string());
        row->onAudition = [this, file] {
            EditorTransport& transport = editor_.transport();
            transport.auditioned() == file.filename().string() ? transport.stop() : transport.audition(file);
        };
        rows_->addWidget(row);
        row->ensurePolished();
        height += row->sizeHint().height() + rows_->spacing();
    }
    list_->setFixedHeight(std::min(listHeight, height));
}

}  // namespace brindlehum
