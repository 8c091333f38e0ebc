// Tooltips that show names and descriptions literally: Qt would read "<b>" in them as markup.
#pragma once

#include <QString>
#include <QTextDocument>

namespace brindlehum {

inline QString plainToolTip(const QString& text) {
    return Qt::mightBeRichText(text) ? Qt::convertFromPlainText(text) : text;
}

}  // namespace brindlehum
