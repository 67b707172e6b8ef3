// Tests of oswUtil's queries, the shortcut writer, the memory figures and DllOpen.
#include <PlumvaleBaseCore/app/BAPP_SpecialFolders.h>
#include <PlumvaleBaseCore/files/OSW_Dll.h>
#include <PlumvaleBaseCore/files/OSW_FileInfo.h>
#include <PlumvaleBaseCore/files/oswUtil.h>

#include "text/MessageTestSupport.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QRegularExpression>
#include <QTemporaryDir>

#include <cstring>

namespace {

const char* g_fakeName = nullptr;

bool fakeMachineName(char* buffer, unsigned size) {
    if (!g_fakeName) return false;
    std::strncpy(buffer, g_fakeName, size);
    return true;
}

} // namespace

TEST(oswUtil, ShortMachineNameRules) {
    oswUtil::setMachineNameSource(fakeMachineName);
    const struct {
        const char* raw;
        unsigned len;
        const char* expected;
        const char* report; // the debug report, if any
    } cases[] = {
        {"WORK.example", 63, "work", nullptr},
        {"WORK.local", 63, "work.local", nullptr},
        {"a.b.local", 63, "a", nullptr}, // only "local" right after the first dot keeps it
        {"abc", 0, "", nullptr},         // strncpy of 0 characters copies nothing
        {"abcdef", 4, "abcd", "getShortMachineName: Truncating host name abcdef to 4 characters."},
        {"abcd", 4, "abcd", nullptr},
    };
    for (const auto& c : cases) {
        g_fakeName = c.raw;
        RecordingInstall centre(true);
        char out[64];
        std::memset(out, 'X', sizeof out);
        ASSERT_TRUE(oswUtil::getShortMachineName(out, c.len)) << c.raw;
        const size_t n = std::strlen(c.expected);
        EXPECT_EQ(std::string(out, n), c.expected) << c.raw;
        // strncpy's rule: terminated only when shorter than len.
        EXPECT_EQ(out[n], c.len == 0 || n == c.len ? 'X' : '\0') << c.raw;
        ASSERT_EQ(centre.centre->reports.size(), c.report ? 1u : 0u) << c.raw;
        if (c.report) {
            EXPECT_EQ(centre.centre->reports[0].kind, 'D');
            EXPECT_EQ(centre.centre->reports[0].text, c.report);
        }
    }
    g_fakeName = nullptr;
    RecordingInstall centre;
    char out[8] = {};
    EXPECT_FALSE(oswUtil::getShortMachineName(out, 7));
    ASSERT_EQ(centre.centre->reports.size(), 1u);
    EXPECT_EQ(centre.centre->reports[0].kind, 'T');
    EXPECT_EQ(centre.centre->reports[0].text, "getShortMachineName: could not get machine name.");
    oswUtil::setMachineNameSource(nullptr);
    EXPECT_TRUE(oswUtil::getShortMachineName(out, 7));
}

TEST(oswUtil, SameMachineByFirstAddress) {
    EXPECT_TRUE(oswUtil::isSameMachineName("localhost", "127.0.0.1"));
    EXPECT_FALSE(oswUtil::isSameMachineName("127.0.0.1", "127.0.0.2"));
    RecordingInstall centre;
    EXPECT_FALSE(oswUtil::isSameMachineName("localhost", "")); // refused without a query
    ASSERT_EQ(centre.centre->reports.size(), 1u);
    EXPECT_EQ(centre.centre->reports[0].kind, 'W');
    EXPECT_EQ(centre.centre->reports[0].text, "gethostbyname failed for ");
}

TEST(oswUtil, FoldersAreTheSpecialFolders) {
    BAPP_SpecialFolders* f = BAPP_SharedSpecialFolders();
    EXPECT_EQ(oswUtil::ORVARoot(), f->root());
    EXPECT_EQ(oswUtil::ORVADir(false), f->config());
    EXPECT_EQ(oswUtil::ORVADir(true), f->userConfig());
    EXPECT_EQ(oswUtil::ORVAEtc(), f->etc());
    EXPECT_EQ(oswUtil::ORVAResources(), f->resource());
    EXPECT_EQ(oswUtil::ORVAResources("icons"), f->resource() + "/icons");
    EXPECT_EQ(oswUtil::getAppDir(), f->app());
    EXPECT_EQ(oswUtil::getBinDir(), f->bin());
    EXPECT_EQ(oswUtil::getBin32Dir(), f->bin32());
    EXPECT_EQ(oswUtil::getLibDir(), f->library());
    EXPECT_EQ(oswUtil::pathReplace("/a/b/a", "/a", "/x"), "/x/b/x");
    EXPECT_EQ(oswUtil::pathReplace("/a", "", "/x"), "/a");
}

TEST(oswUtil, DiskInformation) {
    QString report;
    EXPECT_TRUE(oswUtil::ntGetDiskInfo(QDir::tempPath(), &report));
    EXPECT_TRUE(
        QRegularExpression("^\\d+% in use, mounted on /.*, \\d+ Mbytes free, \\d+ Mbytes total$")
            .match(report)
            .hasMatch())
        << report.toStdString();
    EXPECT_FALSE(oswUtil::getDiskInfo(QDir::tempPath().toUtf8().constData(), nullptr, 1e12f));

    RecordingInstall centre;
    EXPECT_FALSE(oswUtil::getDiskInfo("/nonexistent/x", &report, 0));
    ASSERT_EQ(centre.centre->reports.size(), 1u);
    EXPECT_TRUE(QRegularExpression("^oswUtil\\.cpp\\(\\d+\\):  GetDiskFreeSpaceEx\\(\\) on "
                                   "/nonexistent/x failed >> No such file or directory \\(2\\)\n$")
                    .match(centre.centre->reports[0].text)
                    .hasMatch())
        << centre.centre->reports[0].text.toStdString();
}

