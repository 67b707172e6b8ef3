// Helper of the termination-cleaner tests: records two files and a shared-memory segment,
// then ends the way its first argument names.
#include <PlumvaleBaseCore/app/CU_TerminationCleaner.h>

#include <QFile>
#include <QSharedMemory>
#include <QString>

#include <sys/mman.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>
#include <string>

namespace {

void previousHandler(int) {
    const char text[] = "previous\n";
    (void)!::write(2, text, sizeof text - 1);
}

} // namespace

int main(int argc, char** argv) {
    if (argc != 4) return 100;
    const std::string how = argv[1];
    const QString dir = QString::fromLocal8Bit(argv[2]);
    if (how == "previous") std::signal(SIGTERM, previousHandler); // there before the cleaner
    CU_TerminationCleaner::setup();
    if (!CU_TerminationCleaner::createPidFile(dir + "/child.pid")) return 101;
    QFile scratch(dir + "/scratch.tmp");
    if (!scratch.open(QIODevice::WriteOnly)) return 102;
    scratch.close();
    CU_TerminationCleaner::deleteAtExit(dir + "/scratch.tmp");
    QSharedPointer<QSharedMemory> segment = CU_TerminationCleaner::createSharedMemory();
    segment->setKey(QString::fromLocal8Bit(argv[3]));
    if (!segment->create(4096)) return 103;

    if (how == "exit") return 0;
    if (how == "term" || how == "previous") std::raise(SIGTERM);
    if (how == "previous") return 3; // the previous handler ran and the handler returned
    if (how == "int") std::raise(SIGINT);
    if (how == "abort") std::abort();
    if (how == "ill") __builtin_trap();
    if (how == "segv") {
        // A real fault that no sanitizer intercepts: a write to a read-only page.
        void* page = ::mmap(nullptr, 4096, PROT_READ, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
        if (page == MAP_FAILED) return 104;
        *static_cast<volatile char*>(page) = 1;
    }
    return 105;
}
