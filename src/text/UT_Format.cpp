// The wide printf formatter and frame timecodes.
#include <PlumvaleBaseCore/text/UT_Format.h>

#include <cstdint>
#include <cstdio>
#include <string>
#include <vector>

namespace {

using unit = UT_String::value_type;

enum class ArgType : unsigned char { None, Int, Long, LongLong, Double, Pointer };

// A format text may come from a catalogue, so it is not trusted to stay reasonable. A
// directive naming an argument past kMaxArgument, or a width or precision (written, or
// passed for "*") above kMaxWidth, is malformed and copied as text: no real call passes so
// many arguments, and no real text needs so wide a field.
constexpr unsigned kMaxArgument = 64;
constexpr int kMaxWidth = 4096;

/// A fetched argument: integers and pointers in `i` (they travel in the same 64-bit slots),
/// floating-point values in `d`.
struct ArgValue {
    long long i = 0;
    double d = 0;
};

/// Whether a type travels as an integer (integers and pointers) rather than a double.
bool isIntegerClass(ArgType t) {
    return t != ArgType::Double && t != ArgType::None;
}

/// 8-bit to 16-bit with sign extension: 0x80-0xFF become 0xFF80-0xFFFF.
inline unit widen(char c) {
    return static_cast<unit>(static_cast<short>(static_cast<signed char>(c)));
}

/// One parsed conversion specification.
struct Directive {
    unit conversion = 0;
    char size = 0;         // 0, 'h', 'l' or 'q'
    std::string flags;     // as written, for snprintf
    int width = -1;        // -1: none
    int precision = -1;    // -1: none
    unsigned widthArg = 0; // 1-based argument slot of "*", 0: none
    unsigned precisionArg = 0;
    unsigned arg = 0; // 1-based argument slot of the value, 0: takes none
    ArgType type = ArgType::None;
};

/// A piece of output: a literal run of the format, or a conversion.
struct Piece {
    std::size_t begin = 0, length = 0; // literal run within the format
    bool isDirective = false;
    bool percent = false; // "%%"
    Directive directive;
};

bool isDigit(unit c) {
    return c >= '0' && c <= '9';
}

/// Reads digits at `i`; returns -1 when there are none. Values saturate just above the
/// limits, so that an excessive number is still seen as one.
int readNumber(const UT_String& f, std::size_t& i) {
    if (i >= f.size() || !isDigit(f[UT_String::size_type(i)])) return -1;
    int v = 0;
    while (i < f.size() && isDigit(f[UT_String::size_type(i)])) {
        v = v * 10 + (f[UT_String::size_type(i)] - '0');
        if (v > kMaxWidth) v = kMaxWidth + 1;
        ++i;
    }
    return v;
}

/// Reads "n$" at `i` (position kept when absent); returns n or 0.
unsigned readPosition(const UT_String& f, std::size_t& i) {
    std::size_t j = i;
    const int n = readNumber(f, j);
    if (n > 0 && j < f.size() && f[UT_String::size_type(j)] == '$') {
        i = j + 1;
        return static_cast<unsigned>(n);
    }
    return 0;
}

ArgType typeOf(unit conversion, char size) {
    switch (conversion) {
    case 'd':
    case 'i':
    case 'o':
    case 'u':
    case 'x':
    case 'X':
        return size == 'q' ? ArgType::LongLong : size == 'l' ? ArgType::Long : ArgType::Int;
    case 'D':
    case 'O':
    case 'U':
        return ArgType::Long;
    case 'c':
    case 'C':
        return ArgType::Int;
    case 'e':
    case 'E':
    case 'f':
    case 'g':
    case 'G':
        return ArgType::Double;
    case 'p':
    case 'n':
    case 's':
    case 'S':
    case '@':
    case 'P':
        return ArgType::Pointer;
    default:
        return ArgType::None;
    }
}

/// Parses the specification starting at the '%' at `i`; on success fills `directive`, moves `i`
/// past it and returns true. On failure `i` is past the text to copy as it stands.
bool parseDirective(const UT_String& f, std::size_t& i, Directive& directive, unsigned& nextArg) {
    const std::size_t n = f.size();
    const unsigned firstArg = nextArg;
    ++i; // the '%'
    const unsigned position = readPosition(f, i);
    while (i < n) {
        const unit c = f[UT_String::size_type(i)];
        if (c != ' ' && c != '#' && c != '+' && c != '-' && c != '0') break;
        directive.flags.push_back(static_cast<char>(c));
        ++i;
    }
    if (i < n && f[UT_String::size_type(i)] == '*') {
        ++i;
        const unsigned p = readPosition(f, i);
        directive.widthArg = p ? p : nextArg++;
    } else {
        directive.width = readNumber(f, i);
    }
    if (i < n && f[UT_String::size_type(i)] == '.') {
        ++i;
        if (i < n && f[UT_String::size_type(i)] == '*') {
            ++i;
            const unsigned p = readPosition(f, i);
            directive.precisionArg = p ? p : nextArg++;
        } else {
            directive.precision = readNumber(f, i);
            if (directive.precision < 0) directive.precision = 0;
        }
    }
    if (i < n) {
        const unit c = f[UT_String::size_type(i)];
        if (c == 'h' || c == 'q') {
            directive.size = static_cast<char>(c);
            ++i;
        } else if (c == 'l') {
            directive.size = 'l';
            ++i;
            if (i < n && f[UT_String::size_type(i)] == 'l') {
                directive.size = 'q';
                ++i;
            }
        }
    }
    if (i >= n) {
        nextArg = firstArg;
        return false;
    }
    unit conversion = f[UT_String::size_type(i)];
    ++i;
    if (directive.size == 'l' && conversion == 's') conversion = 'S';
    if (directive.size == 'l' && conversion == 'c') conversion = 'C';
    directive.conversion = conversion;
    directive.type = typeOf(conversion, directive.size);
    if (directive.type == ArgType::None) {
        nextArg = firstArg;
        return false;
    }
    directive.arg = position ? position : nextArg++;
    if (directive.arg <= kMaxArgument && directive.widthArg <= kMaxArgument &&
        directive.precisionArg <= kMaxArgument && directive.width <= kMaxWidth &&
        directive.precision <= kMaxWidth)
        return true;
    nextArg = firstArg; // malformed: it consumes no argument
    return false;
}

/// Argument table filled by position, grown on demand beyond its first 20 slots.
class Arguments {
public:
    Arguments() : m_types(21, ArgType::None), m_values(21) {}

