// TULex, the tokenizer of the family's text formats, and TUIndent, their writers' indentation.
#pragma once

#include <PlumvaleBaseCore/PlumvaleBaseCore_export.h>
#include <PlumvaleBaseCore/text/MSG_Text.h>

#include <QByteArray>
#include <QString>

#include <iosfwd>
#include <string>

class PL_FileSpec;
class QTextStream;

/// Splits a zero-terminated 8-bit text into tokens, counting lines, and converts them.
///
/// Conventions:
/// - A token is a run of name bytes (ok_in_name), or one other byte on its own, or a quoted
///   text ("..." with backslash escapes; a carriage return inside is dropped). Blanks (tab,
///   space, CR) and line feeds separate tokens; a token ending at a line feed consumes it.
/// - Comma-driven mode (setCommaDriven; it cannot be switched off) splits only at blanks and
///   commas, each comma being a token; "#" where a token could start comments out the rest
///   of the line, and double quotes are skipped like blanks. In raw mode (get(true)) a token
///   is any run of bytes up to a blank or line end (or comma when comma driven: a comma is
///   then a token of its own, raw or not).
/// - Lines count line feeds only, from 1; a line feed inside a quoted token counts too.
/// - Failures never throw: syntax errors set isError() and are reported as warnings
///   "Syntax error at line N:\n MESSAGE (TOKEN)" through the message centre; the typed
///   readers return false with a zero value. Only the token bytes are read: never past the
///   terminating zero, whatever the input.
/// - The text given to the constructors is read in place and must outlive the lexer; a
///   file's text is the lexer's own.
class PLUMVALE_EXPORT TULex {
public:
    /// Settings of the readers of the library's file formats; the values are theirs.
    enum CompatWithVersion : int { CompatNone = 0 };

    /// An empty lexer without text: every token is empty.
    TULex();
    /// Reads `text` in place (null counts as empty), then the first token.
    explicit TULex(const char* text);
    /// Reads the bytes of `data` in place (up to its first zero byte), then the first token.
    explicit TULex(const QByteArray& data);
    ~TULex();
    TULex(const TULex&) = delete;
    TULex& operator=(const TULex&) = delete;

    /// Reads the whole file (its bytes as they are) and its first token; false when it
    /// cannot be opened or read, the lexer then being left as it was. An empty file is an
    /// empty text and true.
    bool openFile(const PL_FileSpec& file);
    /// openFile() of `path` after remapping it (oswRemapPath::RemapPath2).
    bool openFile(const QString& path);

    /// Advances to the next token; the current one becomes the previous one.
    void get(bool raw = false);
    /// Drops the rest of the line the lexer stands in and reads the first token of the next;
    /// at the end of the text the token becomes empty. A token that ended at a line feed has
    /// already left its line: the line after it is the one dropped.
    void skipToNextLine();
    /// Whether the current token is empty (the end of the text).
    bool eof() const { return m_token.empty(); }

    /// @{
    /// True when the token is non-empty and its bytes are exactly the text's (a QString is
    /// compared through Latin-1).
    bool operator==(const char* text) const;
    bool operator==(const std::string& text) const;
    bool operator==(const QString& text) const;
    bool operator!=(const char* text) const { return !(*this == text); }
    bool operator!=(const std::string& text) const { return !(*this == text); }
    bool operator!=(const QString& text) const { return !(*this == text); }
    /// @}
    /// The token, each byte read as Latin-1.
    operator QString() const;
    /// The token read as UTF-8 when its multi-byte sequences are well formed, else Latin-1.
    QString fromUtf8() const;
    /// The token's bytes.
    std::string asString() const { return m_token; }

    /// @{
    /// Whether the whole token is a base-10 integer (strtol, saturated to 32 bits), or a
    /// number (that, or strtod in the "C" locale); computed once per token.
    bool isInt() const;
    bool isDouble() const;
    /// @}
    /// The integer value; 0 when the token is not an integer.
    operator int() const;
    /// The number's value; 0.0 when the token is not a number.
    operator double() const;

