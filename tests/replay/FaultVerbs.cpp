// SPDX-License-Identifier: GPL-3.0-or-later
// The stretch of a script in which the preloaded library of tests/faults counts system calls and
// makes them go wrong, and files that no command of the store writes.
#include "platform/FileOperations.h"
#include "platform/PrivateFile.h"
#include "platform/SharedFile.h"
#include "replay/ScriptError.h"
#include "replay/Session.h"
#include "replay/Verb.h"

#include <dlfcn.h>

namespace quillabrae::replay {
namespace {

void call(const char* name) {
    const auto function = reinterpret_cast<void (*)()>(::dlsym(RTLD_DEFAULT, name));
    if (function == nullptr) throw ScriptError(QStringLiteral("no library of faults is loaded"));
    function();
}

QJsonValue begin(Session&, const Arguments&) {
    call("quillabraeFaultsBegin");
    return {};
}

QJsonValue end(Session&, const Arguments&) {
    call("quillabraeFaultsEnd");
    return {};
}

/// As the list of the desktop's recent documents is written.
QJsonValue writeShared(Session& session, const Arguments& arguments) {
    const QByteArray content = arguments.text("content").toUtf8();
    platform::rewriteSharedFile(session.resolvedPath(arguments.text("at")),
                                platform::MissingFile::made,
                                [&content](const QByteArray&) { return content; });
    return {};
}

/// As an update is stored.
QJsonValue writePrivate(Session& session, const Arguments& arguments) {
    try {
        platform::writePrivateFile(session.resolvedPath(arguments.text("folder")),
                                   arguments.text("name"), arguments.text("content").toUtf8());
        return {};
    } catch (const platform::FileOperationError& error) {
        return QStringLiteral("Not written: ") + error.description();
    }
}

constexpr Verb verbs[] = {
    {"faults.begin", "", begin},
    {"faults.end", "", end},
    {"faults.writeShared", "at content", writeShared},
    {"faults.writePrivate", "folder name content", writePrivate},
};

} // namespace

VerbTable faultVerbs() {
    return verbs;
}

} // namespace quillabrae::replay
