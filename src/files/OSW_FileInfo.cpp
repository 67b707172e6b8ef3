// OSW_FileInfo: display paths and the targets of shortcuts (Windows shell links and symlinks).
#include <PlumvaleBaseCore/files/OSW_FileInfo.h>

#include "files/FileSystem.h"
#include "files/PathText.h"

#include <cstdint>
#include <cstring>

namespace {

// Little-endian reads that fail instead of running past the end.
class Reader {
public:
    explicit Reader(const QByteArray& bytes) : m_bytes(bytes) {}
    bool has(qsizetype offset, qsizetype count) const {
        return offset >= 0 && count >= 0 && offset <= m_bytes.size() - count;
    }
    std::uint32_t u16(qsizetype offset) const { return byte(offset) | (byte(offset + 1) << 8); }
    std::uint32_t u32(qsizetype offset) const { return u16(offset) | (u16(offset + 2) << 16); }
    // A zero-terminated 8-bit string starting at `offset` (read as Latin-1); empty when the
    // terminator is missing.
    QString ansi(qsizetype offset) const {
        const qsizetype end = m_bytes.indexOf('\0', offset);
        return offset < 0 || end < 0 ? QString()
                                     : QString::fromLatin1(m_bytes.constData() + offset,
                                                           static_cast<int>(end - offset));
    }
    // A zero-terminated UTF-16 string starting at `offset`.
    QString unicode(qsizetype offset) const {
        QString out;
        for (qsizetype i = offset; has(i, 2); i += 2) {
            const auto unit = static_cast<char16_t>(u16(i));
            if (unit == 0) return out;
            out.append(QChar(unit));
        }
        return QString();
    }
    QString counted(qsizetype offset, qsizetype units, bool isUnicode) const {
        if (isUnicode) {
            QString out;
            for (qsizetype i = 0; i < units; ++i)
                out.append(QChar(static_cast<char16_t>(u16(offset + 2 * i))));
            return out;
        }
        return QString::fromLatin1(m_bytes.constData() + offset, static_cast<int>(units));
    }

private:
    std::uint32_t byte(qsizetype i) const {
        return static_cast<unsigned char>(m_bytes[static_cast<int>(i)]);
    }
    const QByteArray& m_bytes;
};

// Shell link header constants.
constexpr std::uint32_t kHeaderSize = 0x4C;
const unsigned char kLinkClsid[16] = {0x01, 0x14, 0x02, 0x00, 0x00, 0x00, 0x00, 0x00,
                                      0xC0, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x46};
constexpr std::uint32_t kHasTargetIdList = 0x1;
constexpr std::uint32_t kHasLinkInfo = 0x2;
constexpr std::uint32_t kHasName = 0x4;
constexpr std::uint32_t kHasRelativePath = 0x8;
constexpr std::uint32_t kIsUnicode = 0x80;
constexpr std::uint32_t kVolumeIdAndLocalBasePath = 0x1;
constexpr std::uint32_t kCommonNetworkRelativeLink = 0x2;

QString slashes(QString path) {
    return path.replace(QLatin1Char('\\'), QLatin1Char('/'));
}

} // namespace

QString OSW_FileInfo::parseShellLink(const QByteArray& bytes) {
    const Reader r(bytes);
    if (!r.has(0, kHeaderSize) || r.u32(0) != kHeaderSize ||
        std::memcmp(bytes.constData() + 4, kLinkClsid, sizeof kLinkClsid) != 0)
        return QString();
    const std::uint32_t flags = r.u32(0x14);
    qsizetype pos = kHeaderSize;
    if (flags & kHasTargetIdList) {
        if (!r.has(pos, 2)) return QString();
        pos += 2 + r.u16(pos);
    }
    QString target;
    if (flags & kHasLinkInfo) {
        if (!r.has(pos, 0x1C)) return QString();
        const qsizetype info = pos;
        const std::uint32_t infoSize = r.u32(info);
        const std::uint32_t infoHeader = r.u32(info + 4);
        const std::uint32_t infoFlags = r.u32(info + 8);
        if (!r.has(info, infoSize) || infoSize < 0x1C) return QString();
        QString suffix = r.ansi(info + r.u32(info + 0x18));
        if (infoFlags & kVolumeIdAndLocalBasePath) {
            target = r.ansi(info + r.u32(info + 0x10));
            if (infoHeader >= 0x24 && r.has(info, 0x24)) {
                const QString wide = r.unicode(info + r.u32(info + 0x1C));
                if (!wide.isEmpty()) target = wide;
                const QString wideSuffix = r.unicode(info + r.u32(info + 0x20));
                if (!wideSuffix.isEmpty()) suffix = wideSuffix;
            }
        } else if ((infoFlags & kCommonNetworkRelativeLink) && r.has(info + 0x14, 4)) {
            const qsizetype net = info + r.u32(info + 0x14);
            if (r.has(net, 0x14)) target = r.ansi(net + r.u32(net + 8));
        }
        if (!target.isEmpty() && !suffix.isEmpty()) {
            if (!target.endsWith(QLatin1Char('\\'))) target += QLatin1Char('\\');
            target += suffix;
        }
        pos = info + infoSize;
    }
    if (target.isEmpty() && (flags & kHasRelativePath)) {
        const bool wide = (flags & kIsUnicode) != 0;
        if (flags & kHasName) { // skip NAME_STRING
            if (!r.has(pos, 2)) return QString();
            pos += 2 + r.u16(pos) * (wide ? 2 : 1);
        }
        if (!r.has(pos, 2)) return QString();
        const qsizetype units = r.u16(pos);
        if (!r.has(pos + 2, units * (wide ? 2 : 1))) return QString();
        target = r.counted(pos + 2, units, wide);
    }
    return slashes(target);
}

