// Tests of the application frame: start-up, language and translators, the external-events
// queue, the switches and the framework singleton.
#include "app/FrameTests.h"

#include <PlumvaleBaseCore/app.h>

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QLocale>
#include <QTemporaryDir>
#include <QTranslator>

#include <thread>

namespace {

// Restores the default locale and OSW_Lang's language after a test that changes them.
class LocaleGuard {
public:
    ~LocaleGuard() {
        OSW_Lang::setDefaultLanguage(m_language);
        QLocale::setDefault(m_locale);
    }

private:
    QLocale m_locale;
    QString m_language = OSW_Lang::language();
};

void touch(const QString& path, const QByteArray& bytes = QByteArray()) {
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly)) << path.toStdString();
    file.write(bytes);
}

} // namespace

TEST(BAPP_Application, StartUpConsumesItsOptionsAndSetsTheLanguage) {
    EXPECT_EQ(g_startUp.left, (QStringList{"keep", "-lang"}));
    EXPECT_EQ(g_startUp.app->requestedLanguage(), "fr");
    EXPECT_TRUE(g_startUp.app->noLogo());
    EXPECT_EQ(BAPP_Application::languagesPreference(), QStringList{"fr"});
    EXPECT_EQ(BAPP_SharedSpecialFolders()->lang(), g_startUp.langDir);
    // "qt_fr.qm" is not there; the application's own translation is.
    ASSERT_EQ(g_startUp.app->translators().size(), 1u);
    EXPECT_EQ(QCoreApplication::translate("FrameTest", "Hello"), "Bonjour");
    EXPECT_EQ(g_startUp.cLocale, "C");
    EXPECT_EQ(g_startUp.libraryPaths,
              QStringList{BAPP_SharedSpecialFolders()->library() + "/qt/plugins"});
    EXPECT_TRUE(BAPP_Application::isMainThread());
    EXPECT_EQ(BAPP_Application::instance(), static_cast<BAPP_Application*>(g_startUp.app));
    QStringList codes;
    g_startUp.app->languagesPreference(codes);
    EXPECT_EQ(codes, QStringList{"fr"});
}

TEST(BAPP_Application, ChangeLanguageAddsTranslatorsOfTheNewLanguage) {
    LocaleGuard guard;
    const QString dir = g_startUp.langDir;
    QFile::copy(dir + "/frame_de.qm", dir + "/PlumvaleWhoAmI_de.qm");
    const std::size_t before = g_startUp.app->translators().size();
    g_startUp.app->changeLanguage("de");
    EXPECT_EQ(QLocale().language(), QLocale::German);
    EXPECT_EQ(BAPP_Application::languagesPreference(), QStringList{"de"});
    EXPECT_EQ(g_startUp.app->translators().size(), before + 1);
    EXPECT_EQ(QCoreApplication::translate("FrameTestDe", "Hello"), "Hallo");

    // A file that is there but is no translation: refused silently, nothing recorded.
    touch(dir + "/broken_de.qm", "not a catalogue");
    EXPECT_EQ(BAPP_Application::findTranslator("broken", QString()), "broken_de");
    EXPECT_FALSE(g_startUp.app->addTranslator("broken", QString()));
    EXPECT_FALSE(g_startUp.app->addTranslator("absent", dir));
    EXPECT_EQ(g_startUp.app->translators().size(), before + 1);
    g_startUp.app->changeLanguage("fr");
}

