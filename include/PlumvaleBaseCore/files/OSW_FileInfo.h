// OSW_FileInfo: QFileInfo with display names and the targets of shortcuts.
#pragma once

#include <PlumvaleBaseCore/PlumvaleBaseCore_export.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QString>

/// QFileInfo plus display names and shortcut targets. A shortcut is a ".lnk" file in the
/// Windows shell-link format or a symbolic link.
class PLUMVALE_EXPORT OSW_FileInfo : public QFileInfo {
public:
    /// @{
    /// As the QFileInfo constructors of the same arguments.
    OSW_FileInfo() = default;
    explicit OSW_FileInfo(const QString& path) : QFileInfo(path) {}
    explicit OSW_FileInfo(const QFile& file) : QFileInfo(file) {}
    OSW_FileInfo(const QDir& dir, const QString& name) : QFileInfo(dir, name) {}
    OSW_FileInfo(const QFileInfo& info) : QFileInfo(info) {}
    /// @}

    /// The file's name as shown to the user: its name without the folder.
    QString displayName() const { return fileName(); }
    /// The absolute path with native separators; with `withName` false, its folder.
    QString displayPath(bool withName = true) const;
    /// The target of a ".lnk" file, with '/' separators (empty when the file is not a valid
    /// shell link), or of a symbolic link; empty for anything else.
    QString readLink() const;
    /// With `targetPath` true as readLink(); with false, this file's own absolute path.
    QString readLink(bool targetPath) const;
    /// The network form of a path on a mapped drive; paths are never mapped here, so the
    /// argument comes back unchanged.
    static QString GetNetworkPath(const QString& path) { return path; }
    /// The target path stored in shell-link bytes, with '/' separators; empty when the bytes
    /// are not a valid shell link.
    static QString parseShellLink(const QByteArray& bytes);
    /// Shell-link bytes pointing at `target` ('/' or backslash separators, stored as
    /// backslashes):
    /// a network link for a "//server/share/..." target, a local path otherwise. What
    /// parseShellLink() reads back is `target` with '/' separators.
    static QByteArray makeShellLink(const QString& target);
};
