// tufile: whole-file and whole-folder operations that log, remap and raise FileErr.
#pragma once

#include <PlumvaleBaseCore/PlumvaleBaseCore_export.h>
#include <PlumvaleBaseCore/text/MSG_Text.h>

#include <QString>
#include <QStringList>

#include <functional>
#include <utility>
#include <vector>

/// Whole-file and whole-folder operations.
///
/// Conventions:
/// - Paths: each path is passed through oswRemapPath::RemapPath2(path, false) and its
///   backslashes turned to '/', the native separator, before the system sees it. The
///   messages of mv and Copy quote these prepared paths; all others quote the caller's.
/// - Action log: an operation that changes the disk records itself in UT_LogIO first (mv,
///   MoveDir, MoveDir2: "Move"; rm, RmDir: "Delete"; Copy, cp, CopyDir: "Copy" with the
///   prepared paths; updateFile: "Update"), whether or not it then succeeds.
/// - Failure: every failure raises FileErr, whose message has the context "tufile"; nothing
///   is returned. What failed is left as the system left it; a move is not undone.
/// - Replacement: Copy never tears its target: it writes a synced copy beside it and
///   renames that over it, so the target holds its old or its new bytes at every moment.
/// - The shell operations (MoveDir, MoveDir2, RmDir) retry a transient failure (a busy file)
///   up to four attempts in all, and, called on the main thread of a widget application,
///   block input to its windows while they run.
namespace tufile {

/// The failure of a tufile operation: one message.
class PLUMVALE_EXPORT FileErr {
public:
    /// An empty message.
    FileErr() = default;
    /// The failure with its message.
    explicit FileErr(const MSG_Text& text) : m_text(text) {}
    /// The untranslated text, for logs.
    QString getText() const { return m_text.getText(); }
    /// The translated text, for the user.
    QString getTransText() const { return m_text.getTranslatedText(); }
    /// @{
    /// The message itself.
    MSG_Text getMSgText() const { return m_text; }
    operator MSG_Text() const { return m_text; }
    /// @}

private:
    MSG_Text m_text;
};

/// Renames the file or folder `from` to `to`, replacing a file there; a file is copied and
/// removed across file systems, a folder is not. "Cannot move file: %1 to: %2".
PLUMVALE_EXPORT void mv(const QString& from, const QString& to);
/// Deletes the file or link `path` (not a folder). "Cannot delete file \"%1\".".
PLUMVALE_EXPORT void rm(const QString& path);
/// rm(path) when `path` exists or is a link, and is not a folder; nothing otherwise.
PLUMVALE_EXPORT void rmIfExists(const QString& path);
/// Copies the file `from` over `to` (created or replaced whole, see the conventions).
/// "Cannot copy file \"%1\" to \"%2\": (%3)", %3 the system's text for the error.
PLUMVALE_EXPORT void Copy(const QString& from, const QString& to);

/// Moves the file or folder `from`. When `to` is an existing folder, `from` goes inside it
/// under its own name, otherwise it takes the name `to`. A folder meeting a folder of the
/// same name is merged into it, its files replacing those of the same name; a file never
/// replaces a folder. Across file systems the tree is copied, then the source removed.
/// "Cannot move: %1 to: %2".
PLUMVALE_EXPORT void MoveDir(const QString& from, const QString& to);
/// MoveDir with the shell's option choice: `confirm` false is MoveDir exactly (message
/// "Cannot move: \"%1\" to \"%2\""). `confirm` true would ask the user before replacing
/// anything; since nothing here asks, the answer is no: when the destination name is
/// already taken nothing is moved and the message is raised.
PLUMVALE_EXPORT void MoveDir2(const QString& from, const QString& to, bool confirm);
/// Deletes the file, link or whole folder tree `path`, never following a link out of it.
/// A missing path counts as a failure. "Cannot delete: %1".
PLUMVALE_EXPORT void RmDir(const QString& path);

/// Creates the folder `path` when it does not exist (its parent must).
/// "Invalid path (empty)", "Cannot create dir: %1".
PLUMVALE_EXPORT void mkdir(const QString& path);
/// Removes the empty folder `path` when it exists. "Invalid path (empty)",
/// "Cannot remove dir: %1".
PLUMVALE_EXPORT void rmdir(const QString& path);
/// Always raises "Sym link not supported".
[[noreturn]] PLUMVALE_EXPORT void lns(const QString& target, const QString& link);
/// Always raises "Hard link not supported".
[[noreturn]] PLUMVALE_EXPORT void lnh(const QString& target, const QString& link);
/// Always raises "Permissions change not supported".
[[noreturn]] PLUMVALE_EXPORT void chmod(const QString& path, int mode);

/// Whether anything (file or folder) exists at the remapped `path`.
PLUMVALE_EXPORT bool fileExists(QString path);
/// Whether a folder exists at the remapped `path`.
PLUMVALE_EXPORT bool dirExists(QString path);
/// a + b when `a` ends with '/', else a + "/" + b.
PLUMVALE_EXPORT QString mergePart(const QString& a, const QString& b);
/// `path` with '\' turned to '/', a drive ("C:", the text up to a ':' found after the first
/// character) replaced by "/" and handed back through `drive` (when not null; left as it
/// was when there is no drive), and every run of '/' reduced to one.
PLUMVALE_EXPORT QString unixPath(const QString& path, QString* drive);

/// Creates every missing folder of `path`; with `isFile`, of the folder that holds the
/// file `path` instead. "Cannot create directory \"%1\": (%2)", %1 the folder that could
/// not be made, %2 the system's text.
PLUMVALE_EXPORT void checkCreatePath(const QString& path, bool isFile);

/// Asked before each file a copy writes, with that file's source path; false halts the copy
/// ("Copy of %1 to %2 has been halted.\n").
using CopyProceed = std::function<bool(const QString& file)>;

/// Copies the file or folder `from` (a folder only with `recursive`, with all it holds).
/// When `to` is an existing folder the copy goes inside it under the source's name.
/// - `overwrite`: existing files are replaced (as Copy does); without it a file found at a
///   target raises "Error during file copy. \"%1\" already exists.".
/// - A missing source raises "Error during file copy. \"%1\" does not exists.".
/// - `keepGoing`: a file or folder that fails is reported to the message centre as a
///   warning and the copy goes on; the first such failure is raised at the end. Without it
///   the first failure is raised at once.
/// Folders are created as needed ("Cannot create directory \"%1\": (%2)").
PLUMVALE_EXPORT void cp(const QString& from, const QString& to, bool overwrite, bool recursive,
                        bool keepGoing, const CopyProceed& proceed = CopyProceed());
/// Copies what the folder `from` holds into the folder `to` (created when missing), with
/// cp's options; subfolders only with `recursive`.
PLUMVALE_EXPORT void CopyDir(const QString& from, const QString& to, bool overwrite, bool recursive,
                             bool keepGoing, const CopyProceed& proceed = CopyProceed());

/// One replacement for updateFile: every occurrence of `first` becomes `second`.
using TextPair = std::pair<QString, QString>;
/// Replaces texts in the file `file`, returning how many were replaced.
///
/// Matching is exact and case-sensitive, on the file's encoding: UTF-16 (either order)
/// when the file starts with its byte-order mark, UTF-8 otherwise (ASCII and Latin-1 files
/// match as long as the searched texts are ASCII). The pairs are applied one after the
/// other, each to the result of the one before, left to right without overlapping; an
/// empty search text is skipped. With no replacement the file is not rewritten; otherwise
/// the new content goes through PL_FileUtil's safe replacement (new copy, backup, rename),
/// so the file holds the old or the new text at every moment, and the backup "<name>~" is
/// removed at the end. "Cannot update file \"%1\"." when it cannot be read or replaced.
PLUMVALE_EXPORT int updateFile(const QString& file, const std::vector<TextPair>& pairs);
/// updateFile(file, {{from, to}}).
PLUMVALE_EXPORT int updateFile(const QString& file, const QString& from, const QString& to);

} // namespace tufile
