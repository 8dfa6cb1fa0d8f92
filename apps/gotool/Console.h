#pragma once

#include <QHash>
#include <QString>
#include <QStringList>
#include <QTextStream>

QTextStream& out();
QTextStream& err();
// Prints "gotool: message" on stderr and returns code, the exit status.
int fail(const QString& message, int code = 1);

// Exit statuses: 1 for input or output that cannot be used, 2 for a command line that is wrong.
constexpr int ExitFailure = 1;
constexpr int ExitUsage = 2;

// A command's arguments: positional ones, and options that take a value ("-o out.png").
struct Arguments {
    QStringList positional;
    QStringList flags;
    QHash<QString, QString> values;
    QString error; // the first argument that does not fit
};
// Splits args; valueOptions name the options that take the next argument as their value, flags
// those that stand alone. Anything else starting with '-' is an error.
Arguments parseArguments(const QStringList& args, const QStringList& valueOptions, const QStringList& flags);
