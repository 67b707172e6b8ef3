// oswRemapPath: makes paths written on one machine name the same folders on this one.
#pragma once

#include <PlumvaleBaseCore/PlumvaleBaseCore_export.h>

#include <QString>
#include <QStringList>

#include <vector>

/// Remaps paths between machines: a scene saved on one workstation names its files as
/// "C:/...", "//server/share/..." or "/ORVA_DB/..."; here the same folders are mounted
/// elsewhere. All static; state is kept per process, unlocked, and first used from one
/// thread during start-up.
///
/// Configuration: "orvacfg.ini", looked up in the installation's etc folder
/// (oswUtil::ORVAEtc()), then in "/etc" (setConfigFile() names another). Sections
/// "Connection0" to "Connection99" list shares: "Sharename" (\\server\share, required),
/// "Username", "Password" (never logged), and two keys of this platform: "MountPoint", the
/// local folder where the share is mounted, and "Drive", a drive letter that other machines
/// use for it ("S:"). A share without a MountPoint is looked for among the mounted network
/// file systems (a mount whose source is the share).
///
/// Rules (RemapPath2), applied in this order, each at most once:
/// 1. backslashes become '/';
/// 2. the connections are made, once per process: each share's mount folder is reached
///    (which wakes an automounter) and the outcome reported; the first failure stops
///    further connecting;
/// 3. the longest matching prefix of the rule table, compared without regard to case and
///    only at '/' boundaries, is replaced: "//server/share" -> its mount folder; a
///    connection's drive "S:" -> the same folder; the database root as the family writes
///    it, "/ORVA_DB", and the aliases listed by "scene_dir_pattern" -> the local database
///    root ($ORVADB);
/// 4. with `resolveShortcuts`, each ".lnk" component (a shell-link file) and each symbolic
///    link along the path is replaced by its target, through a cache.
/// A path that no rule matches comes back unchanged (with '/' separators).
///
/// "scene_dir_pattern", read from "%1/Manager.conf" under the local database root (lines
/// "key=value"), names how other machines write this database's root: one or more folders
/// separated by ';', each remapped to the local database root.
class PLUMVALE_EXPORT oswRemapPath {
public:
    /// One line of the rule table.
    struct Rule {
        QString from; ///< the prefix as written elsewhere, lower-cased, '/'-separated
        QString to;   ///< the local folder
        QString kind; ///< "share", "drive", "database" or "alias"
    };

    /// `path` remapped by the rules above; `resolveShortcuts` adds the shortcut step.
    static QString RemapPath2(const QString& path, bool resolveShortcuts);
    /// Replaces a local path under a share's mount folder by "//server/share/rest"; true
    /// when it did. Shares come from the configuration and the mounted network file systems.
    static bool MakeUNCPath(QString& path);
    /// Whether `path` lies on a local disk: false when the file system holding it is a
    /// network one (SMB, NFS, SSHFS ...), as the mount table says.
    static bool isLocalDrive(const QString& path);

    /// @{
    /// Separator conversion in place; a null pointer is ignored.
    static void BackSlashToSlash(QString& path);
    static void BackSlashToSlash(char* path);
    static void SlashToBackSlash(QString& path);
    static void SlashToBackSlash(char* path);
    /// @}
    /// Forgets every resolved shortcut.
    static void ClearShortcutCache();

    /// @{
    /// Translation in the context "oswRemapPath".
    static QString tr(const char* source, const char* disambiguation = nullptr, int n = -1);
    static QString trUtf8(const char* source, const char* disambiguation = nullptr, int n = -1);
    /// @}

    /// Reads `file` instead of the default lookup from now on (empty restores it) and
    /// forgets the connections, rules and shortcuts, so that the next remapping starts over.
    static void setConfigFile(const QString& file);
    /// The configuration file read (or to be read); empty when none was found.
    static QString configFile();
    /// The rule table in force, longest prefixes first (making the connections if needed).
    static std::vector<Rule> rules();
    /// How many connections were made.
    static unsigned connectionCount();

private:
    static bool RemapPath(QString& path, bool resolveShortcuts);
};
