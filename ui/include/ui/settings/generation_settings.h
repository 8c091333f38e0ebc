// GenerationSettings: which generation service the editor may ask, and the key for it.
#pragma once

#include <QWidget>

#include "editor/generation/generation_key.h"

class QLabel;
class QLineEdit;
class QPushButton;

namespace brindlehum {

class GenerationSettings : public QWidget {
    Q_OBJECT
public:
    GenerationSettings(SettingsStore& settings, GenerationKey& key);
    QLineEdit& address() { return *address_; }

private:
    std::string origin() const;  // of the address; empty if that is none
    void keepHeader();
    void keepKey();
    void refresh();
    void say(QLabel& label, const QString& text, bool isProblem = false);

    SettingsStore& settings_;
    GenerationKey& stored_;
    QLineEdit* address_;
    QLabel* addressState_;
    QLineEdit* header_;
    QLineEdit* key_;
    QLabel* keyState_;
    QPushButton* forget_;
};

}  // namespace brindlehum
