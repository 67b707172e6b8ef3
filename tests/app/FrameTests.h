// What the frame tests' entry point recorded of the start-up it ran.
#pragma once

#include <PlumvaleBaseCore/app/BAPP_CoreApplication.h>

#include <QString>
#include <QStringList>

#include <string>

struct FrameStartUp {
    BAPP_CoreApplication* app = nullptr;
    QStringList left;    // the arguments the frame left to the tool
    QString langDir;     // the -langdir given: a scratch copy of the built .qm files
    std::string cLocale; // the C library's locale right after the start-up
    QStringList libraryPaths;
};

extern FrameStartUp g_startUp;
