// Tests of child processes and pipes, with real children (a helper program and /bin/sh).
#include "text/MessageTestSupport.h"

#include <PlumvaleBaseCore/files/OSW_Execute.h>
#include <PlumvaleBaseCore/files/OSW_Pipe.h>
#include <PlumvaleBaseCore/files/PL_FileSpec.h>

#include <gtest/gtest.h>

#include <QDir>
#include <QFileInfo>
#include <QTemporaryDir>

#include <fcntl.h>

#include <chrono>
#include <cstdint>
#include <cstring>
#include <set>
#include <string>
#include <thread>

namespace {

const QString kChild = QStringLiteral(PLUMVALE_PROC_CHILD);

// Runs the helper waited for, with pipes; returns its standard output.
QByteArray outputOf(const QStringList& args, int* code = nullptr) {
    OSW_Execute child;
    child.enableStdioPipes(true);
    const int exit = child.execm(QStringList{kChild} + args);
    if (code) *code = exit;
    QByteArray out;
    child.readFromStdout(out);
    return out;
}

bool endsWithin(OSW_Execute& child, std::chrono::milliseconds limit) {
    const auto deadline = std::chrono::steady_clock::now() + limit;
    while (child.isRunning()) {
        if (std::chrono::steady_clock::now() > deadline) return false;
        std::this_thread::sleep_for(std::chrono::milliseconds(2));
    }
    return true;
}

std::string failureLine(const char* action, int code) {
    return std::string("Failed to ") + action + " with error:\n(" + std::to_string(code) + ") '" +
           std::strerror(code) + "'\n";
}

} // namespace

TEST(OSW_Execute, ArgumentsArriveAsTheyStand) {
    const QStringList args{"a b", "\"quoted\"", "tab\there", "$HOME; rm -rf /",
                           "*",   "",           "\xc3\xa9"};
    const QByteArray out = outputOf(QStringList{"args"} + args);
    // With its size: Qt 5 would stop a QByteArray at its first NUL.
    QStringList received =
        QString::fromUtf8(out.constData(), static_cast<int>(out.size())).split(QLatin1Char('\0'));
    ASSERT_EQ(received.takeLast(), QString()); // after the last terminator
    EXPECT_EQ(received, args);

    OSW_Execute child;
    child.execm(kChild, "exit", "a b");
    EXPECT_EQ(child.commandLine(), kChild + " exit \"a b\" ");
    try {
        child.execm(QStringList());
        ADD_FAILURE() << "an empty list must throw";
    } catch (const OSW_ExecuteException& e) {
        EXPECT_EQ(e.errorCode(), 0);
        EXPECT_EQ(e.errorMessage().getText(), "OSW_Execute: no application to execute");
        EXPECT_FALSE(e.isSignal() || e.isStopped());
    }
}

TEST(OSW_Execute, ExitCodesWorkingFolderAndFailedStarts) {
    struct Case {
        QStringList args;
        int code;
    } cases[] = {
        {{kChild, "exit", "0"}, 0},       {{kChild, "exit", "3"}, 3},
        {{kChild, "exit", "255"}, 255},   {{kChild, "signal"}, 128 + 15}, // ended by SIGTERM
        {{"/bin/sh", "-c", "exit 7"}, 7}, {{"sh", "-c", "exit 9"}, 9},    // found in PATH
    };
    for (const Case& c : cases) {
        OSW_Execute child;
        EXPECT_EQ(child.execm(c.args), c.code) << c.args.join(' ').toStdString();
        EXPECT_NE(child.pid(), 0u);
        EXPECT_EQ(child.waitForProcEnd(), c.code); // collected once, remembered
        EXPECT_FALSE(child.isRunning());
    }
    OSW_Execute missing;
    EXPECT_EQ(missing.execm("/no/such/program", "x"), 0);
    EXPECT_EQ(missing.pid(), 0u);
    EXPECT_EQ(missing.waitForProcEnd(), 0);
    missing.kill(); // no child: nothing happens

    QTemporaryDir dir;
    OSW_Execute inFolder;
    inFolder.enableStdioPipes(true);
    inFolder.setWorkingDirectory(dir.path());
    EXPECT_EQ(inFolder.workingDirectory(), dir.path());
    EXPECT_EQ(inFolder.execm(kChild, "cwd"), 0);
    QByteArray cwd;
    inFolder.readFromStdout(cwd);
    EXPECT_EQ(QString::fromUtf8(cwd), QFileInfo(dir.path()).canonicalFilePath());
    inFolder.setWorkingDirectory(dir.filePath("missing"));
    EXPECT_EQ(inFolder.execm(kChild, "cwd"), 0);
    EXPECT_EQ(inFolder.pid(), 0u);
}

