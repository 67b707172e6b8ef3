// Tests of MSG_Text, MSG_Scope and TUMessage: texts, reports, error codes, misuse notices.
#include "text/MessageTestSupport.h"

#include <PlumvaleBaseCore/text/UT_LibraryTranslator.h>

#include <QCoreApplication>
#include <QDateTime>
#include <QFile>
#include <QRegularExpression>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <cstdlib>

namespace {

// Installs the French catalogue for one test.
struct French {
    French() { ok = UT_LibraryTranslator::install(QStringLiteral("fr")); }
    ~French() { UT_LibraryTranslator::remove(); }
    bool ok;
};

std::string stderrOf(void (*action)()) {
    testing::internal::CaptureStderr();
    action();
    return testing::internal::GetCapturedStderr();
}

} // namespace

TEST(MSG_Text, LatinSourceWithoutApplicationAndTranslationWithIt) {
    EXPECT_EQ(g_textMadeBeforeApplication.getText(), QStringLiteral("caf\u00e9"));
    EXPECT_EQ(g_textMadeBeforeApplication.getTranslatedText(), QStringLiteral("caf\u00e9"));

    French fr;
    ASSERT_TRUE(fr.ok);
    const MSG_Text on("TUMessage", "Debug mode : ON");
    EXPECT_EQ(on.getText(), QStringLiteral("Debug mode : ON"));
    EXPECT_EQ(on.getTranslatedText(), QStringLiteral("Mode d\u00e9bogage : ACTIV\u00c9"));
    EXPECT_FALSE(UT_LibraryTranslator::install(QStringLiteral("xx")));
}

TEST(MSG_Text, ArgActsOnBothFieldsAndConcatenationKeepsThemApart) {
    MSG_Text m("Cannot read %1 (%2)", QStringLiteral("Lecture de %1 impossible"));
    m.arg(QStringLiteral("a.txt")).arg(42, 4, 16);
    EXPECT_EQ(m.getText(), QStringLiteral("Cannot read a.txt (  2a)"));
    // The translation had no %2: only the other field changed.
    EXPECT_EQ(m.getTranslatedText(), QStringLiteral("Lecture de a.txt impossible"));

    MSG_Text d("%1|%2|%3", QStringLiteral("%3-%2-%1"));
    d.arg(QStringLiteral("x"), QStringLiteral("y"), QStringLiteral("z"));
    EXPECT_EQ(d.getTranslatedText(), QStringLiteral("z-y-x"));
    MSG_Text n("%1 %2", QStringLiteral("%1 %2"));
    n.arg(2.5, 0, 'f', 2).arg(static_cast<unsigned long long>(18446744073709551615ull));
    EXPECT_EQ(n.getText(), QStringLiteral("2.50 18446744073709551615"));

    MSG_Text outer("File: %1", QStringLiteral("Fichier : %1"));
    outer.arg(MSG_Text("missing", QStringLiteral("absent")));
    EXPECT_EQ(outer.getText(), QStringLiteral("File: missing"));
    EXPECT_EQ(outer.getTranslatedText(), QStringLiteral("Fichier : absent"));

    const MSG_Text sum = MSG_Text("a", QStringLiteral("A")) + MSG_Text("b", QStringLiteral("B")) +
                         QStringLiteral("!");
    EXPECT_EQ(sum.getText(), QStringLiteral("ab!"));
    EXPECT_EQ(sum.getTranslatedText(), QStringLiteral("AB!"));
    EXPECT_TRUE(MSG_Text().isEmpty());
}

