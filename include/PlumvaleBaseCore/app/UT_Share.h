// Intrusive reference counts (UT_ShareBase, UT_ShareBaseSafe) and weak pointers to objects
// deriving from UT_SharedWeakBase.
#pragma once

#include <PlumvaleBaseCore/PlumvaleBaseCore_export.h>

#include <atomic>
#include <cstdint>
#include <memory>

/// An intrusive reference count for objects used from one thread.
///
/// Conventions: the count starts at 0; IncRef() returns the count before the increment,
/// DecRef() the count after the decrement; whoever brings it to 0 deletes the object
/// (through the virtual destructor): the count never deletes anything itself. A copy of an
/// object is a new object, so its count starts at 0; assignment keeps each object's count.
class PLUMVALE_EXPORT UT_ShareBase {
public:
    /// A count of 0.
    UT_ShareBase() = default;
    /// A new object: its count is 0, whatever the source's.
    UT_ShareBase(const UT_ShareBase&) {}
    /// Keeps this object's count.
    UT_ShareBase& operator=(const UT_ShareBase&) { return *this; }
    virtual ~UT_ShareBase();

    /// Adds one reference; returns the count before it. Not thread-safe.
    std::uint32_t IncRef() const { return m_count++; }
    /// Drops one reference; returns the count after it (0: the caller deletes the object).
    std::uint32_t DecRef() const { return --m_count; }
    /// The current count.
    std::uint32_t GetRefCount() const { return m_count; }

private:
    mutable std::uint32_t m_count = 0;
};

/// As UT_ShareBase, with the count in its own allocation changed only atomically, so that
/// references may be taken and dropped from several threads at once.
class PLUMVALE_EXPORT UT_ShareBaseSafe {
public:
    /// A count of 0.
    UT_ShareBaseSafe();
    /// A new object: its count is 0, whatever the source's.
    UT_ShareBaseSafe(const UT_ShareBaseSafe&);
    /// Keeps this object's count.
    UT_ShareBaseSafe& operator=(const UT_ShareBaseSafe&) { return *this; }
    virtual ~UT_ShareBaseSafe();

    /// Adds one reference atomically; returns the count before it.
    std::uint32_t IncRef() const { return m_count->fetch_add(1, std::memory_order_relaxed); }
    /// Drops one reference atomically; returns the count after it (0: the caller deletes the
    /// object). The release and acquire order makes every earlier use visible to the deleter.
    std::uint32_t DecRef() const { return m_count->fetch_sub(1, std::memory_order_acq_rel) - 1; }
    /// The current count (a snapshot when other threads change it).
    std::uint32_t GetRefCount() const { return m_count->load(std::memory_order_acquire); }

private:
    std::unique_ptr<std::atomic<std::uint32_t>> m_count;
};

class UT_SharedWeakBase;

/// The record shared by an object and its weak pointers: the object, or null once it is gone
/// or disconnected. Counted; deleted with its last reference.
class PLUMVALE_EXPORT UT_SharedWeakPtrHolder : public UT_ShareBaseSafe {
public:
    /// A holder of `object` (may be null), with a count of 0.
    explicit UT_SharedWeakPtrHolder(UT_SharedWeakBase* object) : m_object(object) {}
    ~UT_SharedWeakPtrHolder() override;

    /// The object, or null.
    UT_SharedWeakBase* object() const { return m_object; }
    /// Replaces the object for every sharer of this holder.
    void setObject(UT_SharedWeakBase* object) { m_object = object; }

private:
    UT_SharedWeakBase* m_object;
};

