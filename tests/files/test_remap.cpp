// Tests of the remapping configuration reader, the mount table and the path remapper.
#include <PlumvaleBaseCore/app/BAPP_SpecialFolders.h>
#include <PlumvaleBaseCore/files/oswRemapPath.h>
#include <PlumvaleBaseCore/files/oswUtil.h>

#include "files/MountTable.h"
#include "files/ProfileFile.h"
#include "text/MessageTestSupport.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

using plumvale::files::ProfileFile;

namespace {

void writeFile(const QString& path, const QByteArray& bytes) {
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly)) << path.toStdString();
    file.write(bytes);
}

// Points the remapper at a configuration for one test, and back at none afterwards.
class ConfigGuard {
public:
    explicit ConfigGuard(const QString& file) { oswRemapPath::setConfigFile(file); }
    ~ConfigGuard() { oswRemapPath::setConfigFile(QStringLiteral("/nonexistent/orvacfg.ini")); }
};

} // namespace

TEST(ProfileFile, ReadsHostileFilesByTheProfileRules) {
    const QByteArray text = "; comment\r\n"
                            "key=outside any section\n"
                            "[Connection0]\r\n"
                            "  Sharename = \\\\srv\\share  \r\n"
                            "SHARENAME=second wins nothing\n"
                            "Username=\"quoted value\"\n"
                            "Password=a;b,c\\d\n"
                            "novalue\n"
                            "=no key\n"
                            "[ Connection1 ]\n"
                            "Long=" +
                            QByteArray(2000, 'x') +
                            "\n"
                            "[connection2]\n"
                            "Sharename=lower-case section\n"
                            "[Connection0]\n"
                            "Extra=from the duplicate\n"
                            "[Unclosed\n"
                            "k=v\n";
    const ProfileFile file = ProfileFile::parse(text);
    const struct {
        const char* section;
        const char* key;
        QString value;
    } cases[] = {
        {"Connection0", "sharename", "\\\\srv\\share"},
        {"Connection0", "Username", "quoted value"},
        {"Connection0", "PASSWORD", "a;b,c\\d"},
        {"Connection0", "novalue", ""},
        {"Connection0", "Extra", ""}, // the first of duplicate sections wins
        {"Connection1", "Long", QString(1023, QLatin1Char('x'))},
        {"connection2", "Sharename", "lower-case section"},
        {"Connection2", "Sharename", ""},
        {"Unclosed", "k", "v"},
        {"Missing", "k", ""},
    };
    for (const auto& c : cases)
        EXPECT_EQ(file.value(c.section, c.key), c.value) << c.section << "/" << c.key;
    EXPECT_EQ(file.sectionNames(), QStringList({"Connection0", "Connection1", "connection2",
                                                "Connection0", "Unclosed"}));
    EXPECT_FALSE(file.listsSection("connection0"));
}

TEST(ProfileFile, SectionListStopsAt16384Bytes) {
    QByteArray text;
    for (int i = 0; i < 3000; ++i) // "[S0000]" ...: 5 + 1 bytes each in the list
        text += "[S" + QByteArray::number(i).rightJustified(4, '0') + "]\n";
    const QStringList names = ProfileFile::parse(text).sectionNames();
    EXPECT_EQ(names.size(), (16384 - 1) / 6);
    EXPECT_EQ(names.last(), "S2729");
}

TEST(MountTable, ParsesMountInfoAndFindsTheHoldingMount) {
    const QByteArray info =
        "22 1 8:1 / / rw,relatime shared:1 - ext4 /dev/sda1 rw\n"
        "40 22 0:40 / /mnt/studio\\040share rw master:3 - cifs //srv/share rw,vers=3.0\n"
        "41 22 0:41 / /mnt/nfs rw - nfs4 srv:/export rw\n"
        "garbage line\n"
        "42 22 0:42 / /home/u/remote rw - fuse.sshfs u@srv:/ rw\n";
    const auto mounts = plumvale::files::parseMountInfo(info);
    ASSERT_EQ(mounts.size(), 4u);
    EXPECT_EQ(mounts[1].folder, "/mnt/studio share");
    EXPECT_EQ(mounts[1].source, "//srv/share");
    const struct {
        const char* path;
        const char* type;
    } cases[] = {{"/mnt/studio share/a", "cifs"},
                 {"/mnt/studio sharex", "ext4"},
                 {"/mnt/nfs", "nfs4"},
                 {"/home/u/remote/x/y", "fuse.sshfs"},
                 {"/etc", "ext4"}};
    for (const auto& c : cases) {
        const plumvale::files::Mount* m = plumvale::files::mountOf(mounts, c.path);
        ASSERT_NE(m, nullptr) << c.path;
        EXPECT_EQ(m->type, c.type) << c.path;
    }
    for (const char* network : {"cifs", "nfs4", "fuse.sshfs", "smb3"})
        EXPECT_TRUE(plumvale::files::isNetworkFileSystem(network)) << network;
    for (const char* local : {"ext4", "tmpfs", "overlay", "fuse.portal"})
        EXPECT_FALSE(plumvale::files::isNetworkFileSystem(local)) << local;
}

