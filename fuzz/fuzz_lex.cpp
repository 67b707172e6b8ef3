// Fuzz target: the lexer over any bytes, in each mode, with its invariants: it ends (each
// token takes at least one byte), never reads past the text, lines only grow and count at
// most the line feeds, every typed reader either advances or stays with a zero value, and
// every token written by writeName reads back as itself.
//
// Input: byte 0 chooses the mode (bit 0 comma-driven, bit 1 raw, bit 2 typed readers); the
// rest is the text, which the lexer reads up to its first zero byte.
#include "FuzzCheck.h"

#include <PlumvaleBaseCore/text/TULex.h>
#include <PlumvaleBaseCore/text/TUMessage.h>

#include <algorithm>
#include <cstdint>
#include <sstream>
#include <string>

namespace {

// Syntax errors are expected here: they are counted, not printed.
class QuietCentre : public TUMessage {
public:
    QuietCentre() : TUMessage(QStringLiteral("fuzz"), false, false) {}
    void writeLog(char, const QString&, const QString&, bool) override { ++reports; }
    long reports = 0;
};

QuietCentre* centre() {
    static QuietCentre* quiet = [] {
        auto* c = new QuietCentre;
        TUMessage::setInstance(c);
        return c;
    }();
    return quiet;
}

void checkReadBack(const std::string& token) {
    if (token.find('\r') != std::string::npos) return; // the lexer drops carriage returns
    std::ostringstream out;
    TULex::writeName(out, QString::fromLatin1(token.data(), static_cast<int>(token.size())));
    out << " end";
    const std::string text = out.str();
    TULex again(text.c_str());
    FUZZ_CHECK(again.asString() == token);
    again.get();
    FUZZ_CHECK(again == "end");
}

void readTyped(TULex& lex) {
    const std::string before = lex.asString();
    int i = 1;
    double d = 1;
    bool b = true;
    switch (before.size() % 4) {
    case 0:
        if (!lex.get_int(i)) FUZZ_CHECK(i == 0 && lex.asString() == before);
        break;
    case 1:
        if (!lex.get_double(d)) FUZZ_CHECK(d == 0.0 && lex.asString() == before);
        break;
    case 2:
        if (!lex.get_bool(b)) FUZZ_CHECK(!b && lex.asString() == before);
        break;
    default:
        lex.parseDouble(d, false);
        FUZZ_CHECK(d > 0.0 || d == 0.0);
        break;
    }
    if (lex.asString() == before) lex.get(); // keep moving
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0) return 0;
    centre();
    const std::string text(reinterpret_cast<const char*>(data) + 1, size - 1);
    const std::size_t length = std::min(text.size(), text.find('\0'));
    const long lineFeeds = std::count(text.begin(), text.begin() + long(length), '\n');
    const bool comma = data[0] & 1, raw = data[0] & 2, typed = data[0] & 4;

    TULex lex(text.c_str());
    if (comma) lex.setCommaDriven(true);
    unsigned line = lex.getLineNo();
    std::size_t steps = 0;
    while (!lex.eof()) {
        FUZZ_CHECK(++steps <= length + 1);
        FUZZ_CHECK(lex.getLineNo() >= line && lex.getLineNo() <= unsigned(lineFeeds) + 1);
        line = lex.getLineNo();
        const std::string token = lex.asString();
        if (lex.isInt()) FUZZ_CHECK(lex.isDouble() && double(int(lex)) == double(lex));
        if (!lex.isDouble()) FUZZ_CHECK(double(lex) == 0.0 && int(lex) == 0);
        (void)lex.fromUtf8();
        if (steps % 7 == 0) checkReadBack(token);
        if (typed)
            readTyped(lex);
        else
            lex.get(raw);
    }
    return 0;
}
