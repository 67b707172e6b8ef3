// Test entry point of the message tests: records what needs the absence of an application
// object, then runs every test inside a QCoreApplication on a recorded main thread.
#include "text/MessageTestSupport.h"

#include <PlumvaleBaseCore/app/BAPP_Application.h>

#include <QCoreApplication>

#include <gtest/gtest.h>

MSG_Text g_textMadeBeforeApplication;

int main(int argc, char** argv) {
    // Latin-1 source bytes: without an application both fields are the Latin-1 reading.
    g_textMadeBeforeApplication = MSG_Text("TUMessage", "caf\xe9");
    QCoreApplication app(argc, argv);
    BAPP_Application::setupMainThread();
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
