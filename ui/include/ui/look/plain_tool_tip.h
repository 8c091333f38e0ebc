// A tool tip that shows names and descriptions as they are: Qt would take "<b>" in them for markup.
#pragma once

#include <QString>
#include <QTextDocument>

namespace brindlehum {

inline QString plainToolTip(const QString& text) {
    return Qt::mightBeRichText(text) ? Qt::convertFromPlainText(text) : text;
}

}  // namespace brindlehum
