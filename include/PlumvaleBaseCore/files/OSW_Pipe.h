// OSW_Pipe: a one-way channel of messages between processes, named or pseudo-anonymous.
#pragma once

#include <PlumvaleBaseCore/PlumvaleBaseCore_export.h>

#include <memory>

class PL_FileSpec;

/// A pipe of messages: each writeData is one message, and a read returns bytes of at most
/// one message; a message longer than the buffer continues in the following reads.
///
/// Conventions:
/// - A named pipe is a Unix-domain packet socket bound to the file-system name of the
///   PL_FileSpec (the server creates it; the name goes when a client is connected or the
///   server closes). The pseudo-anonymous pipe is named "anonymous_pipe_<pid>_<id>" in the
///   session's temporary folder, and connected at once.
/// - A handle is a descriptor number carried in a pointer.
/// - Failures print one line on standard output, "Failed to ... with error:\n(code) 'text'",
///   with the system's error code and text (a time-out is ETIMEDOUT); the pipe keeps the
///   handles it had. Nothing goes through the message centre.
/// - One message is limited by the socket buffer (about 4 MiB here).
/// - One thread at a time per object.
class PLUMVALE_EXPORT OSW_Pipe {
public:
    /// The two directions.
    enum Mode_t : int { Read = 0, Write = 1 };

    /// A closed pipe.
    OSW_Pipe();
    /// Closes both handles.
    ~OSW_Pipe();
    OSW_Pipe(const OSW_Pipe&) = delete;
    OSW_Pipe& operator=(const OSW_Pipe&) = delete;

    /// Makes a connected pipe: its read and write handles. False (a line printed) when the
    /// system refuses.
    bool createAnonymous();
    /// The server side of the named pipe `name` for `mode`; false when the pipe already
    /// holds a handle, the mode is not 0 or 1, or the system refuses.
    bool createNamedPipe(const PL_FileSpec& name, Mode_t mode);
    /// Connects: when the pipe holds the server handle of `mode`, waits for a client;
    /// otherwise opens `name` as the client for `mode`. False on failure.
    bool openNamedPipe(const PL_FileSpec& name, Mode_t mode);
    /// Adopts existing handles (a null pointer: none for that direction); false when the
    /// pipe already holds a handle.
    bool assign(void** read, void** write);

    /// One read of at most `n` bytes without a time limit: the count (0 when the writer has
    /// closed the pipe), or -1 on failure.
    int readData(void* buffer, unsigned n);
    /// As readData, waiting at most `timeoutMs` milliseconds: -1 when nothing came.
    int readData(void* buffer, unsigned n, unsigned timeoutMs);
    /// Writes `n` bytes as one message; false when there is no write handle or it fails.
    bool writeData(const void* buffer, unsigned n);

    /// @{
    /// The handle in `*out`; false when there is none or `out` is null.
    bool getReadHandle(void** out) const;
    bool getWriteHandle(void** out) const;
    /// @}
    /// @{
    /// Which handles are held.
    bool isOpened() const;
    bool isOpenedForReading() const;
    bool isOpenedForWriting() const;
    /// @}
    /// @{
    /// Closes the read handle, the write handle, or both.
    void closeRead();
    void closeWrite();
    void close();
    /// @}

private:
    struct Private;
    std::unique_ptr<Private> d;
};
