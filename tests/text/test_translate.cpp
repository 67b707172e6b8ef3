// Tests of catalogue lookups with and without an application object, and of quote().
#include <PlumvaleBaseCore/text/UT_Translate.h>

#include <QCoreApplication>
#include <QTranslator>

#include <gtest/gtest.h>

#include <cstring>

namespace {

/// A catalogue that knows exactly one text of one context.
class OneEntryTranslator : public QTranslator {
public:
    QString translate(const char* context, const char* source, const char* = nullptr,
                      int = -1) const override {
        if (context && std::strcmp(context, "Ctx") == 0 && std::strcmp(source, "Hello") == 0)
            return QStringLiteral("Bonjour");
        if (context && std::strcmp(context, "Ctx") == 0 && std::strcmp(source, "\xE9t\xE9") == 0)
            return QStringLiteral("summer");
        return QString();
    }
    bool isEmpty() const override { return false; }
};

} // namespace

TEST(Translate, QuoteAddsOneQuoteEachSideAndEscapesNothing) {
    EXPECT_EQ(quote(QStringLiteral("say \"hi\"")), QStringLiteral("\"say \"hi\"\""));
    EXPECT_EQ(quote(QString()), QStringLiteral("\"\""));
}

TEST(Translate, WithoutApplicationTheSourceIsReadInItsEncoding) {
    ASSERT_EQ(QCoreApplication::instance(), nullptr);
    EXPECT_EQ(MISC_translateFromLatin1("Ctx", "\xE9t\xE9"), QString::fromUtf8("\xC3\xA9t\xC3\xA9"));
    EXPECT_EQ(MISC_translateFromUtf8("Ctx", "\xC3\xA9t\xC3\xA9"),
              QString::fromUtf8("\xC3\xA9t\xC3\xA9"));
    EXPECT_TRUE(MISC_translateFromUtf8("Ctx", nullptr).isEmpty());
    const UT_String text(u"kept");
    EXPECT_EQ(UT_LoadString(text, "Anything"), text);
    const char* pair[] = {"Ctx", "Hello"};
    EXPECT_EQ(UT_LoadString(pair), UT_String(u"Hello"));
    EXPECT_TRUE(UT_LoadString(static_cast<const char**>(nullptr)).empty());
}

TEST(Translate, WithApplicationTheCatalogueAnswersFirst) {
    int argc = 1;
    char name[] = "text_tests";
    char* argv[] = {name, nullptr};
    QCoreApplication app(argc, argv);
    OneEntryTranslator translator;
    ASSERT_TRUE(QCoreApplication::installTranslator(&translator));

    const char* pair[] = {"Ctx", "Hello"};
    EXPECT_EQ(UT_LoadString(pair), UT_String(u"Bonjour"));
    EXPECT_EQ(MISC_translateFromUtf8("Ctx", "Hello"), QStringLiteral("Bonjour"));
    EXPECT_EQ(MISC_translateFromLatin1("Ctx", "\xE9t\xE9"), QStringLiteral("summer"));
    // No entry: the source comes back in the encoding the function names.
    EXPECT_EQ(MISC_translateFromLatin1("Other", "\xE9t\xE9"),
              QString::fromUtf8("\xC3\xA9t\xC3\xA9"));
    EXPECT_EQ(MISC_translateFromUtf8("Other", "\xC3\xA9t\xC3\xA9"),
              QString::fromUtf8("\xC3\xA9t\xC3\xA9"));
    QCoreApplication::removeTranslator(&translator);
}
