// Tests of the special-folder resolution on real temporary installation trees.
#include <PlumvaleBaseCore/app/BAPP_Identity.h>
#include <PlumvaleBaseCore/app/BAPP_SpecialFolders.h>

#include <gtest/gtest.h>

#include <QDir>
#include <QTemporaryDir>
#include <QVariant>

#include <optional>
#include <utility>
#include <vector>

namespace {

// Sets or clears environment variables for a test and puts the old values back.
class EnvironmentGuard {
public:
    void set(const char* name, const char* value) {
        m_saved.emplace_back(name, qEnvironmentVariableIsSet(name)
                                       ? std::optional<QByteArray>(qgetenv(name))
                                       : std::nullopt);
        if (value)
            qputenv(name, value);
        else
            qunsetenv(name);
    }
    ~EnvironmentGuard() {
        for (auto it = m_saved.rbegin(); it != m_saved.rend(); ++it) {
            if (it->second)
                qputenv(it->first, *it->second);
            else
                qunsetenv(it->first);
        }
    }

private:
    std::vector<std::pair<const char*, std::optional<QByteArray>>> m_saved;
};

// A temporary installation made of the given relative folders.
class Tree {
public:
    explicit Tree(std::initializer_list<const char*> folders) {
        for (const char* f : folders)
            EXPECT_TRUE(QDir(m_dir.path()).mkpath(QLatin1String(f))) << f;
    }
    QString operator()(const char* relative = "") const {
        return *relative ? m_dir.path() + QLatin1Char('/') + QLatin1String(relative) : m_dir.path();
    }

private:
    QTemporaryDir m_dir;
};

} // namespace

TEST(BAPP_SpecialFolders, ResolvesAFullInstallation) {
    EnvironmentGuard env;
    env.set("ORVADB", "\\\\srv\\db");
    env.set("TEMP", nullptr);
    env.set("TMP", "/var/tmp");
    const QString code = BAPP_Identity::current().fullCode;
    Tree t({"X/linux/bin", "X/linux/lib", "X/linux/plugins", "X/etc", "X/lang", "X/resources",
            "X/Plugins", "X/win32/bin"});
    const QString help = t("X/help");
    QDir().mkpath(help + "/en/" + code);
    BAPP_SpecialFoldersImpl f(t("X/linux/bin/app"));
    const std::vector<std::pair<const char*, QString>> expected = {
        {"root", t("X")},
        {"config", t("X/etc")},
        {"etc", t("X/etc")},
        {"resource", t("X/resources")},
        {"lang", t("X/lang")},
        {"platform", t("X/linux")},
        {"bin", t("X/linux/bin")},
        {"app", t("X/linux/bin")},
        {"bin32", t("X/win32/bin")},
        {"library", t("X/linux/lib")},
        {"legacyPlugins", t("X/linux/plugins")},
        {"plugins", t("X/Plugins")},
        {"temp", "/var/tmp"},
        {"htmlHelp", help + "/en/" + code},
        {"userConfig", QString()},
    };
    for (const auto& [name, path] : expected)
        EXPECT_EQ(f.property(name).toString(), path) << name;
    EXPECT_EQ(f.help(), help + "/en");
    EXPECT_EQ(f.database(), "//srv/db");
    EXPECT_EQ(f.objectName(), "specialFolders");
}

TEST(BAPP_SpecialFolders, MissingFoldersResolveToTheirParents) {
    EnvironmentGuard env;
    env.set("TEMP", nullptr);
    env.set("TMP", nullptr);
    env.set("ORVADB", nullptr);
    Tree t({"X/linux/bin", "Tessary"});
    BAPP_SpecialFoldersImpl f(t("X/linux/bin/app"));
    EXPECT_EQ(f.lang(), t("X"));
    EXPECT_EQ(f.library(), t("X/linux"));
    EXPECT_EQ(f.legacyPlugins(), t("X"));
    EXPECT_EQ(f.bin32(), t("X"));
    EXPECT_EQ(f.temp(), "/tmp");
    EXPECT_EQ(f.database(), "/ORVA_DB");
    EXPECT_EQ(qgetenv("ORVADB"), "/ORVA_DB"); // children inherit the default

    // Plug-ins of a root named "...Tessary" live beside it.
    QDir().mkpath(t("Plugins"));
    BAPP_SpecialFoldersImpl tessary(t("Tessary/linux/bin/app"));
    EXPECT_EQ(tessary.root(), t("Tessary"));
    EXPECT_EQ(tessary.plugins(), t("Plugins"));

    BAPP_SpecialFoldersImpl bare("app");
    EXPECT_TRUE(bare.root().isEmpty());
    EXPECT_TRUE(bare.temp().isEmpty());
}

TEST(BAPP_SpecialFolders, OneApplicationLayoutCutsTheSuffix) {
    Tree t({"X/linux_vapo/bin", "Y/linux_quelin/bin", "Y/linux_quelin/plugins"});
    BAPP_SpecialFoldersImpl vapo(t("X/linux_vapo/bin/app"));
    EXPECT_EQ(vapo.platform(), t("X/linux"));
    EXPECT_EQ(vapo.bin(), t("X/linux_vapo/bin"));
    EXPECT_EQ(vapo.root(), t("X"));
    // With a plug-in folder it is an ordinary platform folder.
    BAPP_SpecialFoldersImpl quelin(t("Y/linux_quelin/bin/app"));
    EXPECT_EQ(quelin.platform(), t("Y/linux_quelin"));
    EXPECT_EQ(quelin.legacyPlugins(), t("Y/linux_quelin/plugins"));
}

TEST(BAPP_SpecialFolders, UserConfigJoinsWithOneSlash) {
    BAPP_SpecialFoldersImpl f("app");
    EXPECT_EQ(f.userConfig("a.ini"), QString());
    f.setUserConfig("/home/u/.cfg");
    EXPECT_EQ(f.userConfig("a.ini"), "/home/u/.cfg/a.ini");
    EXPECT_EQ(f.userConfig(""), "/home/u/.cfg");
    f.setUserConfig("/home/u/.cfg/");
    EXPECT_EQ(f.userConfig("a.ini"), "/home/u/.cfg/a.ini");
    f.setLang("/l");
    EXPECT_EQ(f.property("lang").toString(), "/l");
}

TEST(BAPP_SpecialFolders, SharedSetIsMadeOnce) {
    BAPP_SpecialFolders* shared = BAPP_SharedSpecialFolders();
    ASSERT_NE(shared, nullptr);
    EXPECT_EQ(shared, BAPP_SharedSpecialFolders());
    EXPECT_FALSE(shared->bin().isEmpty()); // the test executable's folder
}
