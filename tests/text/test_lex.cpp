// Tests of the lexer: tokenizing, lines, numbers, the typed readers and their reports, the
// writers read back, file input, and the identifiers read through it.
#include "text/MessageTestSupport.h"

#include <PlumvaleBaseCore/app/UT_Id.h>
#include <PlumvaleBaseCore/files/PL_FileSpec.h>
#include <PlumvaleBaseCore/text/TULex.h>

#include <gtest/gtest.h>

#include <QFile>
#include <QTemporaryDir>
#include <QTextStream>

#include <climits>
#include <random>
#include <sstream>
#include <string>
#include <vector>

namespace {

// The tokens after the first of "start " + text; the constructor reads that first token in
// the default mode, then the mode under test applies, as a reader of a file would set it.
std::vector<std::string> tokensOf(const std::string& text, bool comma, bool raw,
                                  unsigned* line = nullptr) {
    const std::string all = "start " + text;
    TULex lex(all.c_str());
    EXPECT_TRUE(lex == "start");
    if (comma) lex.setCommaDriven(false); // any argument switches it on
    std::vector<std::string> out;
    for (lex.get(raw); !lex.eof(); lex.get(raw))
        out.push_back(lex.asString());
    if (line) *line = lex.getLineNo();
    return out;
}

using Tokens = std::vector<std::string>;

} // namespace

TEST(TULex, Tokenizing) {
    struct Case {
        const char* text;
        bool comma, raw;
        Tokens expected;
    } cases[] = {
        {"abc,def", false, false, {"abc", ",", "def"}},
        {"abc,def", true, false, {"abc", ",", "def"}},
        {"a#b", false, false, {"a", "#", "b"}},
        {"a#b", true, false, {"a#b"}}, // a comment starts only where a token could
        {"# note\nx#y # c\nz", true, false, {"x#y", "z"}}, // ... even after a token
        {"(x)=1", false, false, {"(", "x", ")", "=", "1"}},
        {"(x)=1", true, false, {"(x)=1"}},
        {"a=b c", false, true, {"a=b", "c"}},
        {"a=b,c d", true, true, {"a=b", ",", "c", "d"}},
        {"\"a\\\"b\" \"c\\\\d\"", false, false, {"a\"b", "c\\d"}},
        {"\"x\r\ny\"", false, false, {"x\ny"}}, // CR dropped inside quotes, LF kept
        {"\"q u\"", true, false, {"q", "u\""}}, // comma-driven: quotes are blanks at a start
        {"\"\" z", false, false, {}},           // an empty quoted token reads as the end
        {"caf\xe9 t\xe9l\xe9", false, false, {"caf\xe9", "t\xe9l\xe9"}},
        {"a\r\nb\tc  ~d+e/f\\g", false, false, {"a", "b", "c", "~d+e/f\\g"}},
        {"x\ry", false, false, {"xy"}}, // a lone CR inside a token is skipped
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(testing::Message()
                     << c.text << (c.comma ? " comma" : "") << (c.raw ? " raw" : ""));
        EXPECT_EQ(tokensOf(c.text, c.comma, c.raw), c.expected);
    }
}

TEST(TULex, LinesCountLineFeedsOnly) {
    struct Case {
        const char* text;
        unsigned lastLine;
    } cases[] = {
        {"a\nb\n\nc", 4},  {"a\r\nb\r\nc\r\n", 4}, {"a\rb\rc", 1},
        {"\"x\ny\" z", 2}, {"a # c\nb", 2},
    };
    for (const Case& c : cases) {
        unsigned line = 0;
        tokensOf(c.text, false, false, &line);
        EXPECT_EQ(line, c.lastLine) << c.text;
    }
    TULex lex("a b c\nd e\nf\ng\nh");
    lex.skipToNextLine();
    EXPECT_TRUE(lex == "d");
    lex.skipToNextLine();
    EXPECT_TRUE(lex == "f");
    lex.skipToNextLine(); // "f" took its line feed: the line dropped is "g"'s
    EXPECT_TRUE(lex == "h");
    EXPECT_EQ(lex.getLineNo(), 5u);
    lex.skipToNextLine();
    EXPECT_TRUE(lex.eof());
}

