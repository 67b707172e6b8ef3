// TUMessage: the singleton slot, reporting operations, error codes and the suspend guards.
#include <PlumvaleBaseCore/app/BAPP_Identity.h>
#include <PlumvaleBaseCore/text/TUMessage.h>

#include "platform/Platform.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QFileInfo>

#include <cstdio>
#include <cstdlib>

namespace {

// The singleton slot and the flag every centre's destructor sets; unlocked by design (the
// application installs its centre before it starts threads).
TUMessage* g_instance = nullptr;
bool g_destroyed = false;

void writeStdErr(const QByteArray& bytes) {
    std::fwrite(bytes.constData(), 1, static_cast<std::size_t>(bytes.size()), stderr);
}

} // namespace

TUMessage::TUMessage(const QString& applicationName, bool debugMode, bool flag)
    : m_debugMode(debugMode ? 1 : 0), m_applicationName(applicationName), m_flag(flag) {}

TUMessage::~TUMessage() {
    g_destroyed = true;
}

QString TUMessage::tr(const char* source) {
    return QCoreApplication::translate("TUMessage", source);
}

void TUMessage::createInstance(const QString& applicationName, bool debugMode, bool flag) {
    if (g_destroyed)
        std::fputs("TUMessage::createInstance: The TUMessage singleton has already been "
                   "destroyed.\nWill recreate (Phoenix) the singleton once more!!!\n",
                   stderr);
    if (g_instance) {
        const char* text = "TUMessage::createInstace: Request to allocate a second TUMessage "
                           "singleton";
        const QString translated = tr(text);
        std::fprintf(stderr, "%s\n", text);
        writeStdErr(translated.toLocal8Bit() + '\n');
        g_instance->warning(QString::fromLatin1(text), translated);
    }
    TUMessage* created = new TUMessage(applicationName, debugMode, flag);
    delete g_instance;
    g_instance = created;
}

void TUMessage::setInstance(TUMessage* centre) {
    if (g_instance && g_instance != centre) {
        const QString text =
            QStringLiteral("TUMessage::setInstance: Request to set a second TUMessage singleton");
        g_instance->warning(text, text);
        delete g_instance;
    }
    g_instance = centre;
}

TUMessage* TUMessage::instance() {
    if (!g_instance) g_instance = new TUMessage(BAPP_Identity::current().shortName, false, true);
    return g_instance;
}

void TUMessage::releaseInstance() {
    if (!g_instance)
        std::fputs("TUMessage::releaseInstance():  The TUMessage singleton does not exists\n",
                   stderr);
    if (g_destroyed)
        std::fputs("TUMessage::releaseInstance():  The TUMessage singleton has already been "
                   "released once\n",
                   stderr);
    delete g_instance;
    g_instance = nullptr;
}

void TUMessage::LogToStdErr(const QString& text) {
    const QString line =
        QStringLiteral("[%1][%2@%3] %4\n")
            .arg(QDateTime::currentDateTime().toString(QStringLiteral("yyyy.MM.dd-hh.mm.ss")),
                 QString::number(plumvale::platform::processId()),
                 QString::number(plumvale::platform::threadId()), text);
    writeStdErr(line.toLocal8Bit());
    std::fflush(stderr);
}

QString TUMessage::getMsgTypeText(char kind) {
    switch (kind) {
    case 'I':
        return QStringLiteral("I:");
    case 'W':
        return QStringLiteral("W:");
    case 'E':
        return QStringLiteral("E:");
    case 'T':
        return QStringLiteral("T:");
    case 'D':
        return QStringLiteral("D:");
    default:
        return QStringLiteral("Unknown type");
    }
}

void TUMessage::traceLater(const QString& text, const QString& translated, int code) {
    trace(text, translated, code);
}

void TUMessage::close() {}

void TUMessage::writeLog(char, const QString& text, const QString& translated, bool) {
    baseWriteLog(text, translated);
}

void TUMessage::interactiveReport(char, const QString&, bool*) {}

void TUMessage::information(const QString& text, const QString& translated) {
    writeLog('I', text, translated, true);
}

void TUMessage::warning(const QString& text, const QString& translated) {
    writeLog('W', text, translated, true);
}

void TUMessage::warning(const QString& text, const QString& translated, bool*) {
    writeLog('W', text, translated, true);
}

void TUMessage::error(const QString& text, const QString& translated, int code) {
    writeLog('E', text, translated, true);
    if (!m_errorReported) m_errorReported = 1;
    catchErrorCode(code);
}

void TUMessage::fatalError(const QString& text, const QString& translated, int code) {
    writeLog('E', text, translated, true);
    close();
    std::exit(code >= 2 && code <= 8 ? code : 1);
}

void TUMessage::trace(const QString& text, const QString& translated, int code) {
    writeLog('T', text, translated, false);
    catchErrorCode(code);
}

void TUMessage::trace(const MSG_Text& message, int code) {
    trace(message.getText(), message.getTranslatedText(), code);
}

void TUMessage::debug(const QString& text, const QString& translated) {
    if (m_debugMode != 0) writeLog('D', text, translated, false);
}

void TUMessage::setDebugMode(bool on) {
    m_debugMode = on ? 1 : 0;
    const char* text = on ? "Debug mode : ON" : "Debug mode : OFF";
    writeLog('T', QString::fromLatin1(text), tr(text), false);
}

void TUMessage::suspendReport(bool hold) {
    if (hold) {
        ++m_suspendCount;
        return;
    }
    if (--m_suspendCount == 0) interactiveReport('Z', QString(), nullptr);
}

void TUMessage::catchErrorCode(int code) {
    if (code <= 0) return;
    const auto value = static_cast<unsigned int>(code);
    if (m_errorCode == 0 || value < m_errorCode) m_errorCode = value;
}

int TUMessage::getErrorCode() {
    if (m_errorReported && m_errorCode == 0) m_errorCode = ErrorCode::UnknownError;
    return static_cast<int>(m_errorCode);
}

bool TUMessage::okToUseFile(const QString& first, const QString& second) const {
    const QFileInfo a(first);
    const QFileInfo b(second);
    const QDateTime now = QDateTime::currentDateTime();
    if (a.exists() && !b.exists()) return a.lastModified().secsTo(now) >= 86401;
    if (!a.exists() || !b.exists()) return true;
    return b.lastModified().daysTo(now) >= 15;
}

void TUMessage::baseWriteLog(const QString& text, const QString&) {
    QByteArray line;
    if (m_timeLogging)
        line = ' ' + QTime::currentTime().toString(QStringLiteral("hh:mm:ss.zzz")).toUtf8() + ' ';
    line += text.toUtf8();
    line += '\n';
    writeStdErr(line);
    std::fflush(stderr);
}

TUMessageSuspend::TUMessageSuspend() {
    TUMessage::instance()->suspendReport(true);
}

TUMessageSuspend::~TUMessageSuspend() {
    TUMessage::instance()->suspendReport(false);
}

TUMessageUnsuspend::TUMessageUnsuspend() {
    TUMessage* centre = TUMessage::instance();
    m_saved = centre->m_suspendCount;
    centre->m_suspendCount = 0;
}

TUMessageUnsuspend::~TUMessageUnsuspend() {
    TUMessage::instance()->m_suspendCount = m_saved;
}