TEST(MSG_Scope, EachActionReportsOnceWithTheStateAtDestruction) {
    struct Case {
        int action;
        char kind;
        bool important;
    };
    const Case cases[] = {{0, 'W', true},  {1, 'W', true},  {2, 'E', true}, {4, 'I', true},
                          {5, 'T', false}, {6, 'D', false}, {7, 'T', false}};
    for (const Case& c : cases) {
        RecordingInstall install;
        install.centre->setDebugMode(true);
        install.centre->reports.clear();
        {
            MSG_Scope scope("Step %1", QStringLiteral("\u00c9tape %1"),
                            static_cast<MSG_Scope::Action>(c.action));
            scope.arg(3);
            scope.errorCode(static_cast<ErrorCode::Type>(7));
        }
        ASSERT_EQ(install.centre->reports.size(), 1u) << c.action;
        const RecordingCentre::Report& r = install.centre->reports[0];
        EXPECT_EQ(r.kind, c.kind) << c.action;
        EXPECT_EQ(r.text, QStringLiteral("Step 3"));
        EXPECT_EQ(r.translated, QStringLiteral("\u00c9tape 3"));
        EXPECT_EQ(r.important, c.important);
        const bool carriesCode = c.action == 2 || c.action == 5 || c.action == 7;
        EXPECT_EQ(install.centre->getErrorCode(), carriesCode ? 7 : 0) << c.action;
    }
    RecordingInstall install;
    { MSG_Scope silent(QStringLiteral("nothing"), static_cast<MSG_Scope::Action>(8)); }
    EXPECT_TRUE(install.centre->reports.empty());
    {
        MSG_Scope bare("bare failure");
        MSG_Scope copy(bare); // reports again
    }
    ASSERT_EQ(install.centre->reports.size(), 2u);
    EXPECT_EQ(install.centre->reports[1].kind, 'E');
    EXPECT_EQ(install.centre->getErrorCode(), 20);
    { MSG_Scope quiet(QStringLiteral("debug off"), MSG_Scope::Debug); }
    EXPECT_EQ(install.centre->reports.size(), 2u); // debug mode is off
}

TEST(TUMessage, ErrorCodeRules) {
    struct Case {
        std::vector<int> codes;
        bool errorWithoutCode;
        int expected;
    };
    const Case cases[] = {
        {{5, 3, 7}, false, 3}, {{-1}, false, 0},       {{0}, false, 0},    {{}, true, 100},
        {{4}, true, 4},        {{9, -2, 9}, false, 9}, {{2, 1}, false, 1},
    };
    for (const Case& c : cases) {
        RecordingCentre centre;
        for (int code : c.codes)
            centre.catchErrorCode(code);
        if (c.errorWithoutCode) centre.error(QStringLiteral("e"), QStringLiteral("e"), 0);
        EXPECT_EQ(centre.getErrorCode(), c.expected);
    }
}

TEST(TUMessage, FatalErrorExitStatus) {
    struct Case {
        int code, status;
    };
    for (const Case& c : {Case{9, 1}, Case{8, 8}, Case{2, 2}, Case{1, 1}, Case{0, 1}}) {
        EXPECT_EXIT(TUMessage::instance()->fatalError(QStringLiteral("fatal"),
                                                      QStringLiteral("fatal"), c.code),
                    testing::ExitedWithCode(c.status), "fatal")
            << c.code;
    }
}

TEST(TUMessage, SingletonMisuseNotices) {
    TUMessage::setInstance(nullptr);
    delete new TUMessage(QStringLiteral("gone"), false, false); // sets the destroyed flag
    const std::string twice = stderrOf([] {
        TUMessage::createInstance(QStringLiteral("one"), false, false);
        TUMessage::createInstance(QStringLiteral("two"), false, false);
    });
    EXPECT_NE(twice.find("TUMessage::createInstance: The TUMessage singleton has already been "
                         "destroyed.\nWill recreate (Phoenix) the singleton once more!!!\n"),
              std::string::npos);
    EXPECT_NE(twice.find("TUMessage::createInstace: Request to allocate a second TUMessage "
                         "singleton\n"),
              std::string::npos);
    EXPECT_EQ(TUMessage::instance()->getApplicationName(), QStringLiteral("two"));

    const std::string released = stderrOf([] {
        TUMessage::releaseInstance();
        TUMessage::releaseInstance();
    });
    EXPECT_EQ(released,
              "TUMessage::releaseInstance():  The TUMessage singleton has already been released "
              "once\n"
              "TUMessage::releaseInstance():  The TUMessage singleton does not exists\n"
              "TUMessage::releaseInstance():  The TUMessage singleton has already been released "
              "once\n");
}

