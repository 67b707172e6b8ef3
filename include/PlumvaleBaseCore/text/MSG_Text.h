// MSG_Text, the untranslated/translated message pair, and MSG_Scope, which reports itself.
#pragma once

#include <PlumvaleBaseCore/PlumvaleBaseCore_export.h>

#include <QString>

#include <string>

namespace ErrorCode {
/// A positive code handed to the message centre, which keeps the smallest one reported as
/// the process's exit status. Any positive value may be used; 0 means no code.
/// The library's named codes.
enum Type : int {
    /// No code.
    NoError = 0,
    GeneralError = 20, ///< the code of a scope built from a bare source text
    UnknownError = 100 ///< what an error reported without a code turns into
};
} // namespace ErrorCode

/// A message as a pair: the untranslated source text, for logs, and its translation, for the
/// user. Argument substitution and concatenation act on both texts at once.
class PLUMVALE_EXPORT MSG_Text {
public:
    /// Both texts empty.
    MSG_Text() = default;
    /// Text = `source` (ASCII); translation = `source` translated in `context` when a
    /// QCoreApplication exists, otherwise `source` read as Latin-1.
    MSG_Text(const char* context, const char* source);
    /// Text = `source` (ASCII), translation given.
    MSG_Text(const char* source, const QString& translated);
    /// @{
    /// Plain copies of both texts.
    MSG_Text(const MSG_Text&) = default;
    MSG_Text& operator=(const MSG_Text&) = default;
    virtual ~MSG_Text();
    /// @}

    /// Nothing in MSG_Text; a scope stores the code it will report.
    virtual void errorCode(ErrorCode::Type code);

    /// @{
    /// The untranslated text (for logs) and the translation (for the user).
    const QString& getText() const { return m_text; }
    const QString& getTranslatedText() const { return m_translated; }
    /// @}
    /// True when the untranslated text is empty.
    bool isEmpty() const { return m_text.isEmpty(); }

    /// @{
    /// QString::arg with the same arguments on both texts (fill character: space).
    MSG_Text& arg(const QString& a, int fieldWidth = 0);
    MSG_Text& arg(const QString& a1, const QString& a2);
    MSG_Text& arg(const QString& a1, const QString& a2, const QString& a3);
    MSG_Text& arg(const QString& a1, const QString& a2, const QString& a3, const QString& a4);
    /// @}
    /// The 8-bit text is read as ASCII.
    MSG_Text& arg(const char* a, int fieldWidth = 0);
    /// @{
    /// QString::arg of the value on both texts, with the same width, base or format.
    MSG_Text& arg(const std::string& a, int fieldWidth = 0);
    MSG_Text& arg(int a, int fieldWidth = 0, int base = 10);
    MSG_Text& arg(unsigned int a, int fieldWidth = 0, int base = 10);
    MSG_Text& arg(short a, int fieldWidth = 0, int base = 10);
    MSG_Text& arg(unsigned short a, int fieldWidth = 0, int base = 10);
    MSG_Text& arg(long a, int fieldWidth = 0, int base = 10);
    MSG_Text& arg(unsigned long a, int fieldWidth = 0, int base = 10);
    MSG_Text& arg(long long a, int fieldWidth = 0, int base = 10);
    MSG_Text& arg(unsigned long long a, int fieldWidth = 0, int base = 10);
    MSG_Text& arg(double a, int fieldWidth = 0, char format = 'g', int precision = -1);
    /// @}
    /// The untranslated text takes the other's untranslated text, the translation its
    /// translation.
    MSG_Text& arg(const MSG_Text& other);
    /// Replaces every `before` by `after` in both texts: for texts with printf-style
    /// markers ("%d"), which arg() does not fill.
    MSG_Text& replace(const QString& before, const QString& after);

    /// @{
    /// Concatenation text by text: untranslated after untranslated, translation after
    /// translation.
    MSG_Text operator+(const MSG_Text& other) const;
    MSG_Text& operator+=(const MSG_Text& other);
    /// @}
    /// @{
    /// Appends the same string to both texts.
    MSG_Text operator+(const QString& s) const;
    MSG_Text& operator+=(const QString& s);
    /// @}

protected:
    /// The same text in both fields.
    explicit MSG_Text(const QString& both) : m_text(both), m_translated(both) {}

private:
    MSG_Text(const QString& text, const QString& translated)
        : m_text(text), m_translated(translated) {}

    QString m_text;
    QString m_translated;
};

/// A message that reports itself to TUMessage::instance() when destroyed, with the action,
/// code and texts it holds at that moment. A copy reports again when it is destroyed.
class PLUMVALE_EXPORT MSG_Scope : public MSG_Text {
public:
    /// What the destructor reports; any other value reports nothing.
    enum Action : int {
        /// A warning ('W').
        Warning = 0,
        /// A warning that asks the user; the answer lands in answer().
        WarningWithAnswer = 1,
        /// An error ('E') with the scope's code.
        Error = 2,
        FatalError = 3, ///< ends the process
        /// An information ('I').
        Information = 4,
        /// A trace ('T') with the scope's code.
        Trace = 5,
        /// A debug message ('D'), shown only in debug mode.
        Debug = 6,
        /// A trace the centre may defer (traceLater).
        TraceLater = 7
    };

    /// The same text in both fields, code 0.
    MSG_Scope(const QString& text, Action action);
    /// @{
    /// A scope over the texts of `text`, or of (context, source) as MSG_Text makes them.
    MSG_Scope(const MSG_Text& text, Action action, ErrorCode::Type code);
    MSG_Scope(const char* context, const char* source, Action action, ErrorCode::Type code);
    /// @}
    /// Translated in the generic "QObject" context; an Error with code 20.
    explicit MSG_Scope(const char* source);
    /// @{
    /// The texts given, code 0; `answer` is the initial answer slot.
    MSG_Scope(const char* source, const QString& translated, Action action);
    MSG_Scope(const char* source, const QString& translated, Action action, bool answer);
    /// @}
    /// @{
    /// Copies report too: each copy reports once more when it is destroyed.
    MSG_Scope(const MSG_Scope&) = default;
    MSG_Scope& operator=(const MSG_Scope&) = default;
    /// @}
    /// Reports to the message centre according to the action.
    ~MSG_Scope() override;

    /// Stores the code to report.
    void errorCode(ErrorCode::Type code) override { m_code = code; }
    /// @{
    /// The action and code the destructor will report, and the action's setter.
    Action action() const { return m_action; }
    void setAction(Action action) { m_action = action; }
    ErrorCode::Type code() const { return m_code; }
    /// @}
    /// The answer slot handed to a warning that asks the user.
    bool answer() const { return m_answer; }

private:
    Action m_action = Error;
    ErrorCode::Type m_code = ErrorCode::NoError;
    bool m_answer = false;
};
