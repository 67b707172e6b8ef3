// B3D_Framework: the 3D framework singleton through which a renderer is plugged in.
#pragma once

#include <PlumvaleBaseCore/PlumvaleBaseCore_export.h>

/// A renderer's scene manager; its operations belong to the renderer that implements it.
class PLUMVALE_EXPORT B3D_SceneManager {
public:
    virtual ~B3D_SceneManager() = 0;
};

/// The 3D framework. The base one does nothing and makes no scene manager; a renderer
/// derives from it and installs itself once with setInstance() during start-up.
class PLUMVALE_EXPORT B3D_Framework {
public:
    virtual ~B3D_Framework();
    /// Prepares the framework from the command line; the base does nothing.
    virtual void init(int argc, char** argv);
    /// Prepares the framework's threads; the base does nothing.
    virtual void initThreading();
    /// A new scene manager owned by the caller; null from the base.
    virtual B3D_SceneManager* createSceneManager();

    /// The installed framework; when none is, a base framework is made, installed and kept
    /// until process exit.
    static B3D_Framework* instance();

protected:
    /// Installs `framework` (kept until process exit) and returns whether it is non-null,
    /// when none is installed yet. Otherwise prints "B3D_Framework::setInstance: Request to
    /// set a second B3D_Framework singleton" on standard output, without a line end, and
    /// returns false, the first staying. Main thread, during start-up.
    static bool setInstance(B3D_Framework* framework);
};
