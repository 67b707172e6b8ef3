// TUMessage, the process-wide message centre, and its suspend/unsuspend scope guards.
#pragma once

#include <PlumvaleBaseCore/PlumvaleBaseCore_export.h>
#include <PlumvaleBaseCore/text/MSG_Text.h>

#include <QString>

/// The one channel through which the library and its applications report information,
/// warnings, errors, fatal errors, traces and debug messages, and which keeps the process's
/// error code (the smallest positive code reported).
///
/// The base centre writes each report's untranslated text to standard error. Applications
/// install a derived centre before starting threads; the base centre takes no lock.
/// Message kinds: 'I' information, 'W' warning, 'E' error and fatal error, 'T' trace,
/// 'D' debug, and 'Z', the signal that held reports may now be shown.
class PLUMVALE_EXPORT TUMessage {
public:
    /// A centre for the named application, with debug mode on or off; `flag` is kept for
    /// derived centres (getFlag()).
    TUMessage(const QString& applicationName, bool debugMode, bool flag);
    /// @{
    /// Copies the settings and the kept error code.
    TUMessage(const TUMessage&) = default;
    TUMessage& operator=(const TUMessage&) = default;
    /// @}
    /// Sets the process-wide destroyed flag.
    virtual ~TUMessage();

    /// Replaces the current centre by a new base centre (printing the misuse notices when a
    /// centre exists or one was destroyed before).
    static void createInstance(const QString& applicationName, bool debugMode, bool flag);
    /// Installs an application-made centre, which the singleton slot then owns.
    static void setInstance(TUMessage* centre);
    /// The current centre; creates a base centre named after the running application when
    /// there is none.
    static TUMessage* instance();
    /// Destroys the current centre.
    static void releaseInstance();
    /// Writes "[yyyy.MM.dd-hh.mm.ss][pid@tid] text" to standard error in the locale's 8-bit
    /// encoding, independent of any centre.
    static void LogToStdErr(const QString& text);
    /// "I:", "W:", "E:", "T:", "D:", or "Unknown type".
    static QString getMsgTypeText(char kind);
    /// `source` translated in the "TUMessage" context.
    static QString tr(const char* source);

    /// The base behaviour is trace(); a derived centre may defer it.
    virtual void traceLater(const QString& text, const QString& translated, int code);
    /// Called by fatalError() before the process ends; empty in the base.
    virtual void close();
    /// Where every report goes; the base writes through baseWriteLog().
    virtual void writeLog(char kind, const QString& text, const QString& translated,
                          bool important);
    /// Shows a report to the user; empty in the base.
    virtual void interactiveReport(char kind, const QString& translated, bool* answer);

    /// @{
    /// Report an information or a warning through writeLog() as important; the answer slot of
    /// the third form is left to derived centres.
    void information(const QString& text, const QString& translated);
    void warning(const QString& text, const QString& translated);
    void warning(const QString& text, const QString& translated, bool* answer);
    /// @}
    /// Marks that an error was reported, then catchErrorCode(code).
    void error(const QString& text, const QString& translated, int code);
    /// Logs, calls close() and ends the process: exit status `code` when 2 <= code <= 8,
    /// otherwise 1. Never returns.
    [[noreturn]] void fatalError(const QString& text, const QString& translated, int code);
    /// @{
    /// Report a trace ('T', not important) and keep its code as catchErrorCode() does.
    void trace(const QString& text, const QString& translated, int code);
    void trace(const MSG_Text& message, int code);
    /// @}
    /// Only when the debug mode holds a non-zero value.
    void debug(const QString& text, const QString& translated);

    /// Stores the mode, then traces "Debug mode : ON" or "Debug mode : OFF".
    void setDebugMode(bool on);
    /// True only when the stored mode is exactly 1.
    bool isDebugMode() const { return m_debugMode == 1; }
    /// The stored debug mode (0 off, 1 on; other values are kept as derived centres set them).
    unsigned char getDebugMode() const { return m_debugMode; }
    /// @{
    /// Flags for derived centres (direct: report at once rather than queue; silent: show
    /// nothing to the user) and for the base log (time logging: a time stamp before each line).
    void setDirectMode(bool on) { m_directMode = on; }
    bool isDirectMode() const { return m_directMode; }
    void setSilent(bool on) { m_silent = on; }
    bool isSilent() const { return m_silent; }
    void setTimeLogging(bool on) { m_timeLogging = on; }
    bool isTimeLogging() const { return m_timeLogging; }
    /// @}
    /// true holds reports (nests); false releases one level and sends 'Z' at level 0.
    void suspendReport(bool hold);
    /// Whether at least one suspension holds.
    bool isReportSuspended() const { return m_suspendCount > 0; }
    /// Keeps the smallest positive code; 0 or less is ignored.
    void catchErrorCode(int code);
    /// The same as catchErrorCode(code).
    void updateErrorCode(int code) { catchErrorCode(code); }
    /// The kept code; 100 when an error was reported without one.
    int getErrorCode();
    /// Whether a file pair may be used: when only `first` exists, whether it is more than a
    /// day (86,400 s) old; when both exist, whether `second` is at least 15 days old; true
    /// otherwise.
    bool okToUseFile(const QString& first, const QString& second) const;

    /// The application name given at construction.
    const QString& getApplicationName() const { return m_applicationName; }
    /// The operating-system user name shown in logs; set by the application frame.
    void setUserName(const QString& name) { m_userName = name; }
    /// The user name set by setUserName(), empty before.
    const QString& getUserName() const { return m_userName; }
    /// The third construction flag, kept for derived centres.
    bool getFlag() const { return m_flag; }

protected:
    /// The base log: the untranslated text as UTF-8 on standard error, with " hh:mm:ss.zzz "
    /// in front when time logging is on.
    void baseWriteLog(const QString& text, const QString& translated);

private:
    friend class TUMessageUnsuspend;

    unsigned char m_debugMode;
    bool m_directMode = false;
    QString m_applicationName;
    QString m_userName;
    bool m_silent = false;
    bool m_flag;
    int m_suspendCount = 0;
    bool m_timeLogging = false;
    unsigned int m_errorCode = 0;
    int m_errorReported = 0;
};

/// Holds the reports of TUMessage::instance() for its lifetime; the outermost guard's end
/// sends the 'Z' signal.
class PLUMVALE_EXPORT TUMessageSuspend {
public:
    /// @{
    /// Suspends reports on construction and releases one level on destruction.
    TUMessageSuspend();
    ~TUMessageSuspend();
    /// @}
    TUMessageSuspend(const TUMessageSuspend&) = delete;
    TUMessageSuspend& operator=(const TUMessageSuspend&) = delete;
};

/// Lifts every suspension of TUMessage::instance() for its lifetime and puts the count back
/// afterwards, without a 'Z' signal.
class PLUMVALE_EXPORT TUMessageUnsuspend {
public:
    /// @{
    /// Saves the suspension count and sets it to 0; the destructor restores it.
    TUMessageUnsuspend();
    ~TUMessageUnsuspend();
    /// @}
    TUMessageUnsuspend(const TUMessageUnsuspend&) = delete;
    TUMessageUnsuspend& operator=(const TUMessageUnsuspend&) = delete;

private:
    int m_saved;
};
