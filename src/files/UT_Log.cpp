// The action log: line formats, the one-write-per-line file, and the process-wide facade.
#include <PlumvaleBaseCore/files/UT_Log.h>
#include <PlumvaleBaseCore/files/oswUtil.h>

#include <QDateTime>
#include <QDir>
#include <QFile>

#include <atomic>
#include <mutex>

struct UT_Log::Impl {
    mutable std::mutex mutex;
    QFile file;
    std::atomic<int> indent{0};
};

UT_Log::UT_Log() : m_impl(std::make_unique<Impl>()) {}

UT_Log::~UT_Log() {
    close();
}

bool UT_Log::create(const QString& directory) {
    if (!QDir().mkpath(directory)) return false;
    char machine[256] = {};
    oswUtil::getShortMachineName(machine, sizeof machine - 1);
    QString user;
    oswUtil::getUserName(user);
    const QString name =
        QStringLiteral("%1/%2_%3_%4.log")
            .arg(directory,
                 QDateTime::currentDateTime().toString(QStringLiteral("yyyyMMdd-hhmmss")),
                 QString::fromLocal8Bit(machine), user);
    std::lock_guard<std::mutex> lock(m_impl->mutex);
    m_impl->file.close();
    m_impl->file.setFileName(name);
    // Unbuffered: each line goes to the system in one write.
    return m_impl->file.open(QIODevice::WriteOnly | QIODevice::Append | QIODevice::Unbuffered);
}

bool UT_Log::isOpen() const {
    std::lock_guard<std::mutex> lock(m_impl->mutex);
    return m_impl->file.isOpen();
}

void UT_Log::close() {
    std::lock_guard<std::mutex> lock(m_impl->mutex);
    m_impl->file.close();
}

QString UT_Log::fileName() const {
    std::lock_guard<std::mutex> lock(m_impl->mutex);
    return m_impl->file.isOpen() ? m_impl->file.fileName() : QString();
}

int UT_Log::indent() const {
    return m_impl->indent.load();
}

void UT_Log::setIndent(int spaces) {
    m_impl->indent.store(spaces < 0 ? 0 : spaces);
}

QString UT_Log::operationWord(int op) {
    static const char* const kWords[] = {"Create", "Update", "Copy",    "Move",    "Rename",
                                         "Delete", "Swap",   "Symlink", "HardLink"};
    return op >= 0 && op < 9 ? QLatin1String(kWords[op]) : QStringLiteral("Unknown");
}

bool UT_Log::writeLine(const QString& fields) {
    // The time is taken under the lock too, so that the times of the lines never go back in
    // file order (and the C library's time-zone state is read by one thread at a time).
    std::lock_guard<std::mutex> lock(m_impl->mutex);
    if (!m_impl->file.isOpen()) return false;
    const QByteArray line =
        (QString(indent(), QLatin1Char(' ')) +
         QDateTime::currentDateTime().toString(QStringLiteral("yyyy-MM-dd hh:mm:ss")) + fields +
         QLatin1Char('\n'))
            .toUtf8();
    return m_impl->file.write(line) == line.size();
}

bool UT_Log::logAction(const QString& text) {
    return writeLine(QStringLiteral(";ACTION;") + text);
}

bool UT_Log::add(eFileOperation op, const QString& path) {
    return add(op, path, QString());
}

bool UT_Log::add(eFileOperation op, const QString& source, const QString& destination) {
    return writeLine(QLatin1Char(';') + operationWord(op) + QLatin1Char(';') + source +
                     QLatin1Char(';') + destination);
}

bool UT_Log::add(const QString& a, const QString& b, bool ok) {
    return add(a, b, QString(), ok);
}

bool UT_Log::add(const QString& a, const QString& b, const QString& c, bool ok) {
    return writeLine(QLatin1Char(';') + a + QLatin1Char(';') + b + QLatin1Char(';') + c +
                     (ok ? QStringLiteral(";SUCCESS") : QStringLiteral(";FAIL")));
}

bool UT_Log::copyLog(const QString& from, const QString& to) {
    if (!QFile::exists(from)) return false;
    if (QFile::exists(to) && !QFile::remove(to)) return false;
    return QFile::copy(from, to);
}

namespace {

// Replaced and dropped while other threads may be logging: each caller holds its own
// reference for the length of its call.
std::shared_ptr<UT_Log> s_log;

std::shared_ptr<UT_Log> processLog() {
    return std::atomic_load(&s_log);
}

template <typename... Args>
bool forward(Args&&... args) {
    const std::shared_ptr<UT_Log> log = processLog();
    return log && log->add(std::forward<Args>(args)...);
}

} // namespace

bool UT_LogIO::create(const QString& directory) {
    auto log = std::make_shared<UT_Log>();
    const bool opened = log->create(directory);
    std::atomic_store(&s_log, opened ? log : std::shared_ptr<UT_Log>());
    return opened;
}

bool UT_LogIO::isOpen() {
    const std::shared_ptr<UT_Log> log = processLog();
    return log && log->isOpen();
}

void UT_LogIO::close() {
    std::atomic_store(&s_log, std::shared_ptr<UT_Log>());
}

QString UT_LogIO::fileName() {
    const std::shared_ptr<UT_Log> log = processLog();
    return log ? log->fileName() : QString();
}

bool UT_LogIO::logAction(const QString& text) {
    const std::shared_ptr<UT_Log> log = processLog();
    return log && log->logAction(text);
}

bool UT_LogIO::add(UT_Log::eFileOperation op, const QString& path) {
    return forward(op, path);
}

bool UT_LogIO::add(UT_Log::eFileOperation op, const QString& source, const QString& destination) {
    return forward(op, source, destination);
}

bool UT_LogIO::add(const QString& a, const QString& b, bool ok) {
    return forward(a, b, ok);
}

bool UT_LogIO::add(const QString& a, const QString& b, const QString& c, bool ok) {
    return forward(a, b, c, ok);
}

bool UT_LogIO::copyLog(const QString& from, const QString& to) {
    const std::shared_ptr<UT_Log> log = processLog();
    return log && log->copyLog(from, to);
}

UT_LogIO::logActionHelper::logActionHelper(const QString& name) : m_name(name) {
    if (const std::shared_ptr<UT_Log> log = processLog()) {
        log->logAction(QStringLiteral("Start ") + m_name);
        log->setIndent(log->indent() + 2);
    }
}

UT_LogIO::logActionHelper::~logActionHelper() {
    if (const std::shared_ptr<UT_Log> log = processLog()) {
        log->setIndent(log->indent() - 2);
        log->logAction(QStringLiteral("End ") + m_name);
    }
}
