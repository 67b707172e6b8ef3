// UT_Log and UT_LogIO: the action log, a plain-text journal of changes made to the disk.
#pragma once

#include <PlumvaleBaseCore/PlumvaleBaseCore_export.h>
#include <PlumvaleBaseCore/text/UT_String.h>

#include <QString>

#include <memory>
#include <type_traits>

/// One log file: one line per event, "<indent><yyyy-MM-dd hh:mm:ss>;<field>;<field>...".
///
/// Conventions: every line is written with one system write, unbuffered, under a lock, so
/// lines from several threads (or a crash) never leave a partial or mixed line. The indent
/// is shared by all threads. Every record returns false and writes nothing when the file
/// is not open.
class PLUMVALE_EXPORT UT_Log {
public:
    /// Enables a template for UT_String arguments only.
    template <typename S>
    using IfUTString = std::enable_if_t<std::is_same_v<S, UT_String>>;

    /// The operations of file lines, written as "Create", "Update", "Copy", "Move",
    /// "Rename", "Delete", "Swap", "Symlink", "HardLink"; any other value as "Unknown".
    enum eFileOperation {
        Create = 0,
        Update = 1,
        Copy = 2,
        Move = 3,
        Rename = 4,
        Delete = 5,
        Swap = 6,
        Symlink = 7,
        HardLink = 8
    };

    /// A closed log with indent 0.
    UT_Log();
    /// Closes the file.
    ~UT_Log();
    UT_Log(const UT_Log&) = delete;
    UT_Log& operator=(const UT_Log&) = delete;

    /// Creates `directory` if needed and opens "%1/%2_%3_%4.log" (directory, local time as
    /// "yyyyMMdd-hhmmss", short machine name, user name) for appending. False when the
    /// folder or the file cannot be made.
    bool create(const QString& directory);
    /// Whether a file is open.
    bool isOpen() const;
    /// Closes the file; later records return false.
    void close();
    /// The open file's path; empty when closed.
    QString fileName() const;

    /// "ACTION;<text>".
    bool logAction(const QString& text);
    /// @{
    /// "<operation word>;<source>;<destination>", the destination empty in the one-path forms.
    /// (The UT_String forms are templates taking UT_String only, so that a string literal
    /// picks the QString form instead of being ambiguous.)
    bool add(eFileOperation op, const QString& path);
    bool add(eFileOperation op, const QString& source, const QString& destination);
    template <typename S, typename = IfUTString<S>>
    bool add(eFileOperation op, const S& path) {
        return add(op, path.ToQString());
    }
    template <typename S, typename = IfUTString<S>>
    bool add(eFileOperation op, const S& source, const S& destination) {
        return add(op, source.ToQString(), destination.ToQString());
    }
    /// @}
    /// @{
    /// "<a>;<b>;<c>;SUCCESS" or ...";FAIL", c empty in the two-text forms.
    bool add(const QString& a, const QString& b, bool ok);
    bool add(const QString& a, const QString& b, const QString& c, bool ok);
    template <typename S, typename = IfUTString<S>>
    bool add(const QString& a, const S& b, bool ok) {
        return add(a, b.ToQString(), ok);
    }
    template <typename S, typename = IfUTString<S>>
    bool add(const QString& a, const QString& b, const S& c, bool ok) {
        return add(a, b, c.ToQString(), ok);
    }
    /// @}
    /// Copies the file `from` to `to`, replacing `to`; the log stays open. False when `from`
    /// cannot be read or `to` cannot be written.
    bool copyLog(const QString& from, const QString& to);

    /// @{
    /// The indent, in spaces, put before each line; it never goes below 0.
    int indent() const;
    void setIndent(int spaces);
    /// @}

    /// The word written for an operation value.
    static QString operationWord(int op);

private:
    bool writeLine(const QString& fields);

    struct Impl;
    std::unique_ptr<Impl> m_impl;
};

/// The process-wide action log: forwards to one UT_Log, and returns false when none is
/// open, so that file operations and tools log without asking.
class PLUMVALE_EXPORT UT_LogIO {
public:
    /// Opens the process-wide log (replacing an open one); false on failure, leaving none.
    static bool create(const QString& directory);
    /// Whether a process-wide log is open.
    static bool isOpen();
    /// Closes and drops the process-wide log.
    static void close();
    /// @{
    /// As UT_Log's, on the process-wide log; false when there is none.
    static bool logAction(const QString& text);
    static bool add(UT_Log::eFileOperation op, const QString& path);
    static bool add(UT_Log::eFileOperation op, const QString& source, const QString& destination);
    static bool add(const QString& a, const QString& b, bool ok);
    static bool add(const QString& a, const QString& b, const QString& c, bool ok);
    template <typename S, typename = UT_Log::IfUTString<S>>
    static bool add(UT_Log::eFileOperation op, const S& path) {
        return add(op, path.ToQString());
    }
    template <typename S, typename = UT_Log::IfUTString<S>>
    static bool add(UT_Log::eFileOperation op, const S& source, const S& destination) {
        return add(op, source.ToQString(), destination.ToQString());
    }
    template <typename S, typename = UT_Log::IfUTString<S>>
    static bool add(const QString& a, const S& b, bool ok) {
        return add(a, b.ToQString(), ok);
    }
    template <typename S, typename = UT_Log::IfUTString<S>>
    static bool add(const QString& a, const QString& b, const S& c, bool ok) {
        return add(a, b, c.ToQString(), ok);
    }
    static bool copyLog(const QString& from, const QString& to);
    /// @}
    /// The process-wide log's file; empty when none is open.
    static QString fileName();

    /// Logs "Start <name>" and indents what follows by 2 until it ends, then logs
    /// "End <name>"; does nothing when no log is open.
    class PLUMVALE_EXPORT logActionHelper {
    public:
        /// Logs the start and raises the indent.
        explicit logActionHelper(const QString& name);
        /// Lowers the indent (not below 0) and logs the end.
        ~logActionHelper();
        logActionHelper(const logActionHelper&) = delete;
        logActionHelper& operator=(const logActionHelper&) = delete;

    private:
        QString m_name;
    };
};
