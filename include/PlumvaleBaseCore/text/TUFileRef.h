// TUFileRefOwner and TUFileRefMgr: holders of file references and the manager that tells
// them of moves, renames and deletions.
#pragma once

#include <PlumvaleBaseCore/PlumvaleBaseCore_export.h>

#include <QString>

#include <vector>

class TUFileRefMgr;

/// An object holding file or folder references, told by its manager when they move or go.
///
/// Conventions: no locking, one thread. A copy of a registered owner is registered with the
/// same manager, after the existing owners; an owner that ends while it has a manager removes
/// itself from it.
class PLUMVALE_EXPORT TUFileRefOwner {
public:
    /// Not registered.
    TUFileRefOwner() = default;
    /// @{
    /// Registers with the source's manager, if any (assignment leaves its own manager first).
    TUFileRefOwner(const TUFileRefOwner& other);
    TUFileRefOwner& operator=(const TUFileRefOwner& other);
    /// @}
    /// Removes itself from its manager, if any.
    virtual ~TUFileRefOwner();

    /// A folder moved from `from` to `to`; the two flags mean what the concrete owners agree.
    virtual void moveDir(const QString& from, const QString& to, bool flag1, bool flag2) = 0;
    /// A folder was deleted.
    virtual void deleteDir(const QString& dir) = 0;
    /// A file moved or was renamed.
    virtual void moveFile(const QString& from, const QString& to) = 0;

    /// Sets the manager pointer only (the manager's add() calls it); null detaches.
    void setFileRefMgr(TUFileRefMgr* manager) { m_manager = manager; }
    /// Whether the manager pointer is set.
    bool isFileRefOwnerHasManager() const { return m_manager != nullptr; }
    /// The manager, or null.
    TUFileRefMgr* fileRefMgr() const { return m_manager; }

private:
    TUFileRefMgr* m_manager = nullptr;
};

/// Forwards move, rename and delete notices to its owners, in registration order.
///
/// Conventions: remove() keeps the owner's manager pointer, as its owner may still ask it;
/// the manager also remembers such owners, so that its end can clear every pointer to it.
class PLUMVALE_EXPORT TUFileRefMgr {
public:
    /// No owners.
    TUFileRefMgr() = default;
    /// Clears the manager pointer of every owner that points to it.
    ~TUFileRefMgr();
    TUFileRefMgr(const TUFileRefMgr&) = delete;
    TUFileRefMgr& operator=(const TUFileRefMgr&) = delete;

    /// Points `owner` at this manager and appends it (an owner added twice is told twice).
    void add(TUFileRefOwner* owner);
    /// Erases the first entry equal to `owner`, keeping the order of the rest; an owner not
    /// registered is ignored.
    void remove(TUFileRefOwner* owner);

    /// @{
    /// The same notice to every registered owner, in registration order. An owner removed
    /// (or destroyed) by an earlier owner's callback is skipped; one added is told next time.
    void moveDir(const QString& from, const QString& to, bool flag1, bool flag2);
    void moveFile(const QString& from, const QString& to);
    void deleteDir(const QString& dir);
    /// @}

    /// The registered owners, in registration order.
    const std::vector<TUFileRefOwner*>& owners() const { return m_owners; }

private:
    friend class TUFileRefOwner;
    void forget(TUFileRefOwner* owner);

    std::vector<TUFileRefOwner*> m_owners;
    std::vector<TUFileRefOwner*> m_removed; // removed, still pointing here
};
