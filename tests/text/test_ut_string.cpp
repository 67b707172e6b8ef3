// Tests of UT_String: editing against std::u16string, exact failures, trimming, case, UTF-8.
#include <PlumvaleBaseCore/text/ConvertUTF.h>
#include <PlumvaleBaseCore/text/UT_String.h>

#include <QString>

#include <gtest/gtest.h>

#include <clocale>
#include <random>
#include <stdexcept>
#include <string>
#include <vector>

namespace {

using unit = UT_String::value_type;

std::u16string toStd(const UT_String& s) {
    return s.toU16String();
}

UT_String::size_type pos32(std::size_t p) {
    return p == std::u16string::npos ? UT_String::npos : UT_String::size_type(p);
}

template <class F>
std::string thrownText(F f) {
    try {
        f();
    } catch (const std::exception& e) {
        return e.what();
    }
    return "(nothing thrown)";
}

std::string chunkedEncode(const std::vector<unit>& units) {
    std::string out(units.size() * 3 + 1, '\0');
    const unit* s = units.data();
    auto* t = reinterpret_cast<unsigned char*>(out.data());
    ConvertUTF16toUTF8(&s, s + units.size(), &t, t + out.size());
    out.resize(std::size_t(t - reinterpret_cast<unsigned char*>(out.data())));
    return out;
}

} // namespace

TEST(UTString, SizeTypeIsThirtyTwoBitsWithAllOnesNpos) {
    static_assert(sizeof(UT_String::size_type) == 4, "32-bit size type");
    static_assert(UT_String::npos == 0xFFFFFFFFu, "npos has all bits set");
    EXPECT_EQ(UT_String::max_size(), 0xFFFFFFFEu);
    UT_String s(u"abc");
    EXPECT_EQ(s.find(u'z'), 0xFFFFFFFFu);
    EXPECT_EQ(s.c_str()[3], 0);
}

TEST(UTString, ConstructionForms) {
    const unit raw[] = {'h', 'e', 'l', 'l', 'o', 0};
    EXPECT_EQ(toStd(UT_String(raw)), u"hello");
    EXPECT_EQ(toStd(UT_String(raw, 3)), u"hel");
    EXPECT_EQ(toStd(UT_String(3, unit('x'))), u"xxx");
    EXPECT_EQ(toStd(UT_String(UT_String(raw), 1, 3)), u"ell");
    EXPECT_EQ(toStd(UT_String(UT_String(raw), 2)), u"llo");
    const std::vector<char16_t> v = {u'a', u'b'};
    EXPECT_EQ(toStd(UT_String(v.begin(), v.end())), u"ab");
    EXPECT_EQ(toStd(UT_String(QString::fromUtf8("d\xC3\xA9j\xC3\xA0"))), u"d\u00e9j\u00e0");
    EXPECT_EQ(toStd(UT_String("d\xC3\xA9j\xC3\xA0")), u"d\u00e9j\u00e0");
    EXPECT_TRUE(UT_String(static_cast<const unit*>(nullptr)).empty());
    EXPECT_TRUE(UT_String(static_cast<const char*>(nullptr)).empty());
    EXPECT_EQ(UT_String(u"x\u00e9").ToQString(), QString::fromUtf8("x\xC3\xA9"));
}

TEST(UTString, PositionalFailuresCarryTheirExactTexts) {
    UT_String s(u"abc");
    EXPECT_EQ(thrownText([&] { (void)s.substr(4); }), "UT_String::substr pos out of range");
    EXPECT_TRUE(s.substr(3).empty());
    EXPECT_EQ(toStd(s.substr(1, 1000)), u"bc");
    EXPECT_EQ(thrownText([&] { s.at(3); }), "invalid string position");
    EXPECT_EQ(thrownText([&] { s.insert(4, u"x"); }), "invalid string position");
    EXPECT_EQ(thrownText([&] { s.erase(4, 1); }), "invalid string position");
    EXPECT_EQ(thrownText([&] { s.replace(5, 1, u"x"); }), "invalid string position");
    EXPECT_EQ(thrownText([&] { s.append(UT_String(u"xy"), 3, 1); }), "invalid string position");
    unit buffer[4];
    EXPECT_EQ(thrownText([&] { s.copy(buffer, 1, 4); }), "invalid string position");
    EXPECT_THROW(s.substr(4), std::out_of_range);
    EXPECT_EQ(toStd(s), u"abc"); // nothing changed by the failed calls
    UT_String big(16, unit('y'));
    EXPECT_EQ(thrownText([&] { big.append(UT_String::max_size(), unit('z')); }), "string too long");
}

TEST(UTString, LiteralZeroPositionIsNotAnIterator) {
    UT_String s(u"abcdef");
    s.erase(0, 2);
    s.insert(0, 2, unit('x'));
    s.replace(0, 1, u"y");
    EXPECT_EQ(toStd(s), u"yxcdef");
    s.erase(s.begin() + 1);
    s.erase(s.begin(), s.begin() + 2);
    EXPECT_EQ(toStd(s), u"def");
}