// A workstation: one share mounted by fstab, one share mounted nowhere, one listed after
// the first failure, a drive letter, and a database known under two more names.
class Remapper : public ::testing::Test {
protected:
    void SetUp() override {
        ASSERT_TRUE(QDir(tmp.path()).mkpath("mnt/share/scenes"));
        ASSERT_TRUE(QDir(tmp.path()).mkpath("mnt/other"));
        ASSERT_TRUE(QDir(tmp.path()).mkpath("db"));
        writeFile(tmp.path() + "/orvacfg.ini",
                  "[Connection0]\nSharename=\\\\SRV\\Share\nMountPoint=" +
                      QFile::encodeName(mount) + "\nDrive=S:\nPassword=secret\n" +
                      "[Connection1]\nSharename=\\\\nomount\\share\n"
                      "[Connection2]\nSharename=\\\\other\\share\nMountPoint=" +
                      QFile::encodeName(tmp.path() + "/mnt/other") + "\n");
        writeFile(db + "/Manager.conf", "scene_dir_pattern = \\\\srv\\orva_db ; P:/orva\n");
        savedDatabase = BAPP_SharedSpecialFolders()->database();
        BAPP_SharedSpecialFolders()->setDatabase(db);
        config = std::make_unique<ConfigGuard>(tmp.path() + "/orvacfg.ini");
    }
    void TearDown() override {
        config.reset();
        BAPP_SharedSpecialFolders()->setDatabase(savedDatabase);
    }

    QTemporaryDir tmp;
    const QString mount = tmp.path() + "/mnt/share";
    const QString db = tmp.path() + "/db";
    QString savedDatabase;
    std::unique_ptr<ConfigGuard> config;
};

TEST_F(Remapper, WindowsWrittenPathsNameLocalFolders) {
    RecordingInstall centre(true);
    const struct {
        const char* in;
        QString out;
    } cases[] = {
        {"\\\\SRV\\Share\\scenes\\a.scn", mount + "/scenes/a.scn"},
        {"//srv/share", mount},
        {"//srv/sharex/a", "//srv/sharex/a"}, // prefixes end at a separator
        {"s:/x", mount + "/x"},
        {"S:\\x\\y", mount + "/x/y"},
        {"/ORVA_DB/proj/a", db + "/proj/a"},
        {"/orva_db", db},
        {"//srv/orva_db/p", db + "/p"},
        {"p:/ORVA/q", db + "/q"},
        {"//other/share/y", tmp.path() + "/mnt/other/y"}, // listed after the failure
        {"/home/x", "/home/x"},
        {"C:\\temp\\x", "C:/temp/x"},
        {"", ""},
    };
    for (const auto& c : cases)
        EXPECT_EQ(oswRemapPath::RemapPath2(c.in, false), c.out) << c.in;

    // Connections: made once, the first failure stops the others, credentials never shown.
    ASSERT_EQ(centre.centre->reports.size(), 2u);
    EXPECT_EQ(centre.centre->reports[0].kind, 'D');
    EXPECT_EQ(centre.centre->reports[0].text, "Established connection to \\\\SRV\\Share.");
    EXPECT_EQ(centre.centre->reports[1].kind, 'E');
    EXPECT_EQ(centre.centre->reports[1].text,
              "Could not connect to \\\\nomount\\share. Network is unavailable or Bad Path.");
    EXPECT_EQ(oswRemapPath::connectionCount(), 1u);

    const std::vector<oswRemapPath::Rule> rules = oswRemapPath::rules();
    ASSERT_EQ(rules.size(), 6u);
    for (size_t i = 1; i < rules.size(); ++i)
        EXPECT_GE(rules[i - 1].from.size(), rules[i].from.size());
    for (const oswRemapPath::Rule& r : rules)
        EXPECT_FALSE(r.to.contains("secret"));
}

TEST_F(Remapper, LocalPathsGoBackToShares) {
    const struct {
        QString in;
        const char* out; // null: not under a share
    } cases[] = {
        {mount + "/scenes/a.scn", "//SRV/Share/scenes/a.scn"},
        {mount, "//SRV/Share"},
        {mount + "x/a", nullptr},
        {"s:\\x", "//SRV/Share/x"},
        {db + "/a", nullptr},
    };
    for (const auto& c : cases) {
        QString path = c.in;
        EXPECT_EQ(oswRemapPath::MakeUNCPath(path), c.out != nullptr) << c.in.toStdString();
        if (c.out) {
            EXPECT_EQ(path, c.out);
        }
    }
}