TEST(OSW_Lang, PreferenceListsAndTranslatorSearch) {
    LocaleGuard guard;
    QTemporaryDir dir;
    struct Case {
        const char* locale;
        QStringList preference;
        QStringList files;
        const char* found;
    } cases[] = {
        {"fr_CA", {"fr_CA", "fr", "en"}, {"base_fr.qm", "base_en.qm"}, "base_fr"},
        {"fr_CA", {"fr_CA", "fr", "en"}, {"base_de.qm"}, ""}, // the search stops at "en"
        {"fr_CA", {"fr_CA", "fr", "en"}, {"base_en.qm"}, "base_en"},
        {"en_US", {"en_US", "en"}, {}, ""},
        {"en_US", {"en_US", "en"}, {"base_en.qm", "base_en_US.qm"}, "base_en_US"},
        {"de_DE", {"de_DE", "de", "en"}, {"base_de.qm", "base_fr.qm"}, "base_de"},
        {"C", {"C", "en"}, {"base_en.qm"}, "base_en"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.locale);
        QDir(dir.path()).removeRecursively();
        QDir().mkpath(dir.path());
        for (const QString& f : c.files)
            touch(dir.path() + "/" + f);
        OSW_Lang::setDefaultLanguage(c.locale);
        EXPECT_EQ(OSW_Lang::language(), c.locale);
        EXPECT_EQ(OSW_Lang::languagesPreference(), c.preference);
        EXPECT_EQ(OSW_Lang::findTranslator("base", dir.path()), c.found);
    }
}

TEST(OSW_Lang, MenuNamesAndIdeographicLanguages) {
    LocaleGuard guard;
    const QString french = QStringLiteral("Fran") + QChar(0x00E7) + QStringLiteral("ais");
    const QString chinese = QString(QChar(0x4E2D)) + QChar(0x6587);
    struct Case {
        const char* locale;
        QStringList names;
        bool ideographic;
    } cases[] = {
        {"zh_CN", {chinese, "English"}, true}, {"en_GB", {"English"}, false},
        {"fr_FR", {french, "English"}, false}, {"de_DE", {"English"}, false},
        {"ja_JP", {"English"}, true},          {"ko_KR", {"English"}, true},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.locale);
        OSW_Lang::setDefaultLanguage(c.locale);
        EXPECT_EQ(OSW_Lang::systemLanguagesNames(), c.names);
        EXPECT_EQ(OSW_Lang::isIdeographicLanguage(), c.ideographic);
        EXPECT_EQ(BAPP_Application::isIdeographicLanguage(), c.ideographic);
    }
}

TEST(OSW_Lang, LoadsFromTheLanguageFolderOrTheFakeOne) {
    LocaleGuard guard;
    const QString lang = BAPP_SharedSpecialFolders()->lang();
    ASSERT_TRUE(QDir(lang).mkpath("de") && QDir(lang).mkpath("fake"));
    QFile::copy(lang + "/frame_de.qm", lang + "/de/menus_de.qm");
    QFile::copy(lang + "/frame_de.qm", lang + "/fake/menus_fake.qm");
    touch(lang + "/de/broken_de.qm", "garbage");

    OSW_Lang::setDefaultLanguage("de");
    EXPECT_TRUE(OSW_Lang::loadTranslator("menus", QString(), false));
    EXPECT_FALSE(OSW_Lang::isFakeTranslation());
    EXPECT_TRUE(OSW_Lang::loadTranslator("menus", QString(), true));
    EXPECT_TRUE(OSW_Lang::isFakeTranslation());
    EXPECT_FALSE(OSW_Lang::loadTranslator("broken", QString(), false));
    EXPECT_FALSE(OSW_Lang::isFakeTranslation());
    EXPECT_FALSE(OSW_Lang::loadTranslator("absent", QString(), true)); // no absent_fake.qm
    OSW_Lang::setDefaultLanguage("it");
    EXPECT_FALSE(OSW_Lang::loadTranslator("menus", QString(), false)); // no "it" folder
}

namespace {

struct RecordingHandler : OSW_OpenDocumentHandler {
    QStringList opened;
    bool canOpenDocument(const QString&) const override { return true; }
    void openDocument(const QString& name) override { opened.append(name); }
};

} // namespace