TEST(TULex, NumbersAndComparisons) {
    struct Case {
        const char* token;
        bool isInt, isDouble;
        int i;
        double d;
    } cases[] = {
        {"12", true, true, 12, 12.0},
        {"-7", true, true, -7, -7.0},
        {"12x", false, false, 0, 0.0},
        {"1e3", false, true, 0, 1000.0},
        {"2.5", false, true, 0, 2.5},
        {"3000000000", true, true, INT_MAX, INT_MAX},
        {"-3000000000", true, true, INT_MIN, INT_MIN},
        {"+4", true, true, 4, 4.0},
        {"abc", false, false, 0, 0.0},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.token);
        const std::string quoted = std::string("\"") + c.token + "\"";
        TULex lex(quoted.c_str());
        EXPECT_EQ(lex.isInt(), c.isInt);
        EXPECT_EQ(lex.isDouble(), c.isDouble);
        EXPECT_EQ(static_cast<int>(lex), c.i);
        EXPECT_EQ(static_cast<double>(lex), c.d);
    }
    TULex lex("abc");
    EXPECT_TRUE(lex == "abc");
    EXPECT_TRUE(lex == std::string("abc"));
    EXPECT_TRUE(lex == QStringLiteral("abc"));
    EXPECT_TRUE(lex != "ab");
    EXPECT_TRUE(lex != "abcd");
    TULex empty("");
    EXPECT_TRUE(empty.eof());
    EXPECT_FALSE(empty == ""); // an empty token equals nothing
    TULex accented("caf\xe9");
    EXPECT_TRUE(accented == QString::fromUtf8("caf\xc3\xa9")); // compared through Latin-1
    EXPECT_EQ(accented.fromUtf8(), QString::fromUtf8("caf\xc3\xa9"));
    TULex utf8("caf\xc3\xa9");
    EXPECT_EQ(utf8.fromUtf8(), QString::fromUtf8("caf\xc3\xa9"));
    EXPECT_EQ(QString(utf8).size(), 5); // Latin-1: one character per byte
    TULex broken("a\xc3(");             // a lead byte without its continuation
    EXPECT_EQ(broken.fromUtf8(), QString::fromLatin1("a\xc3"));
}

TEST(TULex, TypedReadersAndTheirReports) {
    RecordingInstall install;
    const auto last = [&] { return install.centre->reports.back().text.toStdString(); };
    std::size_t reports = 0;

    TULex lex("5 12x y Y\n 2.5 n");
    int i = -1;
    EXPECT_TRUE(lex.get_int(i));
    EXPECT_EQ(i, 5);
    EXPECT_FALSE(lex.get_int(i));
    EXPECT_EQ(i, 0);
    ASSERT_EQ(install.centre->reports.size(), ++reports);
    EXPECT_EQ(install.centre->reports.back().kind, 'W');
    EXPECT_EQ(last(), "Syntax error at line 1:\n Expecting number. (12x)");
    lex.get();
    bool b = false;
    EXPECT_TRUE(lex.get_bool(b)); // lower case is fine here
    EXPECT_TRUE(b);
    EXPECT_FALSE(lex.get_bool(b) && false); // "Y" is read too, then
    double d = 0;
    EXPECT_TRUE(lex.get_double(d));
    EXPECT_EQ(d, 2.5);
    EXPECT_TRUE(lex.get_bool(b));
    EXPECT_FALSE(b);
    EXPECT_TRUE(lex.eof());
    EXPECT_FALSE(lex.get_bool(b)); // nothing left: no report
    EXPECT_EQ(install.centre->reports.size(), reports);

    TULex yn("key y");
    EXPECT_FALSE(yn.parseBool(b)); // parseBool takes upper case only
    EXPECT_EQ(last(), "Syntax error at line 1:\n Expecting Y or N while reading y (y)");
    TULex yes("key Y rest");
    EXPECT_TRUE(yes.parseBool(b));
    EXPECT_TRUE(b && yes == "rest");

    // A value read, then refused: the report names the value's token.
    TULex zero("scale 0 next");
    EXPECT_FALSE(zero.parseDouble(d, false));
    EXPECT_EQ(d, 0.0);
    EXPECT_EQ(last(), "Syntax error at line 1:\n Expected float value greater then 0. (0)");
    TULex negative("scale -1");
    EXPECT_TRUE(negative.parseDouble(d, true)); // any value allowed
    EXPECT_EQ(d, -1.0);
    reports = install.centre->reports.size();
    TULex word("scale abc");
    EXPECT_FALSE(word.parseDouble(d, false)); // two reports: not a number, not above 0
    EXPECT_EQ(install.centre->reports.size(), reports + 2);
    EXPECT_TRUE(word.isError());

    TULex quote("\"abc");
    EXPECT_TRUE(quote.isError());
    EXPECT_EQ(last(), "Syntax error at line 1:\n missing \" (abc)");
    EXPECT_TRUE(quote == "abc");
}

TEST(TULex, YesToAllStopsFurtherReports) {
    RecordingInstall install;
    TULex lex("x y z");
    lex.enableYesToAll();
    lex.syntaxErr(MSG_Text("TULex", "first"));
    EXPECT_EQ(install.centre->reports.size(), 1u);
    lex.setYesToAllAnswer(true); // what the user's "yes to all" leaves
    lex.syntaxErr(MSG_Text("TULex", "second"));
    EXPECT_EQ(install.centre->reports.size(), 1u);
    EXPECT_TRUE(lex.isError());

    // A percent sign in the message or the token is not taken for an argument marker.
    TULex percent("%1%2");
    percent.syntaxErr(MSG_Text("TULex", "at %3"));
    EXPECT_EQ(install.centre->reports.back().text, "Syntax error at line 1:\n at %3 (%)");
}

