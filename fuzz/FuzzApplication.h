#pragma once

#include <QApplication>

// The application the targets paint and lay out text in, made on first use. Never destroyed: the
// fuzzer exits without unwinding, and a static QApplication would outlive Qt's own statics.
inline void ensureFuzzApplication() {
    static QApplication* app = nullptr;
    if (app)
        return;
    qputenv("QT_QPA_PLATFORM",
            qgetenv("QT_QPA_PLATFORM").isEmpty() ? "offscreen" : qgetenv("QT_QPA_PLATFORM"));
    static int argc = 1;
    static char name[] = "fuzz";
    static char* argv[] = {name, nullptr};
    app = new QApplication(argc, argv);
}
