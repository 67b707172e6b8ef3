// CU_TerminationCleaner: the recorded files and segments, removed at exit or on a signal.
#include <PlumvaleBaseCore/app/CU_TerminationCleaner.h>

#include "app/SignalHandlers.h"
#include "platform/Platform.h"

#include <QFile>
#include <QFileInfo>
#include <QMutex>
#include <QMutexLocker>
#include <QSharedMemory>
#include <QVector>

#include <csignal>
#include <cstdlib>

namespace {

// Never destroyed: a signal may arrive during static destruction.
struct CleanerState {
    QStringList files;
    QVector<QSharedPointer<QSharedMemory>> segments;
    QMutex mutex;
};

CleanerState* g_state = nullptr;
CU_TerminationCleaner* g_cleaner = nullptr;

// The state for recording: made with the cleaner on first use.
CleanerState& recording() {
    CU_TerminationCleaner::setup();
    return *g_state;
}

void cleanAtExit() {
    CU_TerminationCleaner::clean();
}

} // namespace

CU_TerminationCleaner* CU_TerminationCleaner::setup() {
    if (g_cleaner) return g_cleaner;
    g_state = new CleanerState;
    g_cleaner = new CU_TerminationCleaner;
    std::atexit(cleanAtExit);
    for (int sig : {SIGINT, SIGTERM})
        plumvale::app::installSignalHandler(sig, handleSignalAndExit);
    for (int sig : {SIGILL, SIGABRT, SIGSEGV})
        plumvale::app::installSignalHandler(sig, handleSignal);
    return g_cleaner;
}

bool CU_TerminationCleaner::installOnSignal(int sig, void* handler) {
    plumvale::app::installSignalHandler(sig, reinterpret_cast<void (*)(int)>(handler));
    return true;
}

void CU_TerminationCleaner::deleteAtExit(const QString& path) {
    CleanerState& s = recording();
    const QString absolute = QFileInfo(path).absoluteFilePath();
    QMutexLocker lock(&s.mutex);
    s.files.append(absolute);
}

bool CU_TerminationCleaner::createPidFile(const QString& path) {
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate)) return false;
    const QByteArray pid = QString::number(plumvale::platform::processId()).toLatin1();
    file.write(pid);
    file.close();
    deleteAtExit(path);
    return true;
}

QSharedPointer<QSharedMemory> CU_TerminationCleaner::createSharedMemory() {
    CleanerState& s = recording();
    QSharedPointer<QSharedMemory> segment(new QSharedMemory);
    QMutexLocker lock(&s.mutex);
    s.segments.append(segment);
    return segment;
}

void CU_TerminationCleaner::cleanFiles() {
    if (!g_state) return; // nothing was ever recorded
    CleanerState& s = *g_state;
    QMutexLocker lock(&s.mutex);
    for (const QString& path : qAsConst(s.files))
        if (!QFile::remove(path)) qWarning("Error deleting %s", path.toUtf8().constData());
    s.files.clear();
}

void CU_TerminationCleaner::cleanSharedMemory() {
    if (!g_state) return;
    CleanerState& s = *g_state;
    QMutexLocker lock(&s.mutex);
    for (const QSharedPointer<QSharedMemory>& segment : qAsConst(s.segments))
        segment->detach();
    s.segments.clear();
}

void CU_TerminationCleaner::clean() {
    cleanFiles();
    cleanSharedMemory();
}

void CU_TerminationCleaner::handleExit() {
    clean();
}

void CU_TerminationCleaner::handleSignal(int sig) {
    clean();
    plumvale::app::callPreviousSignalHandler(sig);
}

void CU_TerminationCleaner::handleSignalAndExit(int sig) {
    clean();
    if (plumvale::app::callPreviousSignalHandler(sig)) return;
    if (sig == SIGTERM) plumvale::app::writeToStandardError("Terminated\n", 11);
    plumvale::app::exitImmediately(-1);
}

QStringList CU_TerminationCleaner::files() {
    if (!g_state) return QStringList();
    QMutexLocker lock(&g_state->mutex);
    return g_state->files;
}