TEST(RemapConnections, EachFailureHasItsText) {
    QTemporaryDir tmp;
    ASSERT_TRUE(QDir(tmp.path()).mkpath("locked/inside"));
    writeFile(tmp.path() + "/file", "x");
    const struct {
        QString mountPoint;
        const char* text;
        bool needsNonRoot;
    } cases[] = {
        {tmp.path() + "/missing", "Could not connect to %1. Network is unavailable or Bad Path.",
         false},
        {tmp.path() + "/file", "Could not connect to %1. Network is unavailable or Bad Path.",
         false},
        {tmp.path() + "/locked/inside", "Could not connect to %1. Access Denied.", true},
        {tmp.path() + "/" + QString(300, 'n'),
         "Could not connect to %1. WNetAddConnection2 returned 0x24.", false}, // ENAMETOOLONG
    };
    QFile::setPermissions(tmp.path() + "/locked", QFileDevice::Permissions());
    for (const auto& c : cases) {
        if (c.needsNonRoot && oswUtil::AdminOrRoot()) continue; // root passes every check
        writeFile(tmp.path() + "/cfg.ini",
                  "[Connection7]\nSharename=\\\\s\\x\nMountPoint=" + c.mountPoint.toUtf8() + "\n");
        ConfigGuard config(tmp.path() + "/cfg.ini");
        RecordingInstall centre;
        oswRemapPath::RemapPath2("/a", false);
        ASSERT_EQ(centre.centre->reports.size(), 1u) << c.text;
        EXPECT_EQ(centre.centre->reports[0].text, QString(c.text).arg("\\\\s\\x"));
        EXPECT_EQ(oswRemapPath::connectionCount(), 0u);
    }
    QFile::setPermissions(tmp.path() + "/locked",
                          QFileDevice::ReadOwner | QFileDevice::WriteOwner | QFileDevice::ExeOwner);
}

TEST(RemapShortcuts, LinksAlongThePathAreResolvedThroughTheCache) {
    QTemporaryDir tmp;
    const QString t = tmp.path();
    ASSERT_TRUE(QDir(t).mkpath("real/sub"));
    ASSERT_TRUE(QDir(t).mkpath("elsewhere/sub"));
    ASSERT_TRUE(QFile::link(t + "/real", t + "/link"));
    ASSERT_TRUE(oswUtil::createShortcut(t + "/real", t + "/short.lnk"));
    ConfigGuard config("/nonexistent/orvacfg.ini");
    RecordingInstall centre; // no configuration: nothing is reported

    EXPECT_EQ(oswRemapPath::RemapPath2(t + "/link/sub/f", true), t + "/real/sub/f");
    EXPECT_EQ(oswRemapPath::RemapPath2(t + "\\short.lnk\\sub", true), t + "/real/sub");
    EXPECT_EQ(oswRemapPath::RemapPath2(t + "/link/sub/f", false), t + "/link/sub/f");

    // The cache keeps the old answer until it is cleared.
    ASSERT_TRUE(QFile::remove(t + "/link"));
    ASSERT_TRUE(QFile::link(t + "/elsewhere", t + "/link"));
    EXPECT_EQ(oswRemapPath::RemapPath2(t + "/link/sub", true), t + "/real/sub");
    oswRemapPath::ClearShortcutCache();
    EXPECT_EQ(oswRemapPath::RemapPath2(t + "/link/sub", true), t + "/elsewhere/sub");

    // A loop of links ends.
    ASSERT_TRUE(QFile::link(t + "/loop2", t + "/loop1"));
    ASSERT_TRUE(QFile::link(t + "/loop1", t + "/loop2"));
    EXPECT_FALSE(oswRemapPath::RemapPath2(t + "/loop1/x", true).isEmpty());
    EXPECT_TRUE(centre.centre->reports.empty());
}

TEST(oswRemapPath, SeparatorsAndLocalDrives) {
    QString q = "a\\b/c";
    oswRemapPath::BackSlashToSlash(q);
    EXPECT_EQ(q, "a/b/c");
    oswRemapPath::SlashToBackSlash(q);
    EXPECT_EQ(q, "a\\b\\c");
    char c[] = "x/y\\z";
    oswRemapPath::BackSlashToSlash(c);
    EXPECT_STREQ(c, "x/y/z");
    oswRemapPath::SlashToBackSlash(c);
    EXPECT_STREQ(c, "x\\y\\z");
    oswRemapPath::BackSlashToSlash(static_cast<char*>(nullptr));
    EXPECT_TRUE(oswRemapPath::isLocalDrive(QDir::tempPath()));
}