    /// Records what a specification reads from `slot`. When two read one slot as different
    /// integer kinds it is fetched whole (64 bits) and each narrows its copy; an integer
    /// against a double is a conflict left to matches().
    void declare(unsigned slot, ArgType type) {
        if (slot == 0) return;
        if (slot >= m_types.size()) {
            m_types.resize(slot + 1, ArgType::None);
            m_values.resize(slot + 1);
        }
        ArgType& declared = m_types[slot];
        if (declared == ArgType::None)
            declared = type;
        else if (declared != type && isIntegerClass(declared) && isIntegerClass(type))
            declared = ArgType::LongLong;
    }

    /// Whether `slot` was fetched as the kind `type` needs (always true for slot 0).
    bool matches(unsigned slot, ArgType type) const {
        return slot == 0 || slot >= m_types.size() ||
               isIntegerClass(m_types[slot]) == isIntegerClass(type);
    }

    /// Reads the declared arguments in order; stops at the first slot nothing declared,
    /// since its type (and so everything after it) cannot be known.
    void fetch(va_list args) {
        for (std::size_t k = 1; k < m_types.size(); ++k) {
            switch (m_types[k]) {
            case ArgType::None:
                return;
            case ArgType::Int:
                m_values[k].i = va_arg(args, int);
                break;
            case ArgType::Long:
                m_values[k].i = va_arg(args, long);
                break;
            case ArgType::LongLong:
                m_values[k].i = va_arg(args, long long);
                break;
            case ArgType::Double:
                m_values[k].d = va_arg(args, double);
                break;
            case ArgType::Pointer:
                m_values[k].i = static_cast<long long>(
                    reinterpret_cast<std::intptr_t>(va_arg(args, const void*)));
                break;
            }
            m_fetched = k;
        }
    }

    long long integer(unsigned slot) const { return has(slot) ? m_values[slot].i : 0; }
    double real(unsigned slot) const { return has(slot) ? m_values[slot].d : 0.0; }
    const void* pointer(unsigned slot) const {
        return has(slot)
                   ? reinterpret_cast<const void*>(static_cast<std::intptr_t>(m_values[slot].i))
                   : nullptr;
    }

private:
    bool has(unsigned slot) const { return slot > 0 && slot <= m_fetched; }

