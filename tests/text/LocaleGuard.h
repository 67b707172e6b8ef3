// Test helper: switches the C locale for one scope and restores it after.
#pragma once

#include <clocale>
#include <string>

class LocaleGuard {
public:
    /// ok() tells whether the locale exists on this machine.
    explicit LocaleGuard(const char* name) {
        const char* current = std::setlocale(LC_ALL, nullptr);
        m_saved = current ? current : "C";
        m_ok = std::setlocale(LC_ALL, name) != nullptr;
    }
    ~LocaleGuard() { std::setlocale(LC_ALL, m_saved.c_str()); }
    LocaleGuard(const LocaleGuard&) = delete;
    LocaleGuard& operator=(const LocaleGuard&) = delete;
    bool ok() const { return m_ok; }

private:
    std::string m_saved;
    bool m_ok = false;
};
