// EffectsList: effects or macros in a list that floats under its button; each can be heard before it is applied.
#pragma once

#include <QFrame>
#include <functional>
#include <vector>

#include "editor/model/editor_model.h"

class QToolButton;

namespace brindlehum {

class EffectsList : public QFrame {
    Q_OBJECT
public:
    struct Entry {
        QString name;
        QString description;  // may be empty
        std::function<void(const DocumentModel::Heard&)> preview;
        std::function<void()> apply;
    };
    EffectsList(EditorModel& editor, const QString& hint, std::vector<Entry> entries, QWidget* parent = nullptr);
    static std::vector<Entry> effects(DocumentModel& document);
    static std::vector<Entry> macros(DocumentModel& document);
    void showUnder(QWidget& button);

protected:
    void hideEvent(QHideEvent* event) override;

private:
    void hear(size_t entry);
    void refresh();

    EditorModel& editor_;
    std::vector<Entry> entries_;
    std::vector<QToolButton*> listen_;
    std::optional<size_t> heard_;  // the entry that is made ready or that plays
};

}  // namespace brindlehum
