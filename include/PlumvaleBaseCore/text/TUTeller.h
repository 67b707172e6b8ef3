// TUTeller and TUListener: a teller notifies the listeners subscribed to it.
#pragma once

#include <PlumvaleBaseCore/PlumvaleBaseCore_export.h>

#include <memory>
#include <set>

class TUTeller;

/// Receives the notifications of the tellers it phoned. A plain listener must hang up from
/// its tellers before it dies.
class PLUMVALE_EXPORT TUListener {
public:
    /// Does not hang up by itself: a plain listener hangs up before it dies.
    virtual ~TUListener();
    /// The notification, called by TUTeller::tell().
    virtual void listen(TUTeller* teller) = 0;
    /// Called by a teller being destroyed; nothing in TUListener.
    virtual void tellerDestroyed(TUTeller* teller);

    /// Subscribes to `teller` (a second call changes nothing).
    virtual void phone(TUTeller* teller);
    /// Unsubscribes from `teller`. Must not be called for the teller that is telling.
    virtual void hangUp(TUTeller* teller);
};

/// Keeps the listeners subscribed to it, ordered by address, and notifies them all.
/// Copies share one set of listeners: tellers are meant to be held by reference.
class PLUMVALE_EXPORT TUTeller {
public:
    /// A teller with no listeners.
    TUTeller();
    /// Tells every listener tellerDestroyed(this).
    virtual ~TUTeller();

protected:
    /// Notifies every subscribed listener in set order.
    void tell();

private:
    friend class TUListener;
    void registerCB(TUListener* listener) { m_listeners->insert(listener); }
    void unregisterCB(TUListener* listener) { m_listeners->erase(listener); }

    std::shared_ptr<std::set<TUListener*>> m_listeners;
};

/// A listener that remembers its tellers, so that either side may be destroyed first.
/// Copies share one set of tellers.
class PLUMVALE_EXPORT TUListenerWithAutoDisconnect : public TUListener {
public:
    /// A listener with no tellers.
    TUListenerWithAutoDisconnect();
    /// Hangs up from every teller it still records.
    ~TUListenerWithAutoDisconnect() override;

    /// @{
    /// Subscribe and unsubscribe as TUListener does, recording the tellers; hangUpAll() hangs
    /// up from every recorded teller.
    void phone(TUTeller* teller) override;
    void hangUp(TUTeller* teller) override;
    void hangUpAll();
    /// @}
    /// Forgets the dying teller.
    void tellerDestroyed(TUTeller* teller) override;

private:
    std::shared_ptr<std::set<TUTeller*>> m_tellers;
};
