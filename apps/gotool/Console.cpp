#include "Console.h"

QTextStream& out() {
    static QTextStream stream(stdout);
    return stream;
}

QTextStream& err() {
    static QTextStream stream(stderr);
    return stream;
}

int fail(const QString& message, int code) {
    out().flush();
    err() << "gotool: " << message << Qt::endl;
    return code;
}

Arguments parseArguments(const QStringList& args, const QStringList& valueOptions, const QStringList& flags) {
    Arguments parsed;
    for (int i = 0; i < args.size() && parsed.error.isEmpty(); ++i) {
        const QString& a = args.at(i);
        if (valueOptions.contains(a)) {
            if (i + 1 < args.size())
                parsed.values.insert(a, args.at(++i));
            else
                parsed.error = QStringLiteral("%1 needs a value").arg(a);
        } else if (flags.contains(a)) {
            parsed.flags << a;
        } else if (a.startsWith(QLatin1Char('-')) && a.size() > 1) {
            parsed.error = QStringLiteral("unknown option %1").arg(a);
        } else {
            parsed.positional << a;
        }
    }
    return parsed;
}
