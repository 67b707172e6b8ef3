// Entry point of the frame tests: the full start-up runs once, through BAPP_CoreApplication,
// with the options a user would give; the tests then check what it did.
#include "app/FrameTests.h"

#include <PlumvaleBaseCore/app/BAPP_Identity.h>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <clocale>

FrameStartUp g_startUp;

int main(int argc, char** argv) {
    testing::InitGoogleTest(&argc, argv);
    // The translations built with the tests, copied where the tests may add files.
    QTemporaryDir lang;
    for (const QString& name : QDir(QStringLiteral(PLUMVALE_TEST_LANG_DIR)).entryList({"*.qm"}))
        QFile::copy(QStringLiteral(PLUMVALE_TEST_LANG_DIR "/") + name, lang.filePath(name));
    // A locale other than "C", which QCoreApplication takes from the environment and the
    // frame must put back to "C".
    qputenv("LC_ALL", "C.UTF-8");

    BAPP_Arguments arguments(
        QStringList{"-lang", "fr", "-langdir", lang.path(), "-nologo", "keep", "-lang"});
    BAPP_CoreApplication app(argc, argv, arguments);
    g_startUp.app = &app;
    g_startUp.left = arguments.list();
    g_startUp.langDir = lang.path();
    g_startUp.cLocale = std::setlocale(LC_ALL, nullptr);
    g_startUp.libraryPaths = QCoreApplication::libraryPaths();
    return RUN_ALL_TESTS();
}
