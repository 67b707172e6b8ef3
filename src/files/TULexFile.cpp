// TULex::openFile: the lexer's file input, which needs the files layer (remapping, reading).
#include <PlumvaleBaseCore/files/PL_FileSpec.h>
#include <PlumvaleBaseCore/files/oswRemapPath.h>
#include <PlumvaleBaseCore/text/TULex.h>

#include "files/FileSystem.h"

bool TULex::openFile(const PL_FileSpec& file) {
    QByteArray bytes;
    if (!plumvale::files::readWholeFile(file.GetDisplayFilePath(), bytes)) return false;
    m_file = bytes; // zero-terminated, and kept as long as the lexer reads it
    start(m_file.constData());
    return true;
}

bool TULex::openFile(const QString& path) {
    return openFile(PL_FileSpec(UT_String(oswRemapPath::RemapPath2(path, true))));
}
