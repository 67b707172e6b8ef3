// TULockOwner and TULockTicket: named locks granted by an owner, held through tickets.
#pragma once

#include <PlumvaleBaseCore/PlumvaleBaseCore_export.h>
#include <PlumvaleBaseCore/app/UT_Share.h>

#include <QString>

#include <memory>
#include <set>

/// What an owner's registered tickets must offer: forgetting the owner when it dies.
class PLUMVALE_EXPORT TULockTicketBase {
public:
    virtual ~TULockTicketBase();
    /// Called by a dying owner: the ticket must no longer call it.
    virtual void releaseOwner() = 0;
};

/// Grants named locks (keys are texts) by its own policy and knows the live tickets that
/// hold them, so that an owner and its tickets may end in either order.
///
/// Conventions: the owner takes no lock; it is used from one thread, or the concrete owner
/// serialises access itself. Copies share one set of tickets. When an owner ends (or is
/// assigned another's set) every ticket of its set forgets its owner, and the set is left
/// empty for the copies that still share it: those tickets then release nothing. The owner
/// does not release the locks themselves when it ends.
class PLUMVALE_EXPORT TULockOwner {
public:
    /// An owner's answer to a request; concrete owners may give further meanings to values
    /// above LockError.
    enum LockResult_t {
        /// The lock is now held by the caller.
        LockGranted = 0,
        /// Someone else holds the lock.
        LockRefused = 1,
        /// The owner could not decide (its storage failed, for instance).
        LockError = 2
    };

    /// An owner with an empty set of tickets.
    TULockOwner();
    /// @{
    /// Shares the source's set of tickets; assignment first lets the tickets of its old set
    /// go, as destruction does.
    TULockOwner(const TULockOwner& other);
    TULockOwner& operator=(const TULockOwner& other);
    /// @}
    /// Makes every registered ticket forget its owner, in set order.
    virtual ~TULockOwner();

    /// The concrete owner's answer to a request for `key`.
    LockResult_t getLock(const QString& key) { return acquire(key); }
    /// The concrete owner's release of `key`: false when it refuses or did not hold it.
    bool releaseLock(const QString& key) { return release(key); }
    /// The concrete owner's forced release of `key`, whoever holds it.
    bool forceReleaseLock(const QString& key) { return forceRelease(key); }

    /// Registers a live ticket; adding one twice keeps one entry.
    void add(TULockTicketBase* ticket);
    /// Forgets a ticket; one not registered is ignored.
    void remove(TULockTicketBase* ticket);
    /// How many tickets are registered in the (shared) set.
    int ticketCount() const { return static_cast<int>(m_tickets->size()); }

protected:
    /// @{
    /// The policy of the concrete owner.
    virtual LockResult_t acquire(const QString& key) = 0;
    virtual bool release(const QString& key) = 0;
    virtual bool forceRelease(const QString& key) = 0;
    /// @}

private:
    void releaseTickets();

    std::shared_ptr<std::set<TULockTicketBase*>> m_tickets;
};

/// A holder's scoped proof of one lock granted by an owner: made after the owner granted
/// it, it acquires nothing itself and releases the lock when it ends. Shared through counted
/// pointers (UT_ShareBaseSafe); not copyable, since a copy would release twice.
class PLUMVALE_EXPORT TULockTicket : public UT_ShareBaseSafe, public TULockTicketBase {
public:
    /// Records `key` and `owner` and registers with the owner when it is not null.
    TULockTicket(const QString& key, TULockOwner* owner);
    /// Unregisters and, when the key is not empty, asks the owner to release it; with no
    /// owner (null from the start, or dead) it calls nothing.
    ~TULockTicket() override;
    TULockTicket(const TULockTicket&) = delete;
    TULockTicket& operator=(const TULockTicket&) = delete;

    /// The lock's name (empty once released).
    const QString& key() const { return m_key; }
    /// The owner, or null once released or once the owner has died.
    TULockOwner* owner() const { return m_owner; }
    /// Forgets the owner without calling it.
    void releaseOwner() override { m_owner = nullptr; }

private:
    bool release();

    QString m_key;
    TULockOwner* m_owner;
};