TEST(OSW_Execute, DetachedChildRunsUntilItEndsOrIsKilled) {
    OSW_Execute sleeper;
    sleeper.setDetached(true);
    EXPECT_TRUE(sleeper.detached());
    EXPECT_EQ(sleeper.execm(kChild, "sleep"), 0);
    EXPECT_TRUE(sleeper.isRunning());
    sleeper.kill();
    EXPECT_TRUE(endsWithin(sleeper, std::chrono::seconds(10)));
    EXPECT_EQ(sleeper.waitForProcEnd(), 128 + 9);
    sleeper.kill(); // collected: no signal goes to a pid that may be another's now

    OSW_Execute quick;
    quick.setDetached(true);
    quick.execm(kChild, "exit", "4");
    EXPECT_TRUE(endsWithin(quick, std::chrono::seconds(10))); // collected by isRunning
    EXPECT_EQ(quick.waitForProcEnd(), 4);
}

TEST(OSW_Execute, LargeStreamsNeverDeadlock) {
    // 10 MiB in, the same back on both output streams, through 1 MiB pipes.
    QByteArray data(10 << 20, Qt::Uninitialized);
    for (int i = 0; i < data.size(); ++i)
        data[i] = static_cast<char>(i * 131 + (i >> 9));
    OSW_Execute echo;
    echo.setDetached(true);
    echo.enableStdioPipes(true);
    echo.execm(kChild, "echo");
    EXPECT_EQ(echo.writeToStdin(data), static_cast<unsigned>(data.size()));
    EXPECT_EQ(echo.waitForProcEnd(), 0);
    QByteArray out, err;
    EXPECT_EQ(echo.readFromStdout(out), static_cast<unsigned>(data.size()));
    EXPECT_EQ(echo.readFromStderr(err), static_cast<unsigned>(data.size()));
    EXPECT_TRUE(out == data);
    EXPECT_TRUE(err == data);
    char none[8];
    EXPECT_EQ(echo.readFromStdout(sizeof none, none), 0u); // the end
    EXPECT_EQ(echo.writeToStdin(QByteArray("late")), 0u);  // the child has gone: no SIGPIPE

    // A waited-for child may write any amount.
    int code = -1;
    const QByteArray flood = outputOf({"flood", "5000000"}, &code);
    EXPECT_EQ(code, 0);
    EXPECT_EQ(flood.size(), 5000000);
}

TEST(OSW_Execute, ChildSeesNoDescriptorOfTheLibrary) {
    OSW_Pipe pipe;
    ASSERT_TRUE(pipe.createAnonymous());
    // What the child may see: its 0, 1, 2 and what the test's own parent left inheritable.
    std::set<int> expected{0, 1, 2};
    for (const QString& name :
         QDir("/proc/self/fd").entryList(QDir::AllEntries | QDir::System | QDir::NoDotAndDotDot)) {
        const int fd = name.toInt();
        const int flags = fcntl(fd, F_GETFD);
        if (flags >= 0 && !(flags & FD_CLOEXEC)) expected.insert(fd);
    }
    void *read = nullptr, *write = nullptr;
    ASSERT_TRUE(pipe.getReadHandle(&read) && pipe.getWriteHandle(&write));
    EXPECT_EQ(expected.count(static_cast<int>(reinterpret_cast<std::intptr_t>(read))), 0u);
    EXPECT_EQ(expected.count(static_cast<int>(reinterpret_cast<std::intptr_t>(write))), 0u);
    std::set<int> seen;
    for (const QByteArray& fd : outputOf({"fds"}).split(' '))
        if (!fd.isEmpty()) seen.insert(fd.toInt());
    EXPECT_EQ(seen, expected);
}

TEST(OSW_Execute, StdioMustBeEnabled) {
    RecordingInstall install(true);
    OSW_Execute child;
    char buffer[4];
    QByteArray out;
    EXPECT_EQ(child.readFromStdout(sizeof buffer, buffer), 0u);
    EXPECT_EQ(child.readFromStderr(out), 0u);
    EXPECT_EQ(child.writeToStdin(QByteArray("x")), 0u);
    ASSERT_EQ(install.centre->reports.size(), 3u); // one report per call
    EXPECT_EQ(install.centre->reports[0].kind, 'D');
    EXPECT_EQ(install.centre->reports[0].text,
              "Stdio communication has not been enabled for process");
}

