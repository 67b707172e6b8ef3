// PL_PostMessage: actions handed from any thread to the main thread through Qt's event queue.
#pragma once

#include <PlumvaleBaseCore/PlumvaleBaseCore_export.h>

/// An action to run once on the main thread. Owned by whoever holds it, and by the posting
/// machinery once posted, which destroys it after running it (or without running it).
class PLUMVALE_EXPORT PL_PostMessageAction {
public:
    virtual ~PL_PostMessageAction();
    /// The work, on the thread of the Qt application object.
    virtual void Execute() = 0;
};

/// Installs the receiving object on the Qt application object (as its event filter) and
/// registers the event type of posted actions; does nothing the second time. Call it on the
/// main thread once the application object exists.
PLUMVALE_EXPORT void PL_PostMessageInit();

/// Hands `action` over (null is ignored):
/// - without a Qt application object, runs it at once on this thread, then destroys it;
/// - after PL_PostMessageInit(), posts it; the caller returns at once and the action runs
///   on the main thread, then is destroyed;
/// - with an application object but before the init (or after the cleanup), destroys it
///   without running it, on purpose.
PLUMVALE_EXPORT void PL_PostMessage(PL_PostMessageAction* action);

/// Removes the receiving object; actions still queued are then destroyed unrun when their
/// events are delivered.
PLUMVALE_EXPORT void PL_PostMessageCleanup();
