// Internal: the portable texts of processes and pipes, shared by their Unix files.
#pragma once

#include <QString>
#include <QStringList>

namespace plumvale::files {

/// The command line's text: each element, in double quotes when it holds a space, followed
/// by one space (the last one too). No other quoting.
QString commandLineText(const QStringList& args);

/// Reports, as a debug message, that the process's stdio pipes are not enabled.
void reportStdioNotEnabled();

/// Prints "Failed to <action> with error:\n(<code>) '<system text>'\n" on standard output.
void printPipeFailure(const char* action, int code);

} // namespace plumvale::files
