// The portable part of processes and pipes: the exception, the command-line text, the
// messages.
#include <PlumvaleBaseCore/files/OSW_Execute.h>

#include "files/Process.h"
#include "platform/Platform.h"

#include <QCoreApplication>

#include <cstdio>

OSW_ExecuteException::OSW_ExecuteException(int code, const MSG_Text& message, bool isSignal,
                                           bool isStopped)
    : m_code(code), m_message(message), m_signal(isSignal), m_stopped(isStopped),
      m_what(message.getText().toStdString()) {}

const char* OSW_ExecuteException::what() const noexcept {
    return m_what.c_str();
}

QString OSW_Execute::tr(const char* text) {
    return QCoreApplication::translate("OSW_Execute", text);
}

int OSW_Execute::execm(const QString& a, const QString& b) {
    return execm(QStringList{a, b});
}

int OSW_Execute::execm(const QString& a, const QString& b, const QString& c) {
    return execm(QStringList{a, b, c});
}

int OSW_Execute::execm(const QString& a, const QString& b, const QString& c,
                       const QString& fourth) {
    return execm(QStringList{a, b, c, fourth});
}

unsigned OSW_Execute::writeToStdin(const QByteArray& data) {
    return writeToStdin(static_cast<unsigned>(data.size()), data.constData());
}

namespace plumvale::files {

QString commandLineText(const QStringList& args) {
    QString line;
    for (const QString& arg : args) {
        if (arg.contains(QLatin1Char(' ')))
            line += QLatin1Char('"') + arg + QLatin1Char('"');
        else
            line += arg;
        line += QLatin1Char(' ');
    }
    return line;
}

void reportStdioNotEnabled() {
    MSG_Scope(MSG_Text("OSW_Execute", "Stdio communication has not been enabled for process"),
              MSG_Scope::Debug, ErrorCode::NoError);
}

void printPipeFailure(const char* action, int code) {
    std::printf("Failed to %s with error:\n(%i) '%s'\n", action, code,
                plumvale::platform::errorText(code).c_str());
    std::fflush(stdout);
}

} // namespace plumvale::files
