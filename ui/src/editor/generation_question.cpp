// The question as a message box with a check box.
#include "ui/editor/generation_question.h"

#include <QCheckBox>
#include <QCoreApplication>
#include <QMessageBox>
#include <QPushButton>

#include "base/number_text.h"
#include "editor/generation/generation_source.h"
#include "ui/look/path_text.h"

namespace brindlehum {

namespace {

QString say(const char* text) {
    return QCoreApplication::translate("GenerationQuestion", text);
}

QString begins(GenerationKind kind) {
    switch (kind) {
        case GenerationKind::intro:
            return say(
                QT_TRANSLATE_NOOP("GenerationQuestion", "For this intro, %1 go to the generation service at %2."));
        case GenerationKind::ending:
            return say(
                QT_TRANSLATE_NOOP("GenerationQuestion", "For this ending, %1 go to the generation service at %2."));
        case GenerationKind::variation:
            break;
    }
    return say(QT_TRANSLATE_NOOP("GenerationQuestion", "For this variation, %1 go to the generation service at %2."));
}

}  // namespace

QString sentText(const GenerationSource& source, GenerationKind kind, bool withName) {
    const QString bpm = QString::fromStdString(fixed(source.bpm, 2));
    const QString key = QString::fromStdString(source.key);
    const QString name = pathText(source.file.stem());
    const auto clip = clipOf(source, kind);
    if (!clip) {
        return withName
                   ? say(QT_TRANSLATE_NOOP("GenerationQuestion", "the tempo (%1 BPM), the key (%2) and the name “%3”"))
                         .arg(bpm, key, name)
                   : say(QT_TRANSLATE_NOOP("GenerationQuestion", "the tempo (%1 BPM) and the key (%2)")).arg(bpm, key);
    }
    const QString seconds = QString::fromStdString(fixed(double(clip->end - clip->start) / source.sampleRate, 1));
    return withName
               ? say(QT_TRANSLATE_NOOP("GenerationQuestion",
                                       "%1 s of the sound, the tempo (%2 BPM), the key (%3) and the name “%4”"))
                     .arg(seconds, bpm, key, name)
               : say(QT_TRANSLATE_NOOP("GenerationQuestion", "%1 s of the sound, the tempo (%2 BPM) and the key (%3)"))
                     .arg(seconds, bpm, key);
}

GenerationQuestion generationQuestion(const QString& host, const GenerationSource& source, GenerationKind kind,
                                      bool sendsName) {
    const QString longest = QString::number(int(AacClip::longest));
    return {QCoreApplication::translate("GenerationQuestion", "Send to %1?").arg(host),
            begins(kind).arg(sentText(source, kind, false), host) + "\n\n" +
                QCoreApplication::translate(
                    "GenerationQuestion",
                    "Later endings and variations send up to %1 s of the sound each; intros send none. The takes are "
                    "fetched from the addresses that the service gives. You won't be asked again for this service.")
                    .arg(longest),
            pathText(source.file.stem()), sendsName};
}

GenerationConsent askConsent(QWidget* parent, const GenerationQuestion& question) {
    QMessageBox box(parent);
    box.setIcon(QMessageBox::Question);
    box.setTextFormat(Qt::PlainText);
    box.setText(question.text);
    box.setInformativeText(question.details);
    constexpr int widest = 40;  // characters of the name
    const QString name = question.name.size() > widest ? question.name.left(widest - 1) + "…" : question.name;
    auto* named = new QCheckBox(QCoreApplication::translate("GenerationQuestion", "Also send the file's name, “%1”")
                                    .arg(QString(name).replace('&', "&&")));
    named->setChecked(question.sendsName);
    box.setCheckBox(named);
    auto* send = box.addButton(QCoreApplication::translate("GenerationQuestion", "Send"), QMessageBox::AcceptRole);
    box.addButton(QMessageBox::Cancel);
    box.setDefaultButton(send);
    box.exec();
    return box.clickedButton() == send ? GenerationConsent(named->isChecked()) : std::nullopt;
}

}  // namespace brindlehum