// Random edits applied to both UT_String and std::u16string must agree at every step.
TEST(UTString, RandomEditsAgreeWithStandardString) {
    std::mt19937 rng(12345);
    auto pick = [&](std::size_t n) { return std::size_t(rng() % (n + 1)); };
    auto randomText = [&](std::size_t maxLen) {
        std::u16string t(pick(maxLen), u'\0');
        for (auto& c : t)
            c = char16_t(u'a' + rng() % 4);
        return t;
    };
    for (int round = 0; round < 200; ++round) {
        std::u16string ref;
        UT_String s;
        for (int step = 0; step < 60; ++step) {
            const std::u16string arg = randomText(20);
            const UT_String uarg(arg);
            const std::size_t p = pick(ref.size());
            const std::size_t n = pick(6);
            switch (rng() % 9) {
            case 0:
                ref.append(arg);
                s.append(uarg);
                break;
            case 1:
                ref.insert(p, arg);
                s.insert(UT_String::size_type(p), uarg);
                break;
            case 2:
                ref.erase(p, n);
                s.erase(UT_String::size_type(p), UT_String::size_type(n));
                break;
            case 3:
                ref.replace(p, n, arg);
                s.replace(UT_String::size_type(p), UT_String::size_type(n), uarg);
                break;
            case 4:
                ref.push_back(u'z');
                s.push_back(u'z');
                break;
            case 5:
                ref.resize(n * 3, u'r');
                s.resize(UT_String::size_type(n * 3), u'r');
                break;
            case 6: { // aliasing: the source is the string itself
                const std::u16string copy = ref;
                ref.insert(p, copy);
                s.insert(UT_String::size_type(p), s);
                break;
            }
            case 7: { // aliasing into the middle of our own buffer
                const std::size_t k = std::min(n, ref.size() - p);
                ref.replace(0, std::min<std::size_t>(1, ref.size()), ref.substr(p, k));
                s.replace(0, 1, s.data() + p, UT_String::size_type(k));
                break;
            }
            default: {
                UT_String moved(std::move(s));
                s = moved;
                break;
            }
            }
            ASSERT_EQ(toStd(s), ref) << "round " << round << " step " << step;
            ASSERT_EQ(s.c_str()[s.size()], 0);
            const std::u16string needle = randomText(3);
            const UT_String un(needle);
            const std::size_t from = pick(ref.size() + 2);
            ASSERT_EQ(s.find(un, UT_String::size_type(from)), pos32(ref.find(needle, from)));
            ASSERT_EQ(s.rfind(un, UT_String::size_type(from)), pos32(ref.rfind(needle, from)));
            ASSERT_EQ(s.find_first_of(un, UT_String::size_type(from)),
                      pos32(ref.find_first_of(needle, from)));
            ASSERT_EQ(s.find_last_of(un, UT_String::size_type(from)),
                      pos32(ref.find_last_of(needle, from)));
            ASSERT_EQ(s.find_first_not_of(un, UT_String::size_type(from)),
                      pos32(ref.find_first_not_of(needle, from)));
            ASSERT_EQ(s.find_last_not_of(un, UT_String::size_type(from)),
                      pos32(ref.find_last_not_of(needle, from)));
            const int c = s.compare(un);
            const int rc = ref.compare(needle);
            ASSERT_EQ(c < 0, rc < 0);
            ASSERT_EQ(c == 0, rc == 0);
        }
    }
}

TEST(UTString, SwapAndCopyAcrossTheInlineBoundary) {
    for (unit a = 0; a < 20; ++a) {
        for (unit b = 0; b < 20; b += 3) {
            UT_String x(a, unit('a')), y(b, unit('b'));
            x.swap(y);
            EXPECT_EQ(x, UT_String(b, unit('b')));
            EXPECT_EQ(y, UT_String(a, unit('a')));
            UT_String z = x;
            z = std::move(y);
            EXPECT_EQ(z, UT_String(a, unit('a')));
        }
    }
}

struct TrimCase {
    const char16_t* input;
    const char16_t* left;
    const char16_t* right;
};

TEST(UTString, TrimDefaultSetIsSpaceTabLineFeedOnly) {
    const TrimCase cases[] = {
        {u" \t\n \n", u"", u""},           {u"", u"", u""},
        {u"\rab\r", u"\rab\r", u"\rab\r"}, {u" \tab c\n ", u"ab c\n ", u" \tab c"},
        {u"\n\n\rx", u"\rx", u"\n\n\rx"},
    };
    for (const auto& c : cases) {
        UT_String l(c.input), r(c.input);
        EXPECT_EQ(toStd(l.TrimLeft()), c.left);
        EXPECT_EQ(toStd(r.TrimRight()), c.right);
    }
}

TEST(UTString, TrimWithExplicitSets) {
    UT_String s(u"xxyabcyx");
    EXPECT_EQ(toStd(UT_String(s).TrimLeft(unit('x'))), u"yabcyx");
    EXPECT_EQ(toStd(UT_String(s).TrimRight(unit('x'))), u"xxyabcy");
    const unit set[] = {'x', 'y', 0};
    EXPECT_EQ(toStd(UT_String(s).TrimLeft(set)), u"abcyx");
    EXPECT_EQ(toStd(UT_String(s).TrimRight(UT_String(u"yx"))), u"xxyabc");
    EXPECT_TRUE(UT_String(s).TrimLeft(s).empty()); // the set may be the string itself
}

