// TULex: tokenizing, the number cache, the typed readers, syntax errors and the writers.
#include <PlumvaleBaseCore/text/TULex.h>

#include <PlumvaleBaseCore/text/TUMessage.h>

#include "text/CodePage.h"

#include <QTextStream>

#include <atomic>
#include <climits>
#include <cstdlib>
#include <cstring>
#include <ostream>

namespace {

const char kEmpty[1] = {0};

bool isBlank(char c) {
    return c == '\t' || c == ' ' || c == '\r';
}

// Whether every multi-byte sequence is a lead byte of 2 to 5 bytes followed by as many
// continuation bytes as it announces.
bool isWellFormedUtf8(const std::string& bytes) {
    for (std::size_t i = 0; i < bytes.size();) {
        const unsigned char lead = static_cast<unsigned char>(bytes[i]);
        std::size_t length = 1;
        if (lead >= 0x80) {
            if ((lead & 0xE0) == 0xC0)
                length = 2;
            else if ((lead & 0xF0) == 0xE0)
                length = 3;
            else if ((lead & 0xF8) == 0xF0)
                length = 4;
            else if ((lead & 0xFC) == 0xF8)
                length = 5;
            else
                return false;
            if (i + length > bytes.size()) return false;
            for (std::size_t k = 1; k < length; ++k)
                if ((static_cast<unsigned char>(bytes[i + k]) & 0xC0) != 0x80) return false;
        }
        i += length;
    }
    return true;
}

bool isBareName(const QByteArray& bytes) {
    if (bytes.isEmpty()) return false;
    for (const char c : bytes)
        if (!TULex::ok_in_name(c)) return false;
    return true;
}

// The bytes as the lexer reads them back: bare, or quoted with escapes.
std::string nameText(const QByteArray& bytes) {
    if (isBareName(bytes)) return bytes.toStdString();
    std::string out = "\"";
    for (const char c : bytes) {
        if (c == '"' || c == '\\') out += '\\';
        out += c;
    }
    out += '"';
    return out;
}

std::atomic<int> g_compat{TULex::CompatNone};

} // namespace

TULex::TULex() {
    m_buffer = m_pos = kEmpty;
}

TULex::TULex(const char* text) {
    start(text ? text : kEmpty);
}

TULex::TULex(const QByteArray& data) {
    start(data.isNull() ? kEmpty : data.constData());
}

TULex::~TULex() = default;

void TULex::start(const char* text) {
    m_buffer = m_pos = text;
    m_line = m_previousLine = 1;
    m_token.clear();
    m_previous.clear();
    get();
}

bool TULex::ok_in_name(char c) {
    const unsigned char b = static_cast<unsigned char>(c);
    if (b >= 0x80) return true;
    if ((b >= 'a' && b <= 'z') || (b >= 'A' && b <= 'Z') || (b >= '0' && b <= '9')) return true;
    return std::strchr("./\\-_~+", c) != nullptr && c != '\0';
}

void TULex::setCommaDriven(bool) {
    m_commaDriven = true;
}

void TULex::skipLine() {
    while (*m_pos && *m_pos != '\n')
        ++m_pos;
    if (*m_pos == '\n') {
        ++m_pos;
        ++m_line;
    }
}

void TULex::skipToNextLine() {
    skipLine();
    if (*m_pos)
        get();
    else
        m_token.clear();
}

void TULex::get(bool raw) {
    for (;;) {
        m_previousLine = m_line;
        m_previous.swap(m_token);
        m_token.clear();
        m_cached = false;
        m_referToPrevious = false;

        char c = *m_pos;
        while (c == '\n' || isBlank(c) || (c == '"' && m_commaDriven)) {
            if (c == '\n') ++m_line;
            c = *++m_pos;
        }
        if (c == '\0') return;
        if (c == '#' && m_commaDriven) {
            // A comment: the next line's first token, read as skipToNextLine would (not raw),
            // in a loop so that a long run of comments cannot deepen the stack.
            skipLine();
            if (!*m_pos) return;
            raw = false;
            continue;
        }
        if (c == '"') {
            for (++m_pos;;) {
                c = *m_pos;
                if (c == '\0') {
                    syntaxErr(MSG_Text("TULex", "missing \""));
                    return;
                }
                ++m_pos;
                if (c == '"') return;
                if (c == '\r') continue;
                if (c == '\\') {
                    c = *m_pos;
                    if (c == '\0') continue; // reported as an unterminated quote above
                    ++m_pos;
                }
                if (c == '\n') ++m_line;
                m_token += c;
            }
        }
        break;
    }

    // The first byte: a lone token when it is not a name byte and not comma driven; in
    // comma-driven mode a comma always is one, raw or not, other bytes start longer tokens.
    const char first = *m_pos++;
    m_token += first;
    if (m_commaDriven ? first == ',' : !raw && !ok_in_name(first)) return;
    for (;;) {
        const char c = *m_pos;
        if (c == '\0') return;
        if (c == '\t' || c == ' ') {
            ++m_pos;
            return;
        }
        if (c == '\n') {
            ++m_pos;
            ++m_line;
            return;
        }
        if (c == ',' && m_commaDriven) return;
        if (c == '\r') {
            ++m_pos;
            continue;
        }
        if (!raw && !m_commaDriven && !ok_in_name(c)) return;
        m_token += c;
        ++m_pos;
    }
}

bool TULex::operator==(const char* text) const {
    return text && !m_token.empty() && m_token == text;
}

bool TULex::operator==(const std::string& text) const {
    return !m_token.empty() && m_token == text;
}

