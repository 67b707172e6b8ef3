// File-reference owners and their manager: registration and the forwarded notices.
#include <PlumvaleBaseCore/text/TUFileRef.h>

#include <algorithm>

TUFileRefOwner::TUFileRefOwner(const TUFileRefOwner& other) {
    if (other.m_manager) other.m_manager->add(this);
}

TUFileRefOwner& TUFileRefOwner::operator=(const TUFileRefOwner& other) {
    if (this != &other && m_manager != other.m_manager) {
        if (m_manager) m_manager->forget(this);
        m_manager = nullptr;
        if (other.m_manager) other.m_manager->add(this);
    }
    return *this;
}

TUFileRefOwner::~TUFileRefOwner() {
    if (m_manager) m_manager->forget(this);
}

TUFileRefMgr::~TUFileRefMgr() {
    for (const auto* list : {&m_owners, &m_removed})
        for (TUFileRefOwner* owner : *list)
            if (owner->fileRefMgr() == this) owner->setFileRefMgr(nullptr);
}

void TUFileRefMgr::add(TUFileRefOwner* owner) {
    if (!owner) return;
    TUFileRefMgr* previous = owner->fileRefMgr();
    if (previous && previous != this) previous->forget(owner);
    owner->setFileRefMgr(this);
    m_owners.push_back(owner);
    m_removed.erase(std::remove(m_removed.begin(), m_removed.end(), owner), m_removed.end());
}

void TUFileRefMgr::remove(TUFileRefOwner* owner) {
    const auto found = std::find(m_owners.begin(), m_owners.end(), owner);
    if (found == m_owners.end()) return;
    m_owners.erase(found);
    const bool stillListed = std::find(m_owners.begin(), m_owners.end(), owner) != m_owners.end();
    if (!stillListed && owner->fileRefMgr() == this) m_removed.push_back(owner);
}

void TUFileRefMgr::forget(TUFileRefOwner* owner) {
    for (auto* list : {&m_owners, &m_removed})
        list->erase(std::remove(list->begin(), list->end(), owner), list->end());
}

namespace {

// Calls `notice` on each owner registered when the notice began that is still registered
// when its turn comes: an owner may remove or delete another from inside its callback.
template <typename Notice>
void notifyOwners(const std::vector<TUFileRefOwner*>& owners, Notice notice) {
    const std::vector<TUFileRefOwner*> snapshot = owners;
    for (TUFileRefOwner* owner : snapshot)
        if (std::find(owners.begin(), owners.end(), owner) != owners.end()) notice(owner);
}

} // namespace

void TUFileRefMgr::moveDir(const QString& from, const QString& to, bool flag1, bool flag2) {
    notifyOwners(m_owners, [&](TUFileRefOwner* o) { o->moveDir(from, to, flag1, flag2); });
}

void TUFileRefMgr::moveFile(const QString& from, const QString& to) {
    notifyOwners(m_owners, [&](TUFileRefOwner* o) { o->moveFile(from, to); });
}

void TUFileRefMgr::deleteDir(const QString& dir) {
    notifyOwners(m_owners, [&](TUFileRefOwner* o) { o->deleteDir(dir); });
}