TEST(UTString, CaseMappingFollowsTheCLibraryAndKeepsSurrogates) {
    const UT_String mixed(u"aZ\u00e9\u00c9\U0001F600");
    const char* previous = std::setlocale(LC_CTYPE, nullptr);
    const std::string saved = previous ? previous : "C";
    std::setlocale(LC_CTYPE, "C");
    EXPECT_EQ(toStd(mixed.upper()), u"AZ\u00e9\u00c9\U0001F600"); // only ASCII in "C"
    if (std::setlocale(LC_CTYPE, "C.UTF-8")) {
        EXPECT_EQ(toStd(mixed.upper()), u"AZ\u00c9\u00c9\U0001F600");
        EXPECT_EQ(toStd(mixed.lower()), u"az\u00e9\u00e9\U0001F600");
        EXPECT_EQ(UT_String(u"\u00c9T\u00e9").compare_nocase(UT_String(u"\u00e9t\u00c9")), 0);
    }
    EXPECT_LT(UT_String(u"abc").compare_nocase(UT_String(u"ABD")), 0);
    EXPECT_GT(UT_String(u"abcd").compare_nocase(UT_String(u"ABC")), 0);
    std::setlocale(LC_CTYPE, saved.c_str());
}

struct Utf8Case {
    const char* bytes;
    std::vector<unit> units;
};

// Hand-computed from the lenient decoding rules: unchecked continuation bytes, plain
// accumulation less the length offset, out-of-range values to U+FFFD, cut-off tails dropped.
TEST(UTString, MalformedUtf8FollowsTheLenientRules) {
    const Utf8Case cases[] = {
        {"\xC3", {}},
        {"a\xC3", {'a'}},
        {"ab\xE2\x82", {'a', 'b'}},
        {"\xFF", {}},
        {"\x80", {0x80}},
        {"\xC3\x41", {0x81}},
        {"\xC0\x80", {0x0000}},
        {"\xC0\x41", {0xFFFD}},
        {"\xED\xA0\x80", {0xD800}},
        {"\xF0\x9F\x98\x80", {0xD83D, 0xDE00}},
        {"\xF4\x8F\xBF\xBF", {0xDBFF, 0xDFFF}},
        {"\xF4\x90\x80\x80", {0xFFFD}},
        {"\xF8\x88\x80\x80\x80", {0xFFFD}},
        {"\xE0\x80\x80x", {0x0000, 'x'}},
    };
    for (const auto& c : cases) {
        const UT_String s(c.bytes);
        EXPECT_EQ(std::vector<unit>(s.begin(), s.end()), c.units) << c.bytes;
    }
}

TEST(UTString, FourByteSequenceRoundTripsThroughTwoUnits) {
    const UT_String s("\xF0\x9F\x98\x80");
    ASSERT_EQ(s.size(), 2u);
    EXPECT_EQ(s.utf8(), "\xF0\x9F\x98\x80");
    const unit lone[] = {0xD800, 'a', 0xDC00, 0};
    EXPECT_EQ(UT_String(lone).utf8(), "\xED\xA0\x80"
                                      "a"
                                      "\xED\xB0\x80");
}

// Valid text of every size around the 64-unit chunks, with pairs at every offset, against
// Qt's encoder as an independent reference.
TEST(UTString, ValidTextRoundTripsAgainstQtAtEveryLength) {
    std::mt19937 rng(7);
    const char32_t pool[] = {U'a',      U'\u00e9', U'\u20ac',     U'\u4e2d', U'\U0001F600',
                             U'\u07ff', U'\uffff', U'\U0010FFFF', U'~'};
    for (int length = 0; length < 300; ++length) {
        std::u32string text;
        for (int i = 0; i < length; ++i)
            text.push_back(pool[rng() % (sizeof pool / sizeof pool[0])]);
        const QString q = QString::fromUcs4(text.data(), int(text.size()));
        const QByteArray bytes = q.toUtf8();
        const UT_String s(bytes.constData());
        ASSERT_EQ(s.ToQString(), q) << length;
        ASSERT_EQ(s.utf8(), bytes.toStdString()) << length;
    }
}

// Long texts go through the chunked encoder, which reserves from the density of the first
// chunk: a text that turns denser later must still come out whole and exact.
TEST(UTString, LongTextsWhoseDensityChangesEncodeExactly) {
    std::u16string text(20000, u'a');
    for (int k = 0; k < 30000; ++k)
        text += (k % 3 == 0) ? u"\U0001F600" : (k % 3 == 1 ? u"\u4e2d" : u"\u00e9");
    text += u'\xd800'; // a lone surrogate at the very end
    const UT_String s(text);
    const std::vector<unit> units(s.begin(), s.end());
    const std::string bytes = s.utf8();
    EXPECT_EQ(bytes, chunkedEncode(units));
    EXPECT_EQ(UT_String(bytes.c_str()), s);
}
