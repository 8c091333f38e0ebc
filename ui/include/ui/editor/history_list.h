// HistoryList: the steps of the document's history; a click goes to the state after a step.
#pragma once

#include <QListWidget>

#include "editor/document/document_model.h"

namespace brindlehum {

class HistoryList : public QListWidget {
    Q_OBJECT
public:
    explicit HistoryList(DocumentModel& document, QWidget* parent = nullptr);
    QSize sizeHint() const override { return {200, 140}; }

protected:
    void changeEvent(QEvent* event) override;

private:
    void refresh();

    DocumentModel& document_;
    std::vector<std::string> shown_;
};

}  // namespace brindlehum
