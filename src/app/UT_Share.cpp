// Reference counts and the holder sharing behind weak pointers.
#include <PlumvaleBaseCore/app/UT_Share.h>

namespace {

// The one place a holder reference is taken and dropped.
void retain(UT_SharedWeakPtrHolder* holder) {
    if (holder) holder->IncRef();
}

void release(UT_SharedWeakPtrHolder* holder) {
    if (holder && holder->DecRef() == 0) delete holder;
}

// Replaces the reference in `slot` by one to `holder` (safe when they are the same).
void rebind(UT_SharedWeakPtrHolder*& slot, UT_SharedWeakPtrHolder* holder) {
    retain(holder);
    release(slot);
    slot = holder;
}

} // namespace

UT_ShareBase::~UT_ShareBase() = default;

UT_ShareBaseSafe::UT_ShareBaseSafe() : m_count(std::make_unique<std::atomic<std::uint32_t>>(0)) {}

UT_ShareBaseSafe::UT_ShareBaseSafe(const UT_ShareBaseSafe&) : UT_ShareBaseSafe() {}

UT_ShareBaseSafe::~UT_ShareBaseSafe() = default;

UT_SharedWeakPtrHolder::~UT_SharedWeakPtrHolder() = default;

UT_SharedWeakPtrBase::UT_SharedWeakPtrBase(UT_SharedWeakPtrHolder* holder) {
    rebind(m_holder, holder);
}

UT_SharedWeakPtrBase::UT_SharedWeakPtrBase(const UT_SharedWeakPtrBase& other)
    : UT_SharedWeakPtrBase(other.m_holder) {}

UT_SharedWeakPtrBase& UT_SharedWeakPtrBase::operator=(const UT_SharedWeakPtrBase& other) {
    rebind(m_holder, other.m_holder);
    return *this;
}

UT_SharedWeakPtrBase::~UT_SharedWeakPtrBase() {
    release(m_holder);
}

void UT_SharedWeakPtrBase::assign(UT_SharedWeakBase* object) {
    *this = object ? object->weakPtr() : UT_SharedWeakPtrBase();
}

UT_SharedWeakBase* UT_SharedWeakPtrBase::object() const {
    return m_holder ? m_holder->object() : nullptr;
}

UT_SharedWeakPtrImpl::~UT_SharedWeakPtrImpl() = default;

void UT_SharedWeakPtrImpl::setPtr(UT_SharedWeakBase* object) {
    if (m_ref.m_holder)
        m_ref.m_holder->setObject(object);
    else
        m_ref = UT_SharedWeakPtrBase(new UT_SharedWeakPtrHolder(object));
}

UT_SharedWeakBase::UT_SharedWeakBase() {
    m_impl.setPtr(this);
}

UT_SharedWeakBase::UT_SharedWeakBase(const UT_SharedWeakBase& other) : UT_ShareBaseSafe(other) {
    m_impl.setPtr(this);
}

UT_SharedWeakBase& UT_SharedWeakBase::operator=(const UT_SharedWeakBase& other) {
    if (this == &other) return *this;
    // Weak pointers of the old holder can no longer follow this object: they read null
    // rather than a pointer that would dangle once it is destroyed.
    if (m_impl.holder() && m_impl.holder()->object() == this) m_impl.holder()->setObject(nullptr);
    UT_ShareBaseSafe::operator=(other);
    m_impl = other.m_impl;
    return *this;
}

UT_SharedWeakBase::~UT_SharedWeakBase() {
    disconnectWeakPtrs();
}

UT_SharedWeakPtrBase UT_SharedWeakBase::weakPtr() const {
    return UT_SharedWeakPtrBase(m_impl.holder());
}

void UT_SharedWeakBase::disconnectWeakPtrs() {
    if (m_impl.holder()) m_impl.holder()->setObject(nullptr);
}