    std::vector<ArgType> m_types;
    std::vector<ArgValue> m_values;
    std::size_t m_fetched = 0;
};

void appendPadded(UT_String& out, const unit* text, std::size_t length, const Directive& directive,
                  int width) {
    if (directive.precision >= 0 && length > std::size_t(directive.precision))
        length = directive.precision;
    const std::size_t pad = width > 0 && std::size_t(width) > length ? width - length : 0;
    const bool left = directive.flags.find('-') != std::string::npos;
    if (!left) out.append(UT_String::size_type(pad), u' ');
    out.append(text, UT_String::size_type(length));
    if (left) out.append(UT_String::size_type(pad), u' ');
}

void appendNarrow(UT_String& out, const char* text, std::size_t length, const Directive& directive,
                  int width) {
    std::vector<unit> wide(length);
    for (std::size_t k = 0; k < length; ++k)
        wide[k] = widen(text[k]);
    appendPadded(out, wide.data(), length, directive, width);
}

/// The length of a zero-terminated text, reading no further than `precision` elements
/// when one is given, as printf does: the array need not be terminated then.
template <class T>
std::size_t boundedLength(const T* s, int precision) {
    std::size_t n = 0;
    while ((precision < 0 || n < std::size_t(precision)) && s[n])
        ++n;
    return n;
}

void formatString(UT_String& out, const Directive& directive, const void* arg, int width) {
    static const char kNull[] = "(null)";
    if (!arg) {
        appendNarrow(out, kNull, sizeof kNull - 1, directive, width);
        return;
    }
    switch (directive.conversion) {
    case 's': {
        const char* s = static_cast<const char*>(arg);
        appendNarrow(out, s, boundedLength(s, directive.precision), directive, width);
        break;
    }
    case 'P': {
        const auto* s = static_cast<const unsigned char*>(arg);
        appendNarrow(out, reinterpret_cast<const char*>(s + 1), s[0], directive, width);
        break;
    }
    default: { // 'S', '@'
        const unit* s = static_cast<const unit*>(arg);
        appendPadded(out, s, boundedLength(s, directive.precision), directive, width);
        break;
    }
    }
}

/// One numeric specification through the C library's snprintf.
template <class T>
void formatNumber(UT_String& out, const Directive& directive, int width, const char* size,
                  char conversion, T value) {
    std::string f(1, '%');
    f.append(directive.flags);
    if (width >= 0) f.append(std::to_string(width));
    if (directive.precision >= 0) {
        f.push_back('.');
        f.append(std::to_string(directive.precision));
    }
    f.append(size);
    f.push_back(conversion);
    char small[128];
    int n = std::snprintf(small, sizeof small, f.c_str(), value);
    if (n < 0) return;
    if (std::size_t(n) < sizeof small) {
        appendNarrow(out, small, std::size_t(n), Directive{}, 0);
        return;
    }
    std::vector<char> big(std::size_t(n) + 1);
    n = std::snprintf(big.data(), big.size(), f.c_str(), value);
    if (n > 0) appendNarrow(out, big.data(), std::size_t(n), Directive{}, 0);
}

/// Formats one directive; false, writing nothing, when a "*" value exceeds kMaxWidth or
/// another specification read one of its arguments as the other kind (integer or double).
bool formatDirective(UT_String& out, Directive directive, const Arguments& args) {
    if (!args.matches(directive.arg, directive.type) ||
        !args.matches(directive.widthArg, ArgType::Int) ||
        !args.matches(directive.precisionArg, ArgType::Int))
        return false;
    int width = directive.width;
    if (directive.widthArg) {
        // An int argument: its magnitude fits a long long, INT_MIN included.
        const long long w = static_cast<int>(args.integer(directive.widthArg));
        if (w > kMaxWidth || w < -kMaxWidth) return false;
        if (w < 0) directive.flags.push_back('-');
        width = static_cast<int>(w < 0 ? -w : w);
    }
    if (directive.precisionArg) {
        const long long p = static_cast<int>(args.integer(directive.precisionArg));
        if (p > kMaxWidth) return false;
        directive.precision = p < 0 ? -1 : static_cast<int>(p);
    }
    const unit c = directive.conversion;
    switch (c) {
    case 'n':
        return true;
    case 's':
    case 'S':
    case '@':
    case 'P':
        formatString(out, directive, args.pointer(directive.arg), width);
        return true;
    case 'C': {
        const unit u = static_cast<unit>(args.integer(directive.arg));
        Directive plain = directive;
        plain.precision = -1;
        appendPadded(out, &u, 1, plain, width);
        return true;
    }
    case 'p':
        formatNumber(out, directive, width, "", 'p', args.pointer(directive.arg));
        return true;
    case 'e':
    case 'E':
    case 'f':
    case 'g':
    case 'G':
        formatNumber(out, directive, width, "", static_cast<char>(c), args.real(directive.arg));
        return true;
    case 'c':
        formatNumber(out, directive, width, "", 'c', static_cast<int>(args.integer(directive.arg)));
        return true;
    case 'D':
    case 'O':
    case 'U':
        formatNumber(out, directive, width, "l", static_cast<char>(c - 'A' + 'a'),
                     static_cast<long>(args.integer(directive.arg)));
        return true;
    default: // d i o u x X
        if (directive.size == 'q')
            formatNumber(out, directive, width, "ll", static_cast<char>(c),
                         args.integer(directive.arg));
        else if (directive.size == 'l')
            formatNumber(out, directive, width, "l", static_cast<char>(c),
                         static_cast<long>(args.integer(directive.arg)));
        else
            formatNumber(out, directive, width, directive.size == 'h' ? "h" : "",
                         static_cast<char>(c), static_cast<int>(args.integer(directive.arg)));
        return true;
    }
}

UT_String widenFormat(const char* format) {
    UT_String f;
    if (format)
        for (const char* p = format; *p; ++p)
            f.push_back(widen(*p));
    return f;
}

} // namespace