TEST(TULex, WrittenNamesReadBack) {
    struct Case {
        const char* name;
        const char* written;
    } cases[] = {
        {"a-b.c", "a-b.c"},         {"a b", "\"a b\""}, {"", "\"\""},
        {"q\"\\", "\"q\\\"\\\\\""}, {"x=1", "\"x=1\""},
    };
    for (const Case& c : cases) {
        std::ostringstream out;
        TULex::writeName(out, QString::fromLatin1(c.name));
        EXPECT_EQ(out.str(), c.written);
        QString text;
        QTextStream stream(&text);
        TULex::writeString(stream, QString::fromLatin1(c.name));
        stream.flush();
        EXPECT_EQ(text, QString::fromLatin1(c.written));
    }

    std::mt19937 random(20261123);
    for (int round = 0; round < 500; ++round) {
        std::string bytes;
        const int length = static_cast<int>(random() % 12);
        for (int k = 0; k < length; ++k) {
            char c = static_cast<char>(1 + random() % 255);
            if (c == '\r') c = '\n'; // a carriage return is dropped by the lexer
            bytes += c;
        }
        const QString name = QString::fromLatin1(bytes.data(), static_cast<int>(bytes.size()));
        std::ostringstream out;
        TULex::writeName(out, name);
        out << " end";
        const std::string text = out.str();
        TULex lex(text.c_str());
        ASSERT_EQ(lex.asString(), bytes) << text;
        lex.get();
        EXPECT_TRUE(lex == "end") << text;

        // UTF-8: any character but CR and NUL survives too.
        QString wide;
        for (int k = 0; k < length; ++k)
            wide += QChar(static_cast<char16_t>(0x20 + random() % 0x3000));
        std::ostringstream utf8;
        TULex::writeNameUtf8(utf8, wide);
        const std::string utf8Text = utf8.str();
        EXPECT_EQ(TULex(utf8Text.c_str()).fromUtf8(), wide) << utf8Text;
    }
}

TEST(TULex, FilesAreReadWhole) {
    QTemporaryDir dir;
    const QString path = dir.filePath("settings.txt");
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    std::string big(3 << 20, 'x'); // longer than one read piece
    big += " last\n";
    file.write(big.data(), static_cast<qint64>(big.size()));
    file.close();

    TULex lex;
    EXPECT_TRUE(lex.eof());
    ASSERT_TRUE(lex.openFile(path));
    EXPECT_EQ(lex.asString().size(), std::size_t(3 << 20));
    lex.get();
    EXPECT_TRUE(lex == "last");
    lex.get();
    EXPECT_TRUE(lex.eof());
    EXPECT_EQ(lex.getLineNo(), 2u);

    QFile(dir.filePath("empty.txt")).open(QIODevice::WriteOnly);
    TULex empty;
    EXPECT_TRUE(empty.openFile(PL_FileSpec(UT_String(dir.filePath("empty.txt")))));
    EXPECT_TRUE(empty.eof());
    TULex missing("kept");
    EXPECT_FALSE(missing.openFile(dir.filePath("missing.txt")));
    EXPECT_FALSE(missing.openFile(dir.path())); // a folder is not a text
    EXPECT_TRUE(missing == "kept");             // the lexer is as it was
}

TEST(TUIndent, TwoSpacesPerLevelNeverBelowZero) {
    TUIndent indent;
    std::ostringstream out;
    indent++;
    ++indent;
    out << indent << "|";
    for (int i = 0; i < 3; ++i)
        --indent;
    TUIndent off(false);
    ++off;
    out << indent << "|" << off << "|";
    EXPECT_EQ(out.str(), "    |||");
}

TEST(UT_Id, ReadFromLexerAndXml) {
    RecordingInstall install;
    TULex lex("00000001fffffffe 123 next");
    UT_Id id(0);
    EXPECT_TRUE(id.parse(lex));
    EXPECT_EQ(id.value(), 0x1fffffffeLL);
    EXPECT_FALSE(id.parse(lex));
    EXPECT_EQ(install.centre->reports.back().text,
              "Syntax error at line 1:\n Invalid Secret Color Name (123)");
    EXPECT_TRUE(lex == "123"); // not consumed
    id.parseXml("ffffffffffffffff");
    EXPECT_EQ(id, UT_Id(-1));
    id.parseXml("abc");
    EXPECT_EQ(id, UT_Id(-1)); // another length changes nothing
}