    /// The current line number.
    unsigned getLineNo() const { return m_line; }
    /// Whether any syntax error was met.
    bool isError() const { return m_error; }
    /// Switches comma-driven mode on, whatever `on` says: it cannot be switched off.
    void setCommaDriven(bool on);
    /// Syntax errors then ask the user; once an answer is set none is reported any more.
    void enableYesToAll() { m_yesToAll = true; }
    /// @{
    /// The answer slot of the yes-to-all question (a user-interface centre fills it).
    bool yesToAllAnswer() const { return m_yesToAllAnswer; }
    void setYesToAllAnswer(bool answer) { m_yesToAllAnswer = answer; }
    /// @}
    /// @{
    /// The format version and build of the text read (1051 and 8710 until set).
    unsigned versionNumber() const { return m_version; }
    void setVersionNumber(unsigned v) { m_version = v; }
    unsigned buildNumber() const { return m_build; }
    void setBuildNumber(unsigned b) { m_build = b; }
    static unsigned defaultVersionNumber() { return 1051; }
    static unsigned defaultBuildNumber() { return 8710; }
    /// @}

    /// Whether `c` may stand in a bare name: a byte of 0x80 or more, a letter, a digit, or
    /// one of . / \ - _ ~ +.
    static bool ok_in_name(char c);

    /// @{
    /// Typed readers of the current token. On success: the value is stored, the lexer
    /// advances, and a later syntax error names the token just read. On failure: the value
    /// is zero, the lexer stays, and false is returned with the syntax error "Expecting
    /// number." (get_int, get_uint, get_double) or none (get_bool, which takes y, Y, n, N).
    bool get_int(int& value);
    bool get_uint(unsigned& value);
    bool get_double(double& value);
    bool get_bool(bool& value);
    /// @}
    /// Advances, then reads exactly "Y" or "N" (lower case refused) as get_bool does; else
    /// the syntax error "Expecting Y or N while reading <token>" and false.
    bool parseBool(bool& value);
    /// Advances, then get_double; unless `allowAny`, a value not above 0 becomes 0.0 with
    /// the syntax error "Expected float value greater then 0." and false.
    bool parseDouble(double& value, bool allowAny);
    /// Sets the error flag and reports `message` as described in the class comment.
    void syntaxErr(const MSG_Text& message);

    /// @{
    /// Writes `name` so that the lexer reads it back as one token: bare when it is non-empty
    /// and every byte is ok_in_name, else in double quotes with a backslash before each
    /// double quote and backslash. writeName/writeString use the Latin-1 bytes,
    /// writeNameUtf8 the UTF-8 ones. (A carriage return does not survive: the lexer drops
    /// it.)
    static void writeName(std::ostream& out, const QString& name);
    static void writeName(QTextStream& out, const QString& name);
    static void writeString(std::ostream& out, const QString& name);
    static void writeString(QTextStream& out, const QString& name);
    static void writeNameUtf8(std::ostream& out, const QString& name);
    static void writeNameUtf8(QTextStream& out, const QString& name);
    /// @}

    /// The process-wide setting: stored when `set`, returned either way.
    static CompatWithVersion compatWithVersion(bool set, CompatWithVersion value);

private:
    void start(const char* text);
    void number() const;
    void skipLine();
    QString tokenText(bool previous) const;

    const char* m_buffer = nullptr;
    const char* m_pos = nullptr;
    QByteArray m_file; // the text, when the lexer read it from a file
    std::string m_token;
    std::string m_previous;
    mutable bool m_cached = false, m_isInt = false, m_isNumber = false;
    mutable int m_int = 0;
    mutable double m_double = 0.0;
    unsigned m_line = 1;
    unsigned m_previousLine = 1;
    bool m_referToPrevious = false;
    bool m_error = false;
    bool m_commaDriven = false;
    bool m_yesToAll = false;
    bool m_yesToAllAnswer = false;
    unsigned m_version = defaultVersionNumber();
    unsigned m_build = defaultBuildNumber();
};

/// The indentation level of a text being written; -1 when indentation is off.
class PLUMVALE_EXPORT TUIndent {
public:
    /// Level 0 when `on`, else -1 (off).
    explicit TUIndent(bool on = true) : m_level(on ? 0 : -1) {}
    /// @{
    /// One level deeper; nothing when indentation is off.
    TUIndent& operator++() {
        if (m_level >= 0) ++m_level;
        return *this;
    }
    TUIndent operator++(int) {
        TUIndent before = *this;
        ++*this;
        return before;
    }
    /// @}
    /// @{
    /// One level up; nothing at level 0 or when off.
    TUIndent& operator--() {
        if (m_level > 0) --m_level;
        return *this;
    }
    TUIndent operator--(int) {
        TUIndent before = *this;
        --*this;
        return before;
    }
    /// @}
    /// The level; -1 when off.
    int level() const { return m_level; }

private:
    int m_level;
};

/// Two spaces per level; nothing at level 0 or when off.
PLUMVALE_EXPORT std::ostream& operator<<(std::ostream& out, const TUIndent& indent);
