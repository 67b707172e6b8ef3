// OSW_Execute: child programs started from an argument list, waited for or detached, with
// optional pipes on their standard streams.
#pragma once

#include <PlumvaleBaseCore/PlumvaleBaseCore_export.h>
#include <PlumvaleBaseCore/text/MSG_Text.h>

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <exception>
#include <memory>

/// The failure of OSW_Execute: an error code, a message, and whether the child was ended by
/// a signal or stopped.
class PLUMVALE_EXPORT OSW_ExecuteException : public std::exception {
public:
    /// The exception with its code, message and the two flags.
    OSW_ExecuteException(int code, const MSG_Text& message, bool isSignal, bool isStopped);
    /// The untranslated message, as UTF-8.
    const char* what() const noexcept override;

    /// @{
    /// The code, the message, and the two flags.
    int errorCode() const { return m_code; }
    const MSG_Text& errorMessage() const { return m_message; }
    bool isSignal() const { return m_signal; }
    bool isStopped() const { return m_stopped; }
    operator MSG_Text() const { return m_message; }
    /// @}

private:
    int m_code;
    MSG_Text m_message;
    bool m_signal;
    bool m_stopped;
    std::string m_what;
};

/// A child program.
///
/// Conventions:
/// - The argument list is the child's argv as it stands (the first element is the program,
///   looked up in PATH when it has no '/'): no shell and no quoting. commandLine() gives the
///   text form for messages: each element (in double quotes when it holds a space) followed
///   by one space.
/// - A start that fails is not reported: execm returns 0 and pid() stays 0.
/// - The exit code of a child ended by a signal is 128 + the signal number.
/// - With stdio pipes, a waited-for child never blocks on a full pipe: while waiting, the
///   parent keeps its standard output and error, which the reads then return first.
/// - Writing to a child that has gone returns a short count; the parent gets no SIGPIPE.
/// - A handle is a descriptor number carried in a pointer.
/// - One thread at a time; blocking calls block only the calling thread. A child still
///   running when the object goes is left running; its end is then collected by nobody
///   until the parent exits.
class PLUMVALE_EXPORT OSW_Execute {
public:
    /// Waiting, without pipes, in the parent's folder.
    OSW_Execute();
    ~OSW_Execute();
    OSW_Execute(const OSW_Execute&) = delete;
    OSW_Execute& operator=(const OSW_Execute&) = delete;

    /// @{
    /// When detached, execm returns as soon as the child has started.
    void setDetached(bool detached);
    bool detached() const;
    /// @}
    /// Connects the child's standard input, output and error to pipes; set before execm.
    void enableStdioPipes(bool on);
    /// @{
    /// The child's working folder; empty means the parent's.
    void setWorkingDirectory(const QString& folder);
    QString workingDirectory() const;
    /// @}
    /// Records a handle in the inherited set. The set is not used: a child inherits every
    /// inheritable descriptor, and the library opens none inheritable.
    void addInheritedHandle(void* handle);

    /// Starts `args`; returns the child's exit code when waiting, otherwise 0 (and 0 when
    /// the start fails). Throws OSW_ExecuteException (code 0) for an empty list.
    int execm(const QStringList& args);
    /// @{
    /// execm of the list of the texts given.
    int execm(const QString& a, const QString& b);
    int execm(const QString& a, const QString& b, const QString& c);
    int execm(const QString& a, const QString& b, const QString& c, const QString& d);
    /// @}
    /// The text of the last command line started (see the class comment).
    QString commandLine() const;

    /// The child's process id; 0 before a successful start.
    unsigned pid() const;
    /// Whether the child still runs; a child that has ended is collected here.
    bool isRunning();
    /// Waits for the child's end and returns its exit code; 0 without a child.
    int waitForProcEnd();
    /// Ends the child at once (SIGKILL); nothing when there is none or it was collected.
    void kill();

    /// @{
    /// Writes to the child's standard input in pieces of at most 2048 bytes, keeping the
    /// child's output meanwhile; the count written, short when the child has gone.
    unsigned writeToStdin(unsigned n, const char* data);
    unsigned writeToStdin(const QByteArray& data);
    /// @}
    /// Closes the child's standard input: a child reading it to its end can then finish.
    /// Waiting for the child does this too.
    void closeStdin();
    /// @{
    /// One blocking read of at most `n` bytes (kept bytes first); 0 on failure, at the end,
    /// or when `n` is 0.
    unsigned readFromStdout(unsigned n, char* buffer);
    unsigned readFromStderr(unsigned n, char* buffer);
    /// @}
    /// @{
    /// Reads in pieces of 1024 bytes, appending, until a read returns nothing (the end of
    /// the stream); returns the array's size.
    unsigned readFromStdout(QByteArray& out);
    unsigned readFromStderr(QByteArray& out);
    /// @}
    // Without enableStdioPipes(true) the four readers and the writers return 0 and report
    // "Stdio communication has not been enabled for process" as a debug message.

    /// @{
    /// The class's texts translated in the context "OSW_Execute".
    static QString tr(const char* text);
    static QString trUtf8(const char* text) { return tr(text); }
    /// @}

private:
    struct Private;
    std::unique_ptr<Private> d;
};