TEST(OSW_Pipe, MessagesKeepTheirBoundaries) {
    OSW_Pipe pipe;
    ASSERT_TRUE(pipe.createAnonymous());
    EXPECT_TRUE(pipe.isOpenedForReading() && pipe.isOpenedForWriting());
    EXPECT_FALSE(pipe.createAnonymous()); // it holds its handles already
    const std::string big(3000, 'x');
    testing::internal::CaptureStdout();
    ASSERT_TRUE(pipe.writeData("hello", 5));
    ASSERT_TRUE(pipe.writeData(big.data(), 3000));
    ASSERT_TRUE(pipe.writeData("end", 3));
    char buffer[1024];
    EXPECT_EQ(pipe.readData(buffer, sizeof buffer), 5);
    int total = 0;
    for (int expected : {1024, 1024, 952}) {
        const int got = pipe.readData(buffer, sizeof buffer);
        EXPECT_EQ(got, expected);
        total += got;
    }
    EXPECT_EQ(total, 3000);
    EXPECT_EQ(pipe.readData(buffer, sizeof buffer, 1000), 3);
    EXPECT_EQ(std::string(buffer, 3), "end");
    EXPECT_EQ(testing::internal::GetCapturedStdout(), ""); // no failure line

    testing::internal::CaptureStdout();
    const auto start = std::chrono::steady_clock::now();
    EXPECT_EQ(pipe.readData(buffer, sizeof buffer, 50), -1);
    EXPECT_GE(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(45));
    pipe.closeRead();
    EXPECT_FALSE(pipe.writeData("x", 1)); // nobody reads any more: EPIPE, no signal
    EXPECT_EQ(testing::internal::GetCapturedStdout(),
              failureLine("read in pipe", ETIMEDOUT) + failureLine("write in pipe", EPIPE));
    EXPECT_EQ(pipe.readData(buffer, 1), -1); // no read handle

    // Handles pass to another pipe object.
    void* write = nullptr;
    EXPECT_FALSE(pipe.getReadHandle(&write));
    EXPECT_FALSE(pipe.getWriteHandle(nullptr));
    ASSERT_TRUE(pipe.getWriteHandle(&write));
    OSW_Pipe other;
    EXPECT_TRUE(other.assign(nullptr, &write));
    EXPECT_FALSE(other.assign(nullptr, &write));
    EXPECT_TRUE(other.isOpenedForWriting() && !other.isOpenedForReading());
    void* back = nullptr;
    EXPECT_TRUE(other.getWriteHandle(&back) && back == write);
    pipe.closeWrite(); // both held the descriptor; only one may close it
    void* none = nullptr;
    other.assign(&none, nullptr); // refused: `other` holds a handle
    EXPECT_TRUE(other.isOpenedForWriting());
    other.close();
    EXPECT_FALSE(other.isOpened());
}

TEST(OSW_Pipe, NamedPipeBetweenTwoProcesses) {
    QTemporaryDir dir;
    const PL_FileSpec name(UT_String(dir.filePath("pipe")));
    OSW_Pipe server;
    ASSERT_TRUE(server.createNamedPipe(name, OSW_Pipe::Read));
    EXPECT_FALSE(
        server.createNamedPipe(PL_FileSpec(UT_String(dir.filePath("second"))), OSW_Pipe::Read));
    EXPECT_FALSE(QFileInfo::exists(dir.filePath("second"))); // nothing was made

    OSW_Execute writer;
    writer.setDetached(true);
    writer.execm(kChild, "pipe-writer", dir.filePath("pipe"));
    ASSERT_TRUE(server.openNamedPipe(name, OSW_Pipe::Read)); // waits for the client
    EXPECT_FALSE(QFileInfo::exists(dir.filePath("pipe")));   // connected: the name went
    char buffer[1024];
    EXPECT_EQ(server.readData(buffer, sizeof buffer), 3);
    int total = 0;
    while (total < 3000)
        total += server.readData(buffer, sizeof buffer);
    EXPECT_EQ(total, 3000);
    EXPECT_EQ(server.readData(buffer, sizeof buffer), 5);
    EXPECT_EQ(std::string(buffer, 5), "three");
    EXPECT_EQ(writer.waitForProcEnd(), 0);
    EXPECT_EQ(server.readData(buffer, sizeof buffer), 0); // the writer closed

    testing::internal::CaptureStdout();
    OSW_Pipe client;
    EXPECT_FALSE(
        client.openNamedPipe(PL_FileSpec(UT_String(dir.filePath("absent"))), OSW_Pipe::Write));
    EXPECT_EQ(testing::internal::GetCapturedStdout(), failureLine("open named pipe", ENOENT));
    EXPECT_FALSE(client.createNamedPipe(name, static_cast<OSW_Pipe::Mode_t>(2)));
}
