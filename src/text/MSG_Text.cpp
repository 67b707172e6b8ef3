// MSG_Text argument substitution and concatenation, and MSG_Scope's report at destruction.
#include <PlumvaleBaseCore/text/MSG_Text.h>
#include <PlumvaleBaseCore/text/TUMessage.h>

#include <QCoreApplication>

MSG_Text::MSG_Text(const char* context, const char* source)
    : m_text(QString::fromLatin1(source)),
      m_translated(QCoreApplication::instance() ? QCoreApplication::translate(context, source)
                                                : QString::fromLatin1(source)) {}

MSG_Text::MSG_Text(const char* source, const QString& translated)
    : m_text(QString::fromLatin1(source)), m_translated(translated) {}

MSG_Text::~MSG_Text() = default;

void MSG_Text::errorCode(ErrorCode::Type) {}

MSG_Text& MSG_Text::arg(const QString& a, int fieldWidth) {
    m_text = m_text.arg(a, fieldWidth);
    m_translated = m_translated.arg(a, fieldWidth);
    return *this;
}

MSG_Text& MSG_Text::arg(const QString& a1, const QString& a2) {
    m_text = m_text.arg(a1, a2);
    m_translated = m_translated.arg(a1, a2);
    return *this;
}

MSG_Text& MSG_Text::arg(const QString& a1, const QString& a2, const QString& a3) {
    m_text = m_text.arg(a1, a2, a3);
    m_translated = m_translated.arg(a1, a2, a3);
    return *this;
}

MSG_Text& MSG_Text::arg(const QString& a1, const QString& a2, const QString& a3,
                        const QString& a4) {
    m_text = m_text.arg(a1, a2, a3, a4);
    m_translated = m_translated.arg(a1, a2, a3, a4);
    return *this;
}

MSG_Text& MSG_Text::arg(const char* a, int fieldWidth) {
    return arg(QString::fromLatin1(a), fieldWidth);
}

MSG_Text& MSG_Text::arg(const std::string& a, int fieldWidth) {
    return arg(QString::fromLatin1(a.data(), static_cast<int>(a.size())), fieldWidth);
}

namespace {

template <typename Int>
void integerArg(QString& text, QString& translated, Int a, int fieldWidth, int base) {
    text = text.arg(a, fieldWidth, base);
    translated = translated.arg(a, fieldWidth, base);
}

} // namespace

MSG_Text& MSG_Text::arg(int a, int fieldWidth, int base) {
    integerArg(m_text, m_translated, a, fieldWidth, base);
    return *this;
}

MSG_Text& MSG_Text::arg(unsigned int a, int fieldWidth, int base) {
    integerArg(m_text, m_translated, a, fieldWidth, base);
    return *this;
}

MSG_Text& MSG_Text::arg(short a, int fieldWidth, int base) {
    integerArg(m_text, m_translated, a, fieldWidth, base);
    return *this;
}

MSG_Text& MSG_Text::arg(unsigned short a, int fieldWidth, int base) {
    integerArg(m_text, m_translated, a, fieldWidth, base);
    return *this;
}

MSG_Text& MSG_Text::arg(long a, int fieldWidth, int base) {
    integerArg(m_text, m_translated, a, fieldWidth, base);
    return *this;
}

MSG_Text& MSG_Text::arg(unsigned long a, int fieldWidth, int base) {
    integerArg(m_text, m_translated, a, fieldWidth, base);
    return *this;
}

MSG_Text& MSG_Text::arg(long long a, int fieldWidth, int base) {
    integerArg(m_text, m_translated, static_cast<qlonglong>(a), fieldWidth, base);
    return *this;
}

MSG_Text& MSG_Text::arg(unsigned long long a, int fieldWidth, int base) {
    integerArg(m_text, m_translated, static_cast<qulonglong>(a), fieldWidth, base);
    return *this;
}

MSG_Text& MSG_Text::arg(double a, int fieldWidth, char format, int precision) {
    m_text = m_text.arg(a, fieldWidth, format, precision);
    m_translated = m_translated.arg(a, fieldWidth, format, precision);
    return *this;
}

MSG_Text& MSG_Text::arg(const MSG_Text& other) {
    m_text = m_text.arg(other.m_text);
    m_translated = m_translated.arg(other.m_translated);
    return *this;
}

MSG_Text MSG_Text::operator+(const MSG_Text& other) const {
    return MSG_Text(m_text + other.m_text, m_translated + other.m_translated);
}

MSG_Text& MSG_Text::operator+=(const MSG_Text& other) {
    m_text += other.m_text;
    m_translated += other.m_translated;
    return *this;
}

MSG_Text MSG_Text::operator+(const QString& s) const {
    return MSG_Text(m_text + s, m_translated + s);
}

MSG_Text& MSG_Text::operator+=(const QString& s) {
    m_text += s;
    m_translated += s;
    return *this;
}

MSG_Text& MSG_Text::replace(const QString& before, const QString& after) {
    m_text.replace(before, after);
    m_translated.replace(before, after);
    return *this;
}

MSG_Scope::MSG_Scope(const QString& text, Action action) : MSG_Text(text), m_action(action) {}

MSG_Scope::MSG_Scope(const MSG_Text& text, Action action, ErrorCode::Type code)
    : MSG_Text(text), m_action(action), m_code(code) {}

MSG_Scope::MSG_Scope(const char* context, const char* source, Action action, ErrorCode::Type code)
    : MSG_Text(context, source), m_action(action), m_code(code) {}

MSG_Scope::MSG_Scope(const char* source)
    : MSG_Text("QObject", source), m_action(Error), m_code(ErrorCode::GeneralError) {}

MSG_Scope::MSG_Scope(const char* source, const QString& translated, Action action)
    : MSG_Text(source, translated), m_action(action) {}

MSG_Scope::MSG_Scope(const char* source, const QString& translated, Action action, bool answer)
    : MSG_Text(source, translated), m_action(action), m_answer(answer) {}

MSG_Scope::~MSG_Scope() {
    if (m_action < Warning || m_action > TraceLater) return;
    TUMessage* centre = TUMessage::instance();
    const QString& text = getText();
    const QString& translated = getTranslatedText();
    switch (m_action) {
    case Warning:
        centre->warning(text, translated);
        break;
    case WarningWithAnswer:
        centre->warning(text, translated, &m_answer);
        break;
    case Error:
        centre->error(text, translated, m_code);
        break;
    case FatalError:
        centre->fatalError(text, translated, m_code);
    case Information:
        centre->information(text, translated);
        break;
    case Trace:
        centre->trace(text, translated, m_code);
        break;
    case Debug:
        centre->debug(text, translated);
        break;
    case TraceLater:
        centre->traceLater(text, translated, m_code);
        break;
    }
}