bool TULex::operator==(const QString& text) const {
    return !m_token.empty() && m_token == text.toLatin1().toStdString();
}

TULex::operator QString() const {
    return QString::fromLatin1(m_token.data(), static_cast<int>(m_token.size()));
}

QString TULex::fromUtf8() const {
    if (!isWellFormedUtf8(m_token)) return *this;
    return QString::fromUtf8(m_token.data(), static_cast<int>(m_token.size()));
}

void TULex::number() const {
    if (m_cached) return;
    m_cached = true;
    m_isInt = m_isNumber = false;
    m_int = 0;
    m_double = 0.0;
    if (m_token.empty()) return;
    const char* text = m_token.c_str();
    const char* end = text + m_token.size();
    char* stop = nullptr;
    const long long wide = std::strtoll(text, &stop, 10);
    if (stop == end) {
        // A 32-bit long saturates: so does this.
        m_int = wide > INT_MAX ? INT_MAX : wide < INT_MIN ? INT_MIN : static_cast<int>(wide);
        m_isInt = m_isNumber = true;
        m_double = m_int;
        return;
    }
    const char* numberEnd = nullptr;
    const double value = plumvale::text::parseDoubleC(text, &numberEnd);
    if (numberEnd == end) {
        m_isNumber = true;
        m_double = value;
    }
}

bool TULex::isInt() const {
    number();
    return m_isInt;
}

bool TULex::isDouble() const {
    number();
    return m_isNumber;
}

TULex::operator int() const {
    number();
    return m_isInt ? m_int : 0;
}

TULex::operator double() const {
    number();
    return m_isNumber ? m_double : 0.0;
}

bool TULex::get_int(int& value) {
    if (!isInt()) {
        value = 0;
        m_referToPrevious = false; // the token refused is the one to name
        syntaxErr(MSG_Text("TULex", "Expecting number."));
        return false;
    }
    value = m_int;
    get();
    m_referToPrevious = true;
    return true;
}

bool TULex::get_uint(unsigned& value) {
    int v = 0;
    const bool ok = get_int(v);
    value = static_cast<unsigned>(v);
    return ok;
}

bool TULex::get_double(double& value) {
    if (!isDouble()) {
        value = 0.0;
        m_referToPrevious = false;
        syntaxErr(MSG_Text("TULex", "Expecting number."));
        return false;
    }
    value = m_double;
    get();
    m_referToPrevious = true;
    return true;
}

bool TULex::get_bool(bool& value) {
    const char c = m_token.size() == 1 ? m_token[0] : '\0';
    if (c != 'Y' && c != 'y' && c != 'N' && c != 'n') {
        value = false;
        return false;
    }
    value = c == 'Y' || c == 'y';
    get();
    m_referToPrevious = true;
    return true;
}

bool TULex::parseBool(bool& value) {
    get();
    if (*this == "Y" || *this == "N") return get_bool(value);
    value = false;
    syntaxErr(MSG_Text("TULex", "Expecting Y or N while reading ") + QString(*this));
    return false;
}

bool TULex::parseDouble(double& value, bool allowAny) {
    get();
    const bool ok = get_double(value);
    if (allowAny) return ok;
    if (!(value > 0.0)) {
        value = 0.0;
        syntaxErr(MSG_Text("TULex", "Expected float value greater then 0."));
        return false;
    }
    return ok;
}

QString TULex::tokenText(bool previous) const {
    const std::string& bytes = previous ? m_previous : m_token;
    return QString::fromLatin1(bytes.data(), static_cast<int>(bytes.size()));
}

void TULex::syntaxErr(const MSG_Text& message) {
    m_error = true;
    if (m_yesToAll && m_yesToAllAnswer) return;
    const MSG_Text form("TULex", "Syntax error at line %1:\n%2%3 (%4)");
    const QString line = QString::number(m_referToPrevious ? m_previousLine : m_line);
    const QString token = tokenText(m_referToPrevious);
    const QString space = QStringLiteral(" ");
    // One pass over each text, so that a % in the message or the token stays as it is.
    const QString text = form.getText().arg(line, space, message.getText(), token);
    const QString translated =
        form.getTranslatedText().arg(line, space, message.getTranslatedText(), token);
    if (m_yesToAll)
        TUMessage::instance()->warning(text, translated, &m_yesToAllAnswer);
    else
        TUMessage::instance()->warning(text, translated);
}

void TULex::writeName(std::ostream& out, const QString& name) {
    out << nameText(name.toLatin1());
}

void TULex::writeName(QTextStream& out, const QString& name) {
    out << QString::fromLatin1(QByteArray::fromStdString(nameText(name.toLatin1())));
}

void TULex::writeString(std::ostream& out, const QString& name) {
    writeName(out, name);
}

void TULex::writeString(QTextStream& out, const QString& name) {
    writeName(out, name);
}

void TULex::writeNameUtf8(std::ostream& out, const QString& name) {
    out << nameText(name.toUtf8());
}

void TULex::writeNameUtf8(QTextStream& out, const QString& name) {
    // The characters themselves: the stream encodes them.
    out << QString::fromUtf8(QByteArray::fromStdString(nameText(name.toUtf8())));
}

TULex::CompatWithVersion TULex::compatWithVersion(bool set, CompatWithVersion value) {
    if (set) g_compat.store(value, std::memory_order_relaxed);
    return static_cast<CompatWithVersion>(g_compat.load(std::memory_order_relaxed));
}

std::ostream& operator<<(std::ostream& out, const TUIndent& indent) {
    for (int i = 0; i < indent.level(); ++i)
        out << "  ";
    return out;
}
