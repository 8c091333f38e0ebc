// Natural order: how names are sorted for people, with numbers by value and without regard to case.
#pragma once

#include <QCollator>
#include <QLocale>

namespace brindlehum {

// One thread at a time.
inline QCollator naturalCollator() {
    // The C locale would compare bytes: numbers by digits, and capitals before small letters.
    QCollator collator(QLocale().language() == QLocale::C ? QLocale(QLocale::English) : QLocale());
    collator.setNumericMode(true);
    collator.setCaseSensitivity(Qt::CaseInsensitive);
    return collator;
}

}  // namespace brindlehum