// One test, in order: the queue is a process-wide singleton.
TEST(OSW_ExternalEvents, PendingNamesReachTheHandlerInOrder) {
    OSW_ExternalEvents::addPending("early");
    OSW_ExternalEvents* events = OSW_ExternalEvents::shared();
    EXPECT_TRUE(OSW_ExternalEvents::pending().isEmpty()); // creation empties the list
    EXPECT_EQ(events, OSW_ExternalEvents::shared());

    for (const char* name : {"a", "b", "c"})
        OSW_ExternalEvents::addPending(name);
    EXPECT_EQ(OSW_ExternalEvents::getInputFileName(), "a"); // the others are dropped
    EXPECT_TRUE(OSW_ExternalEvents::getInputFileName().isEmpty());

    OSW_ExternalEvents::addPending("x");
    OSW_ExternalEvents::addPending("y");
    RecordingHandler handler;
    events->setOpenDocumentHandler(&handler);
    EXPECT_EQ(handler.opened, (QStringList{"x", "y"}));
    EXPECT_TRUE(OSW_ExternalEvents::pending().isEmpty());
    OSW_ExternalEvents::addPending("z"); // straight through
    EXPECT_EQ(handler.opened, (QStringList{"x", "y", "z"}));
    EXPECT_EQ(events->documentHandler(), &handler);

    events->setOpenDocumentHandler(nullptr);
    OSW_ExternalEvents::addPending("later");
    EXPECT_EQ(OSW_ExternalEvents::pending(), QStringList{"later"});
    EXPECT_EQ(OSW_ExternalEvents::getInputFileName(), "later");
}

TEST(ST_Params, DefaultsAndTheStopRequestSeenAcrossThreads) {
    EXPECT_TRUE(ST_ColorRecovery::isColorRecovery() && ST_ColorRecovery::isDelayedColorRecovery());
    EXPECT_FALSE(ST_ColorRecovery::isUseElementPaletteList() ||
                 ST_BatchParams::isBatchRendering() || ST_BatchParams::isBatchScripting() ||
                 ST_GraphicsParams::bitmapPremultiplyAlpha() ||
                 ST_GraphicsParams::isRealTimeAntialiasing());
    EXPECT_TRUE(ST_ServerInfo::serverInfo().isEmpty() && !ST_ServerInfo::serverCallBack());
    ST_ColorRecovery::setColorRecovery(false);
    EXPECT_TRUE(!ST_ColorRecovery::isColorRecovery() && ST_ColorRecovery::isDelayedColorRecovery());
    ST_ColorRecovery::setColorRecovery(true);

    EXPECT_FALSE(TUIsStopRender());
    std::thread([] { TUStopRender(); }).join();
    EXPECT_TRUE(TUIsStopRender());
}

namespace {

struct Renderer : B3D_Framework {
    static bool install(B3D_Framework* framework) { return setInstance(framework); }
};

} // namespace

TEST(B3D_Framework, TheFirstInstalledFrameworkStays) {
    EXPECT_FALSE(Renderer::install(nullptr)); // the slot stays empty
    B3D_Framework* base = B3D_Framework::instance();
    ASSERT_NE(base, nullptr);
    EXPECT_EQ(base->createSceneManager(), nullptr);
    EXPECT_EQ(B3D_Framework::instance(), base);

    auto* second = new Renderer;
    testing::internal::CaptureStdout();
    EXPECT_FALSE(Renderer::install(second));
    EXPECT_EQ(testing::internal::GetCapturedStdout(),
              "B3D_Framework::setInstance: Request to set a second B3D_Framework singleton");
    EXPECT_EQ(B3D_Framework::instance(), base);
    delete second; // refused: still the caller's
}

TEST(BAPP_Application, PluginManagerIsAskedOfThePluginLibrary) {
    // The test runs with the stand-in library on the loader's path.
    PLUG_Manager* manager = g_startUp.app->pluginManager();
    EXPECT_EQ(manager, reinterpret_cast<PLUG_Manager*>(BAPP_SharedSpecialFolders()));
}
