// GenerationQuestion: what the user is asked before the first sound of theirs is sent to a service.
#pragma once

#include <QString>
#include <optional>

class QWidget;

namespace brindlehum {

class AIGenerator;
enum class GenerationKind;
struct GenerationSource;

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
