// Lock owners and tickets: the shared ticket set, and the ticket's release at its end.
#include <PlumvaleBaseCore/text/TULock.h>

TULockTicketBase::~TULockTicketBase() = default;

TULockOwner::TULockOwner() : m_tickets(std::make_shared<std::set<TULockTicketBase*>>()) {}

TULockOwner::TULockOwner(const TULockOwner& other) = default;

TULockOwner& TULockOwner::operator=(const TULockOwner& other) {
    if (m_tickets != other.m_tickets) {
        releaseTickets();
        m_tickets = other.m_tickets;
    }
    return *this;
}

TULockOwner::~TULockOwner() {
    releaseTickets();
}

// Tickets that forgot their owner never call remove(), so the set is emptied here: a copy
// sharing it must not reach them later.
void TULockOwner::releaseTickets() {
    const std::set<TULockTicketBase*> tickets = std::move(*m_tickets);
    m_tickets->clear();
    for (TULockTicketBase* ticket : tickets)
        ticket->releaseOwner();
}

void TULockOwner::add(TULockTicketBase* ticket) {
    if (ticket) m_tickets->insert(ticket);
}

void TULockOwner::remove(TULockTicketBase* ticket) {
    m_tickets->erase(ticket);
}

TULockTicket::TULockTicket(const QString& key, TULockOwner* owner) : m_key(key), m_owner(owner) {
    if (m_owner) m_owner->add(this);
}

TULockTicket::~TULockTicket() {
    release();
}

bool TULockTicket::release() {
    if (!m_owner) return true;
    m_owner->remove(this);
    if (m_key.isEmpty()) return true;
    const bool released = m_owner->releaseLock(m_key);
    m_key.clear();
    m_owner = nullptr;
    return released;
}