void UT_DoFormatMessage(UT_String& out, const UT_String& format, va_list args) {
    std::vector<Piece> pieces;
    Arguments table;
    unsigned nextArg = 1;
    const std::size_t n = format.size();
    std::size_t i = 0;
    while (i < n) {
        Piece piece;
        piece.begin = i;
        if (format[UT_String::size_type(i)] != '%') {
            while (i < n && format[UT_String::size_type(i)] != '%')
                ++i;
        } else if (i + 1 < n && format[UT_String::size_type(i + 1)] == '%') {
            piece.percent = true;
            i += 2;
        } else if (parseDirective(format, i, piece.directive, nextArg)) {
            piece.isDirective = true;
            table.declare(piece.directive.arg, piece.directive.type);
            table.declare(piece.directive.widthArg, ArgType::Int);
            table.declare(piece.directive.precisionArg, ArgType::Int);
        }
        piece.length = i - piece.begin;
        pieces.push_back(std::move(piece));
    }

    va_list copy;
    va_copy(copy, args);
    table.fetch(copy);
    va_end(copy);

    UT_String result;
    for (const Piece& piece : pieces) {
        if (piece.isDirective && formatDirective(result, piece.directive, table)) continue;
        if (piece.percent)
            result.push_back(u'%');
        else
            result.append(format, UT_String::size_type(piece.begin),
                          UT_String::size_type(piece.length));
    }
    out.swap(result);
}

UT_String UT_FormatMessage(const unsigned short* format, ...) {
    UT_String out;
    va_list args;
    va_start(args, format);
    UT_DoFormatMessage(out, UT_String(format), args);
    va_end(args);
    return out;
}

UT_String UT_FormatMessage(const char16_t* format, ...) {
    UT_String out;
    va_list args;
    va_start(args, format);
    UT_DoFormatMessage(out, UT_String(format), args);
    va_end(args);
    return out;
}

UT_String UT_FormatMessage(const char* format, ...) {
    UT_String out;
    va_list args;
    va_start(args, format);
    UT_DoFormatMessage(out, widenFormat(format), args);
    va_end(args);
    return out;
}

UT_String UT_FormatFrame(int frames, int framesPerSecond, bool forceHours) {
    if (framesPerSecond == 0) return UT_String();
    // 64-bit arithmetic: no overflow for any pair of ints.
    const long long fps = framesPerSecond;
    long long rest = frames;
    const long long h = rest / (3600 * fps);
    rest %= 3600 * fps;
    const long long m = rest / (60 * fps);
    rest %= 60 * fps;
    const long long s = rest / fps;
    const long long f = rest % fps;
    char buffer[96];
    if (h != 0 || forceHours)
        std::snprintf(buffer, sizeof buffer, "%.2lld:%.2lld:%.2lld:%.2lld", h, m, s, f);
    else if (m != 0)
        std::snprintf(buffer, sizeof buffer, "%.2lld:%.2lld:%.2lld", m, s, f);
    else
        std::snprintf(buffer, sizeof buffer, "%.2lld:%.2lld", s, f);
    return UT_String(buffer);
}