TEST(oswUtil, UmaskFromTheEnvironment) {
    const QByteArray saved = qgetenv("ORVA_UMASK");
    qunsetenv("ORVA_UMASK");
    const unsigned before = oswUtil::setUmaskFromEnvironment();
    {
        RecordingInstall centre;
        for (const auto& [value, mask] : {std::pair{"027", 027u}, std::pair{"22 trailing", 022u},
                                          std::pair{"8", 0u}, std::pair{"", 0u}}) {
            qputenv("ORVA_UMASK", value);
            EXPECT_EQ(oswUtil::setUmaskFromEnvironment(), mask) << value;
            qunsetenv("ORVA_UMASK");
            EXPECT_EQ(oswUtil::setUmaskFromEnvironment(), mask) << value; // the mask in force
        }
        ASSERT_EQ(centre.centre->reports.size(), 2u);
        EXPECT_EQ(centre.centre->reports[0].text,
                  "Unable to set umask from $ORVA_UMASK=\"8\" is not an octal integer. "
                  "umask was set to 0");
    }
    qputenv("ORVA_UMASK", QByteArray::number(before, 8));
    oswUtil::setUmaskFromEnvironment();
    if (saved.isNull())
        qunsetenv("ORVA_UMASK");
    else
        qputenv("ORVA_UMASK", saved);
}

TEST(oswUtil, ShortcutsAreReadBack) {
    QTemporaryDir tmp;
    const QString t = tmp.path();
    const QString targets[] = {"C:/work/scene 1.scn", "/home/u/a b/c", "//srv/share/dir/f",
                               "//srv/share", QString::fromUtf8("/tmp/\xc3\xa9t\xc3\xa9")};
    for (const QString& target : targets) {
        EXPECT_EQ(OSW_FileInfo::parseShellLink(OSW_FileInfo::makeShellLink(target)), target);
        ASSERT_TRUE(oswUtil::createShortcut(target, t + "/s.lnk"));
        EXPECT_EQ(OSW_FileInfo(t + "/s.lnk").readLink(), target);
    }
    ASSERT_TRUE(oswUtil::createShortcut("/etc", t + "/sym"));
    EXPECT_EQ(OSW_FileInfo(t + "/sym").readLink(), "/etc");

    RecordingInstall centre;
    EXPECT_FALSE(oswUtil::createShortcut("/etc", t + "/missing/s.lnk"));
    EXPECT_FALSE(oswUtil::createShortcut("/etc", t + "/sym")); // exists already
    ASSERT_EQ(centre.centre->reports.size(), 2u);
    EXPECT_EQ(centre.centre->reports[0].text, "nt_create_shortcut: Save failed. Windows error 2\n");
    EXPECT_EQ(centre.centre->reports[1].text,
              "nt_create_shortcut: Save failed. Windows error 17\n");
}

TEST(oswUtil, UserAndMemory) {
    QString user;
    ASSERT_TRUE(oswUtil::getUserName(user));
    EXPECT_FALSE(user.isEmpty());
    EXPECT_EQ(oswUtil::AdminOrRoot(), user == "root");
    EXPECT_TRUE(oswUtil::isVistaOrAbove());
    QString temp;
    EXPECT_TRUE(oswUtil::getTempDir(temp));
    EXPECT_TRUE(QFileInfo(temp).isDir());

    const unsigned total = TUOSWMemory::getTotalPhysicalMemoryMB();
    EXPECT_GT(total, 0u);
    EXPECT_LE(TUOSWMemory::getFreePhysicalMemoryMB(), total);
    EXPECT_GE(TUOSWMemory::getTotalVirtualMemoryMB(), total);
    EXPECT_LE(TUOSWMemory::getFreeVirtualMemoryMB(), TUOSWMemory::getTotalVirtualMemoryMB());
    QString text;
    EXPECT_EQ(TUOSWMemory::getTotalPhysicalMemoryMB(text), QString::number(total) + " MB");
}

TEST(DllOpen, AppendsTheSuffixAndSearchesThePath) {
    const QString folder = QStringLiteral(PLUMVALE_TEST_PLUGIN_DIR);
    DllModule module = DllOpen(folder + "/pvplugin");
    ASSERT_NE(module, nullptr) << DllError();
    auto answer = reinterpret_cast<int (*)()>(DllSymbol(module, "pv_test_answer"));
    ASSERT_NE(answer, nullptr);
    EXPECT_EQ(answer(), 42);
    EXPECT_EQ(DllSymbol(module, "no_such_symbol"), nullptr);
    EXPECT_NE(DllError(), nullptr);
    EXPECT_EQ(DllError(), nullptr); // reading clears it
    DllClose(module);

    EXPECT_EQ(DllOpen(folder + "/pvplugin.so"), nullptr); // looks for pvplugin.so.so
    const char* error = DllError();
    ASSERT_NE(error, nullptr);
    EXPECT_NE(std::strstr(error, "pvplugin.so.so"), nullptr) << error;

    EXPECT_EQ(oswUtil::getDynamicLibPath("pvplugin.so"), QString());
    oswUtil::addDynamicLibPath("/nonexistent", false);
    oswUtil::addDynamicLibPath(folder, true);
    EXPECT_EQ(oswUtil::getDynamicLibPath("pvplugin.so"), folder + "/pvplugin.so");
    module = DllOpen("pvplugin"); // a bare name: the loader's path, then ours
    EXPECT_NE(module, nullptr);
    DllClose(module);
    EXPECT_EQ(DllBuildFrameworkName(nullptr), "dummy");
    EXPECT_EQ(DllBuildFrameworkName("fw"), "fw");
}
