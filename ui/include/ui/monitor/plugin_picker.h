// PluginPicker: a list of the installed effects to choose one from, with a search field.
#pragma once

#include <QDialog>
#include <optional>

#include "monitor/engine/plugin_list.h"

class QLabel;
class QLineEdit;
class QListWidget;
class QPushButton;

namespace brindlehum {

class PluginPicker : public QDialog {
    Q_OBJECT
public:
    // `plugins` must outlive the dialog. Looks for new ones.
    explicit PluginPicker(PluginList& plugins, QWidget* parent = nullptr);
    std::optional<PluginInfo> chosen() const;

protected:
    bool eventFilter(QObject* object, QEvent* event) override;

private:
    void fill();
    void filter();

    PluginList& plugins_;
    QLineEdit* search_;
    QListWidget* list_;
    QLabel* note_;
    QPushButton* add_;
};

}  // namespace brindlehum
