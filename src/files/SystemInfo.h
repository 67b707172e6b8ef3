// Internal: the system queries behind oswUtil and the dynamic-library functions.
#pragma once

#include <QString>

#include <cstdint>
#include <string>
#include <vector>

namespace plumvale::files {

/// The machine's host name as the system gives it; false when it cannot tell.
bool hostName(std::string& out);

/// The first IPv4 address of `host` (the first address of any family when it has none),
/// as raw address bytes; false when the lookup fails.
bool firstHostAddress(const char* host, std::vector<unsigned char>& out);

/// The login name of the effective user; empty when the user database does not know it.
QString effectiveUserName();

/// Whether the process runs as the superuser.
bool isSuperUser();

/// Adds write permission for the owner to `path`: 0, or the negated system error.
int addOwnerWrite(const char* path);

/// Space of the file system holding `path`, in bytes.
struct DiskSpace {
    std::uint64_t total = 0;
    std::uint64_t available = 0; // to an unprivileged user
};
/// Fills `out` for `path`: 0, or the negated system error.
int diskSpace(const QString& path, DiskSpace& out);

/// Sets the file-creation mask; returns the previous one.
unsigned setFileCreationMask(unsigned mask);

/// Writes `bytes` as the whole new content of `path` (made with mode 0666 less the mask):
/// 0, or the negated system error.
int writeWholeFile(const QString& path, const QByteArray& bytes);

/// Makes the symbolic link `link` pointing at `target`: 0, or the negated system error.
int makeSymbolicLink(const QString& target, const QString& link);

/// The text of the process's mount table (Linux mountinfo); empty when unreadable.
QByteArray readMountTable();

/// Whether `path` is a reachable folder: 0 when it is, -ENOTDIR when it is something else,
/// the negated system error otherwise. Reaching it also wakes an automounter.
int probeFolder(const QString& path);

/// Physical and swap memory, in bytes; false when the system does not say.
struct MemoryStatus {
    std::uint64_t totalPhysical = 0;
    std::uint64_t availablePhysical = 0;
    std::uint64_t totalSwap = 0;
    std::uint64_t freeSwap = 0;
};
bool memoryStatus(MemoryStatus& out);

/// @{
/// The dynamic loader: open (null on failure), symbol, close (0 on success), and the
/// loader's last error text, cleared by reading it (empty when there is none).
void* openLibrary(const std::string& path);
void* librarySymbol(void* module, const char* name);
int closeLibrary(void* module);
std::string takeLibraryError();
/// @}

} // namespace plumvale::files
