// PL_AppLock: the process-wide application lock and palette lock, counted per thread.
#pragma once

#include <PlumvaleBaseCore/PlumvaleBaseCore_export.h>

/// The application's two data locks, taken through scoped objects that count per thread.
///
/// Conventions:
/// - The application lock is recursive and exclusive; the palette lock is a fair
///   reader-writer lock. Each thread keeps a record of counts, so that nested scopes take a
///   mutex only once and the outermost scope lets it go.
/// - Order: the application mutex is always taken before the palette. AppLock on a thread
///   that holds the palette for writing lets the palette go, takes the application mutex
///   and takes the palette back as a writer.
/// - Misuse is fatal: AppLock or PaletteLock while the thread holds the palette for reading
///   aborts the process (after one line on standard error).
/// - A PaletteReadLock inside a PaletteLock, or inside an AutoReleasePaletteLock that still
///   holds the palette, nests in the hold that exists, whatever its kind; UnlockAll always
///   takes the palette back as a writer.
/// - Every scope object is destroyed on the thread that made it, in reverse order of
///   construction. A thread's record lives until the process ends.
class PLUMVALE_EXPORT PL_AppLock {
public:
    struct ThreadRecord;

    /// A thread's counts, as kept in its record (UnlockAll saves and restores them whole).
    struct Counts {
        /// Live scope objects of the thread.
        int depth = 0;
        /// Live AppLock scopes (the application mutex is held while it is not 0).
        int appLockCount = 0;
        /// Live palette scopes, reading and writing together.
        int paletteLockCount = 0;
        /// Live AutoReleasePaletteLock scopes.
        int autoReleaseCount = 0;
        /// Whether the thread holds the palette mutex.
        bool paletteHeld = false;
        /// Live PaletteReadLock scopes.
        int paletteReadCount = 0;
    };

    /// The calling thread's counts (all zero before its first scope).
    static Counts currentCounts();
    /// The calling thread's serial number: 1 for the first thread that used these locks, then
    /// 2, 3 ... Registers the thread when it has no record yet.
    static unsigned threadSerial();
    /// Whether the application mutex could be taken at this instant by the calling thread:
    /// false while another thread holds it (a momentary answer, for checks and tests).
    static bool isApplicationMutexAvailable();
    /// Whether the palette is free at this instant: false while any thread holds it or waits
    /// for it, the calling thread included (a momentary answer, for checks and tests).
    static bool isPaletteAvailable();
    /// Whether the calling thread holds the palette as a writer (see the nesting rules).
    static bool holdsPaletteForWriting();

    /// Counts the thread's depth and locks nothing; the base of every scope below.
    class PLUMVALE_EXPORT SmartLocker {
    public:
        /// Adds one to the thread's depth (registering the thread on first use).
        SmartLocker();
        /// Takes one from the depth.
        ~SmartLocker();
        SmartLocker(const SmartLocker&) = delete;
        SmartLocker& operator=(const SmartLocker&) = delete;

        /// The thread's depth just after this object was made.
        int depth() const { return m_depth; }

    protected:
        int m_depth;
        ThreadRecord* m_record;
    };

    /// The application lock for the scope.
    class PLUMVALE_EXPORT AppLock : public SmartLocker {
    public:
        /// Takes the application mutex unless the thread holds it already. Aborts when the
        /// thread holds the palette for reading.
        AppLock();
        /// Lets the mutex go when this was the thread's last AppLock.
        ~AppLock();
    };

    /// The palette lock, exclusive, for the scope.
    class PLUMVALE_EXPORT PaletteLock : public SmartLocker {
    public:
        /// Takes the palette as a writer unless the thread holds it already. Aborts when the
        /// thread holds it for reading (there is no upgrade).
        PaletteLock();
        /// Lets the palette go when no palette scope or auto-release scope is left.
        ~PaletteLock();
    };

    /// The palette lock, shared, for the scope.
    class PLUMVALE_EXPORT PaletteReadLock : public SmartLocker {
    public:
        /// Takes the palette as a reader unless the thread holds it already (in either way).
        PaletteReadLock();
        /// Lets the palette go when no palette scope or auto-release scope is left.
        ~PaletteReadLock();
    };

    /// Keeps a palette hold taken inside its scope until the scope ends.
    class PLUMVALE_EXPORT AutoReleasePaletteLock : public SmartLocker {
    public:
        /// Takes nothing.
        AutoReleasePaletteLock();
        /// Lets the palette go when it is held and no palette or auto-release scope is left.
        ~AutoReleasePaletteLock();
    };

    /// An AppLock and an AutoReleasePaletteLock, for the span of one user interaction.
    class PLUMVALE_EXPORT AppLockInteractive {
    public:
        /// The AppLock, then the auto-release scope.
        AppLockInteractive() = default;
        AppLockInteractive(const AppLockInteractive&) = delete;
        AppLockInteractive& operator=(const AppLockInteractive&) = delete;

    private:
        // Members end in reverse order: the auto-release part first.
        AppLock m_app;
        AutoReleasePaletteLock m_autoRelease;
    };

    /// Lets go of everything the thread holds for the scope and takes it back afterwards.
    class PLUMVALE_EXPORT UnlockAll : public SmartLocker {
    public:
        /// Releases the palette and the application mutex, and zeroes the thread's counts.
        UnlockAll();
        /// Restores the counts, takes the application mutex back if it was held, then the
        /// palette if it was held, always as a writer.
        ~UnlockAll();

    private:
        Counts m_saved;
    };

    PL_AppLock() = delete;
};
