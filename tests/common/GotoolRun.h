#pragma once

#include <QProcess>
#include <QTemporaryDir>

#include <sys/resource.h>

#if defined(__SANITIZE_ADDRESS__)
#define GOTOOL_UNDER_ASAN 1
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define GOTOOL_UNDER_ASAN 1
#endif
#endif

// What a run of gotool gave: status -1 when it crashed or did not finish in time.
struct GotoolRun {
    bool finished = false;
    int status = -1;
    QString out;
    QString err;
};

// Runs gotool in the folder, offscreen, within 1 GB of address space, for at most `msecs`.
inline GotoolRun runGotool(const QString& folder, const QStringList& args, int msecs = 60000) {
    static QTemporaryDir runtime;
    QProcess process;
    process.setWorkingDirectory(folder);
    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    env.insert("QT_QPA_PLATFORM", "offscreen");
    env.insert("XDG_RUNTIME_DIR", runtime.path());
    process.setProcessEnvironment(env);
#ifndef GOTOOL_UNDER_ASAN
    // AddressSanitizer reserves terabytes of address space: that build has no such limit.
    process.setChildProcessModifier([] {
        const rlimit limit{rlim_t(1) << 30, rlim_t(1) << 30};
        setrlimit(RLIMIT_AS, &limit);
    });
#endif
    process.start(QStringLiteral(GOTOOL), args);
    GotoolRun r;
    r.finished = process.waitForFinished(msecs);
    if (!r.finished) {
        process.kill();
        process.waitForFinished();
    } else if (process.exitStatus() == QProcess::NormalExit) {
        r.status = process.exitCode();
    }
    r.out = QString::fromUtf8(process.readAllStandardOutput());
    r.err = QString::fromUtf8(process.readAllStandardError());
    return r;
}
