// Tests of the termination cleaner: in-process recording, and child processes ended by
// exit and by each signal it handles.
#include <PlumvaleBaseCore/app/CU_TerminationCleaner.h>

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSharedMemory>
#include <QTemporaryDir>

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <string>
#include <thread>
#include <vector>

extern char** environ;

namespace {

QStringList g_warnings;
volatile std::sig_atomic_t g_usr2 = 0;

void onUsr2(int sig) {
    g_usr2 = sig;
}

void recordWarning(QtMsgType type, const QMessageLogContext&, const QString& text) {
    if (type == QtWarningMsg) g_warnings.append(text);
}

struct ChildResult {
    int status = -1;
    std::string standardError;
};

// Runs the helper with its standard error in a file; kills it after 30 s so that a hang
// fails the test instead of stalling it.
ChildResult runChild(const char* how, const QString& dir, const QString& key) {
    const std::string errPath = (dir + "/stderr.txt").toStdString();
    const std::string dirText = dir.toStdString(), keyText = key.toStdString();
    // Sanitizers keep their hands off the faults, so the child dies as a plain build would;
    // options already set (a test preset's) are kept before ours, which then win.
    const std::string hands = ":handle_segv=0:handle_abort=0:handle_sigill=0";
    std::string asan = "ASAN_OPTIONS=" + hands, ubsan = "UBSAN_OPTIONS=" + hands;
    std::vector<std::string> env;
    for (char** e = environ; *e; ++e) {
        const std::string entry = *e;
        if (entry.rfind("ASAN_OPTIONS=", 0) == 0)
            asan = entry + hands;
        else if (entry.rfind("UBSAN_OPTIONS=", 0) == 0)
            ubsan = entry + hands;
        else
            env.push_back(entry);
    }
    env.push_back(asan);
    env.push_back(ubsan);
    std::vector<char*> envp;
    for (std::string& e : env)
        envp.push_back(e.data());
    envp.push_back(nullptr);
    char* argv[] = {const_cast<char*>(PLUMVALE_CLEANER_CHILD), const_cast<char*>(how),
                    const_cast<char*>(dirText.c_str()), const_cast<char*>(keyText.c_str()),
                    nullptr};
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, 2, errPath.c_str(), O_WRONLY | O_CREAT | O_TRUNC,
                                     0600);
    pid_t pid = -1;
    ChildResult result;
    const int spawned = posix_spawn(&pid, argv[0], &actions, nullptr, argv, envp.data());
    posix_spawn_file_actions_destroy(&actions);
    if (spawned != 0) return result;
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(30);
    while (waitpid(pid, &result.status, WNOHANG) == 0) {
        if (std::chrono::steady_clock::now() > deadline) {
            kill(pid, SIGKILL);
            waitpid(pid, &result.status, 0);
            ADD_FAILURE() << how << ": the child hung";
            break;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
    QFile err(QString::fromStdString(errPath));
    if (err.open(QIODevice::ReadOnly)) result.standardError = err.readAll().toStdString();
    err.close();
    QFile::remove(err.fileName());
    return result;
}

} // namespace

TEST(CU_TerminationCleaner, EveryEndCleansUp) {
    struct Case {
        const char* how;
        int exitStatus; // -1: ended by `signal`
        int signal;
        const char* standardError;
    } cases[] = {
        {"exit", 0, 0, ""},
        {"term", 255, 0, "Terminated\n"},
        {"int", 255, 0, ""},
        {"previous", 3, 0, "previous\n"}, // the earlier handler ran, and the process went on
        {"abort", -1, SIGABRT, ""},
        {"ill", -1, SIGILL, ""},
        {"segv", -1, SIGSEGV, ""}, // the handler returns, the fault comes back, unhandled
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.how);
        QTemporaryDir dir;
        const QString key = QStringLiteral("pvclean-%1-%2").arg(getpid()).arg(c.how);
        const ChildResult result = runChild(c.how, dir.path(), key);
        if (c.exitStatus >= 0) {
            ASSERT_TRUE(WIFEXITED(result.status)) << result.status;
            EXPECT_EQ(WEXITSTATUS(result.status), c.exitStatus);
        } else {
            ASSERT_TRUE(WIFSIGNALED(result.status)) << result.status;
            EXPECT_EQ(WTERMSIG(result.status), c.signal);
        }
        EXPECT_EQ(result.standardError, c.standardError);
        EXPECT_EQ(QDir(dir.path()).entryList(QDir::Files), QStringList()); // both files gone
        QSharedMemory probe(key);
        EXPECT_FALSE(probe.attach()); // the segment went with its last user
    }
}

TEST(CU_TerminationCleaner, RecordsAbsolutePathsAndGoesOnPastFailures) {
    QTemporaryDir dir;
    ASSERT_TRUE(QDir::setCurrent(dir.path()));
    QFile("kept.tmp").open(QIODevice::WriteOnly);
    CU_TerminationCleaner::deleteAtExit("missing.tmp");
    CU_TerminationCleaner::deleteAtExit("kept.tmp");
    EXPECT_EQ(CU_TerminationCleaner::files(),
              (QStringList{QFileInfo(dir.path() + "/missing.tmp").absoluteFilePath(),
                           QFileInfo(dir.path() + "/kept.tmp").absoluteFilePath()}));

    g_warnings.clear();
    QtMessageHandler previous = qInstallMessageHandler(recordWarning);
    CU_TerminationCleaner::cleanFiles();
    qInstallMessageHandler(previous);
    EXPECT_EQ(g_warnings, QStringList{"Error deleting " +
                                      QFileInfo(dir.path() + "/missing.tmp").absoluteFilePath()});
    EXPECT_FALSE(QFile::exists(dir.path() + "/kept.tmp"));
    EXPECT_TRUE(CU_TerminationCleaner::files().isEmpty());
    QDir::setCurrent(QDir::rootPath());

    // A pid file that cannot be made is refused and not recorded.
    EXPECT_FALSE(CU_TerminationCleaner::createPidFile(dir.path() + "/no/such/folder/pid"));
    EXPECT_TRUE(CU_TerminationCleaner::files().isEmpty());
    ASSERT_TRUE(CU_TerminationCleaner::createPidFile(dir.path() + "/pid"));
    QFile pid(dir.path() + "/pid");
    ASSERT_TRUE(pid.open(QIODevice::ReadOnly));
    EXPECT_EQ(pid.readAll(), QByteArray::number(getpid()));
    CU_TerminationCleaner::clean();
    EXPECT_FALSE(QFile::exists(dir.path() + "/pid"));
}

TEST(CU_TerminationCleaner, InstallsAnyHandlerOneShot) {
    ASSERT_TRUE(
        CU_TerminationCleaner::setup()->installOnSignal(SIGUSR2, reinterpret_cast<void*>(&onUsr2)));
    std::raise(SIGUSR2);
    EXPECT_EQ(g_usr2, SIGUSR2);
    struct sigaction now;
    sigaction(SIGUSR2, nullptr, &now);
    EXPECT_EQ(now.sa_handler, SIG_DFL); // delivery put the default back
}