TEST(TUMessage, NestedSuspendSendsOneZ) {
    RecordingInstall install;
    {
        TUMessageSuspend outer;
        {
            TUMessageSuspend inner;
            EXPECT_TRUE(install.centre->isReportSuspended());
            {
                TUMessageUnsuspend lift;
                EXPECT_FALSE(install.centre->isReportSuspended());
            }
            EXPECT_TRUE(install.centre->isReportSuspended());
        }
        EXPECT_TRUE(install.centre->reports.empty());
    }
    ASSERT_EQ(install.centre->reports.size(), 1u);
    EXPECT_EQ(install.centre->reports[0].kind, 'Z');
    EXPECT_FALSE(install.centre->isReportSuspended());
}

TEST(TUMessage, LogLinesOnStandardError) {
    const std::string line = stderrOf([] { TUMessage::LogToStdErr(QStringLiteral("hello")); });
    const QRegularExpression format(
        QStringLiteral("^\\[\\d{4}\\.\\d\\d\\.\\d\\d-\\d\\d\\.\\d\\d\\.\\d\\d\\]\\[%1@\\d+\\] "
                       "hello\\n$")
            .arg(QCoreApplication::applicationPid()));
    EXPECT_TRUE(format.match(QString::fromStdString(line)).hasMatch()) << line;

    const std::string timed = stderrOf([] {
        TUMessage centre(QStringLiteral("t"), false, false);
        centre.setTimeLogging(true);
        centre.information(QStringLiteral("caf\u00e9"), QStringLiteral("ignored"));
        centre.setTimeLogging(false);
        centre.warning(QStringLiteral("plain"), QStringLiteral("ignored"));
        centre.debug(QStringLiteral("hidden"), QStringLiteral("hidden"));
    });
    const QRegularExpression timedFormat(
        QStringLiteral("^ \\d\\d:\\d\\d:\\d\\d\\.\\d\\d\\d caf\u00e9\\nplain\\n$"));
    EXPECT_TRUE(timedFormat.match(QString::fromUtf8(timed.c_str())).hasMatch()) << timed;
    EXPECT_EQ(TUMessage::getMsgTypeText('T'), QStringLiteral("T:"));
    EXPECT_EQ(TUMessage::getMsgTypeText('Z'), QStringLiteral("Unknown type"));
}

TEST(TUMessage, OkToUseFileByAge) {
    QTemporaryDir dir;
    ASSERT_TRUE(dir.isValid());
    auto makeFile = [&](const char* name, qint64 ageSeconds) {
        const QString path = dir.filePath(QString::fromLatin1(name));
        QFile f(path);
        EXPECT_TRUE(f.open(QIODevice::WriteOnly));
        EXPECT_TRUE(f.setFileTime(QDateTime::currentDateTime().addSecs(-ageSeconds),
                                  QFileDevice::FileModificationTime));
        return path;
    };
    const QString fresh = makeFile("fresh", 60);
    const QString old = makeFile("old", 2 * 86401);
    const QString recent = makeFile("recent", 14 * 86400 - 3600);
    const QString stale = makeFile("stale", 16 * 86400);
    const QString missing = dir.filePath(QStringLiteral("missing"));
    const RecordingCentre centre;
    EXPECT_FALSE(centre.okToUseFile(fresh, missing));
    EXPECT_TRUE(centre.okToUseFile(old, missing));
    EXPECT_TRUE(centre.okToUseFile(missing, fresh));
    EXPECT_TRUE(centre.okToUseFile(missing, missing));
    EXPECT_FALSE(centre.okToUseFile(fresh, recent));
    EXPECT_TRUE(centre.okToUseFile(fresh, stale));
}

TEST(TUMessage, DebugModeTracesItsChange) {
    French fr;
    RecordingCentre centre;
    centre.setDebugMode(true);
    centre.setDebugMode(false);
    ASSERT_EQ(centre.reports.size(), 2u);
    EXPECT_EQ(centre.reports[0].kind, 'T');
    EXPECT_EQ(centre.reports[0].text, QStringLiteral("Debug mode : ON"));
    EXPECT_EQ(centre.reports[1].translated,
              QStringLiteral("Mode d\u00e9bogage : D\u00c9SACTIV\u00c9"));
    EXPECT_FALSE(centre.reports[1].important);
}
