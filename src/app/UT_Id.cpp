// UT_Id: generation from the clock stamp, the text form, and reading from lexers and XML.
#include <PlumvaleBaseCore/app/PL_Mutex.h>
#include <PlumvaleBaseCore/app/UT_Id.h>
#include <PlumvaleBaseCore/text/TULex.h>

#include "platform/Platform.h"

#include <cstdio>
#include <ostream>

namespace {

// The stamp of the first identifier of a run. The fields overlap on purpose (the hour has 4
// bits, the year's bits fall on the month's): this layout, not a clean one, is what the
// family's files hold.
std::uint64_t clockStamp() {
    const plumvale::platform::UtcTime t = plumvale::platform::utcNow();
    const auto u = [](int v) { return static_cast<std::uint64_t>(static_cast<unsigned>(v)); };
    const std::uint64_t a = ((u(t.month) & 0x1FF) << 5) | (u(t.day) & 0x3FFF);
    const std::uint64_t b = (a << 4) | u(t.hour);
    const std::uint64_t c = (b << 6) | u(t.minute);
    const std::uint64_t d = ((u(t.year - 16) % 32) << 25) | u(t.second);
    return (c << 16) | (d << 10) | u(t.millisecond);
}

// The hexadecimal digits at the start of `text`, at most 8; 0 when there are none.
std::uint32_t scanHexWord(const std::string& text, std::size_t from) {
    std::uint32_t value = 0;
    for (std::size_t i = from; i < text.size() && i < from + 8; ++i) {
        const char c = text[i];
        int digit;
        if (c >= '0' && c <= '9')
            digit = c - '0';
        else if (c >= 'a' && c <= 'f')
            digit = c - 'a' + 10;
        else if (c >= 'A' && c <= 'F')
            digit = c - 'A' + 10;
        else
            break;
        value = (value << 4) | static_cast<std::uint32_t>(digit);
    }
    return value;
}

} // namespace

UT_Id::UT_Id() {
    static PL_SpinMutex mutex;
    static bool started = false;
    static std::uint64_t stamp = 0;
    static std::uint32_t counter = 0;
    std::uint64_t value;
    {
        PL_SpinMutex::ScopeLock lock(mutex);
        if (!started || counter == (1u << 20)) {
            stamp = clockStamp();
            counter = 0;
            started = true;
        }
        value = ((stamp & ((std::uint64_t(1) << 44) - 1)) << 20) + counter++;
    }
    *this = UT_Id(static_cast<std::int64_t>(value), 0);
}

std::string UT_Id::AsString() const {
    char text[17];
    std::snprintf(text, sizeof text, "%08x%08x", static_cast<unsigned>(m_high),
                  static_cast<unsigned>(m_low));
    return text;
}

UT_Id UT_Id::FromString(const std::string& text) {
    const std::uint64_t high = scanHexWord(text, 0);
    const std::uint64_t low = scanHexWord(text, 8);
    return UT_Id(static_cast<std::int64_t>((high << 32) | low), 0);
}

void UT_Id::write(std::ostream& out) const {
    out << AsString();
}

bool UT_Id::parse(TULex& lex) {
    const std::string token = lex.asString();
    if (token.size() != 16) {
        lex.syntaxErr(MSG_Text("UT_Id", "Invalid Secret Color Name"));
        return false;
    }
    *this = FromString(token);
    lex.get();
    return true;
}

void UT_Id::parseXml(const QString& text) {
    if (text.size() == 16) *this = FromString(text.toLatin1().toStdString());
}