/// A counted reference to a holder, the base of weak pointers. Copies share the holder.
/// Reading it while another thread destroys the object is a race: a weak pointer says
/// whether its object is gone, it does not keep it alive.
class PLUMVALE_EXPORT UT_SharedWeakPtrBase {
public:
    /// Refers to no holder: sees nothing.
    UT_SharedWeakPtrBase() = default;
    /// @{
    /// Share the source's holder; the destructor releases this reference.
    UT_SharedWeakPtrBase(const UT_SharedWeakPtrBase& other);
    UT_SharedWeakPtrBase& operator=(const UT_SharedWeakPtrBase& other);
    ~UT_SharedWeakPtrBase();
    /// @}

protected:
    /// Refers to `object`'s holder; to none for null.
    void assign(UT_SharedWeakBase* object);
    /// The holder's object: null when there is no holder, or the object is gone or was
    /// disconnected.
    UT_SharedWeakBase* object() const;

private:
    friend class UT_SharedWeakBase;
    friend class UT_SharedWeakPtrImpl;
    explicit UT_SharedWeakPtrBase(UT_SharedWeakPtrHolder* holder);

    UT_SharedWeakPtrHolder* m_holder = nullptr;
};

/// An object's own counted reference to its holder. Copies share the holder (the reference
/// is a UT_SharedWeakPtrBase, whose copies do).
class PLUMVALE_EXPORT UT_SharedWeakPtrImpl {
public:
    /// No holder.
    UT_SharedWeakPtrImpl() = default;
    /// @{
    /// Share the source's holder; the destructor releases this reference.
    UT_SharedWeakPtrImpl(const UT_SharedWeakPtrImpl& other) = default;
    UT_SharedWeakPtrImpl& operator=(const UT_SharedWeakPtrImpl& other) = default;
    virtual ~UT_SharedWeakPtrImpl();
    /// @}

    /// Points the holder at `object` in place, seen by every sharer; without a holder,
    /// creates one and refers to it.
    void setPtr(UT_SharedWeakBase* object);
    /// The holder, or null.
    UT_SharedWeakPtrHolder* holder() const { return m_ref.m_holder; }

private:
    UT_SharedWeakPtrBase m_ref;
};

/// An object that weak pointers can point at. Its weak pointers read null once it is
/// destroyed or disconnectWeakPtrs() was called.
///
/// Assignment is unusual, deliberately: the target adopts the source's holder, so from then
/// on its weakPtr() is the source's (and reads the source object), and destroying the target
/// disconnects that shared holder: the source's weak pointers then read null though the
/// source lives on. Weak pointers taken from the target before the assignment read null from
/// then on (they could not follow it). A copy is a new object with a holder of its own.
class PLUMVALE_EXPORT UT_SharedWeakBase : public UT_ShareBaseSafe {
public:
    /// Creates the holder pointing at this object.
    UT_SharedWeakBase();
    /// A new object with its own holder.
    UT_SharedWeakBase(const UT_SharedWeakBase& other);
    /// Adopts the source's holder (see the class comment).
    UT_SharedWeakBase& operator=(const UT_SharedWeakBase& other);
    /// Disconnects the holder it refers to, then releases it.
    ~UT_SharedWeakBase() override;

    /// The holder reference to copy into weak pointers.
    UT_SharedWeakPtrBase weakPtr() const;
    /// Every weak pointer sharing this object's holder reads null from now on; the object
    /// lives on.
    void disconnectWeakPtrs();

private:
    UT_SharedWeakPtrImpl m_impl;
};

/// The typed weak pointer of applications: `T` derives from UT_SharedWeakBase. Header-only,
/// not part of the exported interface.
template <class T>
class UT_WeakPtr : public UT_SharedWeakPtrBase {
public:
    /// Points at nothing.
    UT_WeakPtr() = default;
    /// Points at `object` (nothing for null).
    explicit UT_WeakPtr(T* object) { assign(object); }
    /// Now points at `object` (nothing for null).
    UT_WeakPtr& operator=(T* object) {
        assign(object);
        return *this;
    }
    /// The object, or null when it is gone or was disconnected.
    T* get() const { return static_cast<T*>(object()); }
    /// @{
    /// Whether get() is null; whether it is not.
    bool expired() const { return get() == nullptr; }
    explicit operator bool() const { return !expired(); }
    /// @}
    /// The object; undefined when expired.
    T* operator->() const { return get(); }
};
