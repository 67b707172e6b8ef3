// Internal: what the tufile operations share: their messages and path preparation.
#pragma once

#include <PlumvaleBaseCore/files/tufile.h>
#include <PlumvaleBaseCore/text/MSG_Text.h>

#include <QString>

namespace plumvale::files::tufileSupport {

/// A message of the "tufile" context.
MSG_Text message(const char* source);

/// Raises FileErr with `text`.
[[noreturn]] void fail(const MSG_Text& text);

/// The path as the system is given it: remapped, then with '/' for every backslash.
QString prepared(const QString& path);

/// The system's text for a negated errno, as a QString.
QString systemText(int negatedError);

/// "Cannot copy file \"%1\" to \"%2\": (%3)" with the system's text for the error.
MSG_Text copyFailure(const QString& from, const QString& to, int negatedError);

} // namespace plumvale::files::tufileSupport
