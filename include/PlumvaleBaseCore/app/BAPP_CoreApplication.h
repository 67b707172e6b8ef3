// BAPP_CoreApplication: the application frame joined to QCoreApplication, for console tools.
#pragma once

#include <PlumvaleBaseCore/PlumvaleBaseCore_export.h>
#include <PlumvaleBaseCore/app/BAPP_Application.h>

#include <QCoreApplication>

/// A console tool's application object: QCoreApplication is built first, then the frame;
/// they are destroyed in the reverse order. BAPP_Application::instance() finds the frame
/// through Qt's meta-object cast.
class PLUMVALE_EXPORT BAPP_CoreApplication : public QCoreApplication, public BAPP_Application {
    Q_OBJECT
public:
    /// QCoreApplication(argc, argv), then the frame's default start-up (no arguments read).
    BAPP_CoreApplication(int& argc, char** argv);
    /// QCoreApplication(argc, argv), then the frame's full start-up over `arguments`, which
    /// loses the frame's options.
    BAPP_CoreApplication(int& argc, char** argv, BAPP_Arguments& arguments);
    ~BAPP_CoreApplication() override;

#if QT_VERSION >= QT_VERSION_CHECK(6, 0, 0)
    /// Qt 6 dropped trUtf8; tr reads UTF-8 already, so this is tr under its old name.
    static QString trUtf8(const char* text, const char* context = nullptr, int n = -1) {
        return tr(text, context, n);
    }
#endif
};
