// oswUtil and TUOSWMemory: machine, user, disk and memory queries, installation folders.
#pragma once

#include <PlumvaleBaseCore/PlumvaleBaseCore_export.h>

#include <QString>

/// Small operating-system queries; all static.
///
/// Conventions: paths use '/'; failures give false (or an empty text) and, where stated,
/// a report to the message centre in the translation context "oswUtil". Folder queries
/// answer what the shared special folders (BAPP_SharedSpecialFolders) say.
class PLUMVALE_EXPORT oswUtil {
public:
    /// Supplies the raw host name into `buffer` (zero-terminated, at most `size` bytes);
    /// false when there is none.
    using MachineNameSource = bool (*)(char* buffer, unsigned size);

    /// Writes the lower-cased host name, cut at its first '.' unless what follows is exactly
    /// "local", to `out`: at most `len` characters, with `strncpy`'s rule, so a name of
    /// exactly `len` characters is not terminated (pass a buffer of len + 1) and `len` 0
    /// copies nothing. A name longer than a non-zero `len` is reported (debug) and cut. False,
    /// with a trace report, when the system gives no name.
    static bool getShortMachineName(char* out, unsigned len);
    /// Replaces the system as the source of host names (null restores it); for tests.
    static void setMachineNameSource(MachineNameSource source);
    /// Whether two host names resolve to the same first address. A failed lookup is
    /// reported as a warning "gethostbyname failed for %1" and gives false.
    static bool isSameMachineName(const char* a, const char* b);
    /// The temporary folder (the files layer's user temporary root); false when none exists.
    static bool getTempDir(QString& out);
    /// The effective user's login name (else $USER); false when neither is known.
    static bool getUserName(QString& out);
    /// Always true: every supported system is a modern one.
    static bool isVistaOrAbove() { return true; }
    /// Whether the process runs as the superuser (effective user id 0).
    static bool AdminOrRoot();
    /// Adds write permission for the owner; false when the file is missing or it fails.
    static bool setWritable(const char* path);
    /// `path` with every occurrence of `from` replaced by `to` (case-sensitive); an empty
    /// `from` leaves it unchanged.
    static QString pathReplace(QString path, QString from, QString to);

    /// @{
    /// Installation folders, as the shared special folders answer them: root; the shared
    /// configuration (`perUser` false) or the per-user one; etc; resources, or one resource
    /// inside them; the application, executable, 32-bit executable and library folders.
    static QString ORVARoot();
    static QString ORVADir(bool perUser);
    static QString ORVAEtc();
    static QString ORVAResources();
    static QString ORVAResources(const QString& name);
    static QString getAppDir();
    static QString getBinDir();
    static QString getBin32Dir();
    static QString getLibDir();
    /// @}

    /// Free space of the disk holding `path`. `report`, when given, receives the line
    /// "<used>% in use, mounted on <folder>, <free> Mbytes free, <total> Mbytes total".
    /// False, with an error report, when the system cannot tell, or when fewer than
    /// `neededMB` megabytes are free (then without a report).
    static bool getDiskInfo(const char* path, QString* report, float neededMB);
    /// As getDiskInfo() with no space needed.
    static bool ntGetDiskInfo(const QString& path, QString* report);
    /// The user's documents folder; false when it has none.
    static bool ntGetDocumentsPath(QString& out);

    /// Sets the file-creation mask from `ORVA_UMASK` read as octal; a value that is not octal
    /// is reported and sets 0; an absent variable changes nothing. Returns the mask in force.
    static unsigned setUmaskFromEnvironment();
    /// Makes a shortcut `link` to `target`: a shell-link file when `link` ends with ".lnk"
    /// (readable by OSW_FileInfo and by other systems sharing the folder), a symbolic link
    /// otherwise. False, with an error report, when it cannot be written.
    static bool createShortcut(const QString& target, const QString& link);

    /// Adds a folder to the search path of DllOpen (at its front when `first`); a folder
    /// already there is moved, not repeated.
    static void addDynamicLibPath(const QString& folder, bool first);
    /// The first file called `name` in the search path; empty when none has it.
    static QString getDynamicLibPath(const QString& name);
};

/// Memory figures of the machine in megabytes (rounded down); 0 when the system does not
/// say. "Virtual" counts physical memory and swap together.
class PLUMVALE_EXPORT TUOSWMemory {
public:
    /// @{
    /// The figure in megabytes.
    static unsigned getTotalPhysicalMemoryMB();
    static unsigned getFreePhysicalMemoryMB();
    static unsigned getTotalVirtualMemoryMB();
    static unsigned getFreeVirtualMemoryMB();
    /// @}
    /// @{
    /// The same figure written as "<n> MB" into `out`, which is also returned.
    static QString& getTotalPhysicalMemoryMB(QString& out);
    static QString& getFreePhysicalMemoryMB(QString& out);
    static QString& getTotalVirtualMemoryMB(QString& out);
    static QString& getFreeVirtualMemoryMB(QString& out);
    /// @}
};
