// CU_TerminationCleaner: deletes temporary files and detaches shared memory when the
// process ends, normally or by a signal.
#pragma once

#include <PlumvaleBaseCore/PlumvaleBaseCore_export.h>

#include <QSharedPointer>
#include <QString>
#include <QStringList>

class QSharedMemory;

/// The process's clean-up at its end. Call setup() early in start-up.
///
/// Conventions: one instance, made by setup() or the first recording, never destroyed. Its
/// lists are guarded by one non-recursive mutex, which the signal handlers take too: a
/// signal arriving while the same thread records something would block (accepted: recording
/// is brief). Signal handlers are one-shot, as with the C runtime's signal(): a handler that
/// returns from a fault lets the fault end the process by its default action. A previous
/// handler is remembered only when it is a function, and is called after the clean-up.
class PLUMVALE_EXPORT CU_TerminationCleaner {
public:
    /// The cleaner. On its creation clean() is registered to run at normal exit, SIGINT and
    /// SIGTERM go to handleSignalAndExit, and SIGILL, SIGABRT and SIGSEGV to handleSignal.
    static CU_TerminationCleaner* setup();
    /// Installs `handler` (a `void (*)(int)`) for `sig`, remembering the previous one as
    /// above; always true.
    bool installOnSignal(int sig, void* handler);

    /// Records `path`, made absolute, for deletion at the end.
    static void deleteAtExit(const QString& path);
    /// Writes the process id in decimal, without a line end, to `path` and records it for
    /// deletion; false when the file cannot be opened for writing.
    static bool createPidFile(const QString& path);
    /// A new shared-memory object (key and size are the caller's), recorded for detaching.
    static QSharedPointer<QSharedMemory> createSharedMemory();

    /// Removes every recorded file, then forgets them all; a failure is reported as the Qt
    /// warning "Error deleting <path>" and the rest are still removed.
    static void cleanFiles();
    /// Detaches every recorded segment, then forgets them all.
    static void cleanSharedMemory();
    /// @{
    /// cleanFiles() then cleanSharedMemory().
    static void clean();
    static void handleExit();
    /// @}
    /// clean(), then the previous handler of `sig` when one is remembered; the process is
    /// not ended here.
    static void handleSignal(int sig);
    /// clean(); then the previous handler of `sig` when one is remembered, and return;
    /// otherwise "Terminated\n" on the standard error descriptor for SIGTERM, and the
    /// process ends at once with exit status -1 (255).
    static void handleSignalAndExit(int sig);

    /// The files recorded now, in order.
    static QStringList files();

private:
    CU_TerminationCleaner() = default;
};
