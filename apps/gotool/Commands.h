#pragma once

#include <QStringList>

// Each command takes the arguments after its name and returns the exit status.
int catalogueCommand(const QStringList& args);
int measureCommand(const QStringList& args);
int exportCommand(const QStringList& args);
int renderCommand(const QStringList& args);
int filterCommand(const QStringList& args);
