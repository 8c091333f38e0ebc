// EffectsList: the effects in a list that floats under its button; each can be heard before it is applied.
#pragma once

#include <QFrame>

#include "editor/model/editor_model.h"

namespace brindlehum {

class EffectsList : public QFrame {
    Q_OBJECT
public:
    EffectsList(DocumentModel& document, EditorTransport& transport, QWidget* parent = nullptr);
    void showUnder(QWidget& button);

private:
    DocumentModel& document_;
    EditorTransport& transport_;
};

}  // namespace brindlehum
