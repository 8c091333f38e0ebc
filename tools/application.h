// Application: Qt's event loop for a command that needs one.
#pragma once

#include <QCoreApplication>
#include <clocale>

namespace brindlehum::cli {

// Qt wants words of its own.
struct Application {
    Application() {
        std::setlocale(LC_NUMERIC, "C");  // Qt has set the user's
        QCoreApplication::setApplicationName(QStringLiteral("Brindlehum"));
    }
    int count = 1;
    char name[15] = "brindlehum-cli";
    char* words[2] = {name, nullptr};
    QCoreApplication application{count, words};
};

}  // namespace brindlehum::cli
