// The question as a message box with a check box.
#include "ui/editor/generation_question.h"

#include <QCheckBox>
#include <QCoreApplication>
#include <QMessageBox>
#include <QPushButton>

#include "editor/generation/generation_source.h"
#include "ui/look/path_text.h"

namespace brindlehum {

GenerationQuestion generationQuestion(const QString& host, const GenerationSource& source, GenerationKind kind,
                                      bool sendsName) {
    const QString sent = QString::fromStdString(sentText(source, kind, false));
    const QString longest = QString::number(int(AacClip::longest));
    return {
        QCoreApplication::translate("GenerationQuestion", "Send to %1?").arg(host),
        QCoreApplication::translate(
            "GenerationQuestion",
            "For this %1, %2 go to the generation service at %3.\n\nLater endings and variations send up to %4 s of "
            "the sound each; intros send none. The takes are fetched from the addresses that the service gives. You "
            "won't be asked again for this service.")
            .arg(QString::fromLatin1(rawValue(kind)), sent, host, longest),
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