namespace {

// Little-endian appends for the writer.
void put16(QByteArray& out, std::uint32_t v) {
    out.append(static_cast<char>(v & 0xFF));
    out.append(static_cast<char>((v >> 8) & 0xFF));
}

void put32(QByteArray& out, std::uint32_t v) {
    put16(out, v & 0xFFFF);
    put16(out, v >> 16);
}

void set32(QByteArray& out, qsizetype at, std::uint32_t v) {
    for (int i = 0; i < 4; ++i)
        out[static_cast<int>(at + i)] = static_cast<char>((v >> (8 * i)) & 0xFF);
}

// 8-bit text for the ANSI fields: Latin-1, '?' for what it cannot hold.
QByteArray ansiz(const QString& text) {
    QByteArray out;
    for (QChar c : text)
        out.append(c.unicode() < 0x100 ? static_cast<char>(c.unicode()) : '?');
    out.append('\0');
    return out;
}

QByteArray unicodez(const QString& text) {
    QByteArray out;
    for (QChar c : text)
        put16(out, c.unicode());
    put16(out, 0);
    return out;
}

} // namespace

QByteArray OSW_FileInfo::makeShellLink(const QString& target) {
    const QString slashed = slashes(target);
    const auto shareLength = static_cast<int>(plumvale::files::shareRootLength(slashed));
    QString path = slashed;
    path.replace(QLatin1Char('/'), QLatin1Char('\\'));

    QByteArray link;
    put32(link, kHeaderSize);
    link.append(reinterpret_cast<const char*>(kLinkClsid), sizeof kLinkClsid);
    put32(link, kHasLinkInfo | kIsUnicode);
    link.append(kHeaderSize - link.size(), '\0'); // attributes, times, size, icon ...
    set32(link, 0x3C, 1);                         // show the window normally

    // LinkInfo: a header of nine words, then its strings, offsets from its start.
    QByteArray info(0x24, '\0');
    set32(info, 4, 0x24);
    if (shareLength > 0) {
        const QString share = path.left(shareLength);
        QString suffix = path.mid(shareLength);
        while (suffix.startsWith(QLatin1Char('\\')))
            suffix.remove(0, 1);
        set32(info, 8, kCommonNetworkRelativeLink);
        set32(info, 0x14, static_cast<std::uint32_t>(info.size()));
        QByteArray net(0x14, '\0');
        set32(net, 8, 0x14); // the net name follows the fixed part
        net += ansiz(share);
        set32(net, 0, static_cast<std::uint32_t>(net.size()));
        info += net;
        set32(info, 0x18, static_cast<std::uint32_t>(info.size()));
        info += ansiz(suffix);
        set32(info, 0x20, static_cast<std::uint32_t>(info.size()));
        info += unicodez(suffix);
    } else {
        set32(info, 8, kVolumeIdAndLocalBasePath);
        set32(info, 0xC, static_cast<std::uint32_t>(info.size()));
        QByteArray volume(0x10, '\0'); // size, fixed drive, no serial, label at 0x10
        set32(volume, 4, 3);
        set32(volume, 0xC, 0x10);
        volume.append('\0');
        set32(volume, 0, static_cast<std::uint32_t>(volume.size()));
        info += volume;
        set32(info, 0x10, static_cast<std::uint32_t>(info.size()));
        info += ansiz(path);
        set32(info, 0x18, static_cast<std::uint32_t>(info.size()));
        info += ansiz(QString());
        set32(info, 0x1C, static_cast<std::uint32_t>(info.size()));
        info += unicodez(path);
        set32(info, 0x20, static_cast<std::uint32_t>(info.size()));
        info += unicodez(QString());
    }
    set32(info, 0, static_cast<std::uint32_t>(info.size()));
    link += info;
    put32(link, 0); // the terminal block
    return link;
}

QString OSW_FileInfo::displayPath(bool withName) const {
    return QDir::toNativeSeparators(withName ? absoluteFilePath() : absolutePath());
}

QString OSW_FileInfo::readLink() const {
    // A symbolic link is read as one, whatever its name: what it points to is not opened.
    if (isSymLink()) return symLinkTarget();
    if (!plumvale::files::hasLinkSuffix(filePath())) return QString();
    // Shell links are small; a cap keeps a huge misnamed file from being read whole, and
    // only a regular file is read, so a FIFO or device named ".lnk" cannot block.
    QByteArray bytes;
    if (!plumvale::files::readRegularFile(UT_String(filePath()), 1 << 20, bytes)) return QString();
    const QString target = parseShellLink(bytes);
    if (target.isEmpty() || QDir::isAbsolutePath(target) || target.contains(QLatin1Char(':')))
        return target;
    return QDir::cleanPath(absolutePath() + QLatin1Char('/') + target);
}

QString OSW_FileInfo::readLink(bool targetPath) const {
    return targetPath ? readLink() : absoluteFilePath();
}
