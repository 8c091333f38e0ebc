// GenerationQuestion: what the user is asked before the first sound of theirs is sent to a service.
#pragma once

#include <QString>
#include <optional>

class QWidget;

namespace brindlehum {

class AIGenerator;
enum class GenerationKind;
struct GenerationSource;

// What is about to be sent: "60.0 s of the sound, the tempo (120.00 BPM), the key (F#m) and the name “Rain”".
QString sentText(const GenerationSource& source, GenerationKind kind, bool withName);

struct GenerationQuestion {
    QString text;
    QString details;
    QString name;           // of the piece
    bool sendsName = true;  // to begin with
};
GenerationQuestion generationQuestion(const QString& host, const GenerationSource& source, GenerationKind kind,
                                      bool sendsName);

// Whether the name may be sent; none if nothing may.
using GenerationConsent = std::optional<bool>;
GenerationConsent askConsent(QWidget* parent, const GenerationQuestion& question);

}  // namespace brindlehum
