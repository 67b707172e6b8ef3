// BAPP_CoreApplication: the console tool's application object.
#include <PlumvaleBaseCore/app/BAPP_CoreApplication.h>

BAPP_CoreApplication::BAPP_CoreApplication(int& argc, char** argv)
    : QCoreApplication(argc, argv), BAPP_Application() {}

BAPP_CoreApplication::BAPP_CoreApplication(int& argc, char** argv, BAPP_Arguments& arguments)
    : QCoreApplication(argc, argv), BAPP_Application(arguments) {}

BAPP_CoreApplication::~BAPP_CoreApplication() = default;
