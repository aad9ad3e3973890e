// SPDX-License-Identifier: GPL-3.0-or-later
#include "faults/FaultedOperations.h"

#include <QCryptographicHash>
#include <QDir>
#include <QDirIterator>
#include <QFile>

#include <array>

namespace quillabrae::faults {
namespace {

const QByteArray newProject =
    R"({"do": "store.createUntitledProject", "width": 24, "height": 16, "resolutionDPI": 96})"
    "\n";
const QByteArray invert = "{\"do\": \"store.invertActiveImage\"}\n";

QByteArray save(const QByteArray& extension, const QByteArray& format) {
    return R"({"do": "store.saveProject", "at": 0, "to": {"url": "~/docs/p.)" + extension +
           R"(", "format": ")" + format + "\"}}\n";
}

enum class Target { isNew, isThere };

/// A document that is saved, beside another file of the user's.
Operation document(const char* extension, const char* format, Target target) {
    Operation operation;
    operation.name = std::string(format) + (target == Target::isNew ? "New" : "OverOld");
    operation.folder = QStringLiteral("docs");
    QByteArray before = newProject +
                        R"({"do": "save.picture", "of": "flattened", "to": "~/docs/other.png"})"
                        "\n";
    if (target == Target::isThere) before += save(extension, format);
    operation.before = {before + invert};
    operation.lines = save(extension, format);
    operation.failure = "Save failed: ";
    operation.temporary.setPattern(
        QStringLiteral(R"(^\.p\.%1\.identifier\.tmp(/.*)?$)").arg(QLatin1StringView(extension)));
    return operation;
}

Operation recovery() {
    Operation operation;
    operation.name = "recovery";
    operation.folder = QStringLiteral(".local/share/Quillabrae/Autosave");
    operation.before = {newProject + invert};
    operation.lines = invert;
    operation.failure = "Recovery is not being kept: ";
    operation.temporary.setPattern(
        QStringLiteral(R"(^\.Recovery\.quillabraesession\.identifier\.writing$)"));
    operation.isRepeatable = false;
    return operation;
}

Operation firstRecovery() {
    Operation operation = recovery();
    operation.name = "firstRecovery";
    operation.before = {};
    operation.lines = newProject;
    return operation;
}

Operation closedWork() {
    Operation operation;
    operation.name = "closedWork";
    operation.folder = QStringLiteral(".local/share/Quillabrae/Autosave");
    operation.before = {newProject + invert};
    operation.lines = "{\"do\": \"store.setClosedWorkAside\"}\n";
    operation.failure = R"("result":false)";
    operation.isReasonTold = false;
    operation.temporary.setPattern(
        QStringLiteral(R"(^\.Closed\.quillabraesession\.identifier\.writing$)"));
    return operation;
}

/// The copy as a file, for programs that take no pictures.
Operation copy() {
    Operation operation;
    operation.name = "copy";
    operation.folder = QStringLiteral(".local/share/Quillabrae/Clipboard");
    operation.before = {newProject + invert};
    operation.lines =
        "{\"do\": \"store.selectAllCanvas\"}\n"
        "{\"do\": \"store.copySelectedCanvasPixels\"}\n";
    operation.temporary.setPattern(QStringLiteral(R"(\.png\.part$)"));
    operation.litter = Litter::goesInTime;
    return operation;
}

Operation sharedFile(const char* name, const QByteArray& before) {
    Operation operation;
    operation.name = name;
    operation.folder = QStringLiteral("lists");
    operation.before = {before};
    operation.lines = R"({"do": "faults.writeShared", "at": "~/lists/a", "content": "new"})"
                      "\n";
    operation.temporary.setPattern(QStringLiteral(R"(^\.a\.\d+\.writing$)"));
    return operation;
}

Operation privateFile() {
    Operation operation;
    operation.name = "privateFile";
    operation.folder = QStringLiteral("updates");
    operation.before = {newProject};
    operation.lines = R"({"do": "faults.writePrivate", "folder": "~/updates/a", "name": "p.deb",)"
                      R"( "content": "new"})"
                      "\n";
    operation.failure = "Not written: ";
    operation.temporary.setPattern(QStringLiteral(R"(^a/p\.deb\.part$)"));
    return operation;
}

Operation preferences(const char* name, QByteArray before, QByteArray lines) {
    Operation operation;
    operation.name = name;
    operation.folder = QStringLiteral(".config");
    operation.before = {std::move(before)};
    operation.lines = std::move(lines);
    operation.temporary.setPattern(
        QStringLiteral(R"(^Quillabrae/\.preferences\.ini\.identifier\.)"));
    operation.writer = Writer::toolkit;
    return operation;
}

Operation plugin(const char* name, const QByteArray& before, const QByteArray& verb) {
    Operation operation;
    operation.name = name;
    operation.folder = QStringLiteral(".local/share/Quillabrae/Plugins");
    operation.before = {before};
    operation.lines = R"({"do": "plugins.)" + verb +
                      R"(", "plugin": "studio.quillabrae.ink-press"})"
                      "\n";
    operation.failure = verb == "install" ? "The plugin could not be installed: "
                                          : "The plugin could not be removed: ";
    operation.temporary.setPattern(
        QStringLiteral(R"(^[^/]+/\.manifest\.json\.writing$|^\..*\.removed/)"));
    return operation;
}

/// Texts that name moments and identifiers.
QByteArray withoutMarks(const QByteArray& bytes) {
    static const QRegularExpression moment(
        QStringLiteral(R"(\d{4}-\d\d-\d\dT\d\d:\d\d:\d\d(\.\d+)?Z)"));
    static const QRegularExpression identifier(
        QStringLiteral(R"([0-9A-Fa-f]{8}(-[0-9A-Fa-f]{4}){3}-[0-9A-Fa-f]{12})"));
    QString text = QString::fromUtf8(bytes);
    text.replace(moment, QStringLiteral("moment"));
    text.replace(identifier, QStringLiteral("identifier"));
    return text.toUtf8();
}

bool hasSuffix(const QString& path, std::initializer_list<const char*> suffixes) {
    return std::ranges::any_of(
        suffixes, [&](const char* suffix) { return path.endsWith(QLatin1StringView(suffix)); });
}

std::string markOf(const QString& file) {
    QFile opened(file);
    if (!opened.open(QIODevice::ReadOnly)) return "unreadable";
    const QByteArray bytes = opened.readAll();
    if (hasSuffix(file, {".pdf"}))
        return bytes.startsWith("%PDF") && bytes.trimmed().endsWith("%%EOF") ? "whole" : "torn";
    const bool isText = hasSuffix(file, {".json", ".ini", ".quillabraesession"});
    return QCryptographicHash::hash(isText ? withoutMarks(bytes) : bytes,
                                    QCryptographicHash::Sha256)
        .toHex()
        .first(12)
        .toStdString();
}

bool isNothing(const QFileInfo& file) {
    return hasSuffix(file.fileName(), {".quillabraesession.lock", ".quillabraesession.spare",
                                       ".preferences.ini.lock"}) ||
           (file.fileName() == QStringLiteral("preferences.ini") && file.size() == 0);
}

} // namespace

std::vector<Operation> operations() {
    struct Format {
        const char* extension;
        const char* name;
    };
    static constexpr std::array formats{
        Format{"quillabrae", "project"},
        Format{"png", "png"},
        Format{"jpg", "jpeg"},
        Format{"heic", "heic"},
        Format{"webp", "webp"},
        Format{"tiff", "tiff"},
        Format{"svg", "svg"},
        Format{"bmp", "bmp"},
        Format{"gif", "gif"},
        Format{"jp2", "jpeg2000"},
    };
    std::vector<Operation> all;
    for (const Format& format : formats)
        for (const Target target : {Target::isNew, Target::isThere})
            all.push_back(document(format.extension, format.name, target));
    all.push_back(firstRecovery());
    all.push_back(recovery());
    all.push_back(closedWork());
    all.push_back(copy());
    all.push_back(sharedFile("firstSharedFile", newProject));
    all.push_back(sharedFile(
        "sharedFile", R"({"do": "faults.writeShared", "at": "~/lists/a", "content": "the old"})"
                      "\n"));
    all.push_back(privateFile());
    const QByteArray size = "{\"do\": \"set\", \"brushSize\": 33}\n";
    const QByteArray recent = R"({"do": "store.rememberRecent", "value": "~/docs/b.quillabrae"})"
                              "\n";
    const QByteArray first = R"({"do": "store.rememberRecent", "value": "~/docs/a.quillabrae"})"
                             "\n";
    all.push_back(preferences("firstSettings", {}, size));
    all.push_back(preferences("settings", first + "{\"do\": \"set\", \"brushSize\": 7}\n", size));
    all.push_back(preferences("recents", first + size, recent));
    const QByteArray install =
        R"({"do": "plugins.install", "plugin": "studio.quillabrae.ink-press"})"
        "\n";
    const QByteArray other = R"({"do": "plugins.install", "plugin": "studio.quillabrae.monoform"})"
                             "\n";
    all.push_back(plugin("firstPlugin", {}, "install"));
    all.push_back(plugin("pluginInstall", other, "install"));
    all.push_back(plugin("pluginRemoval", other + install, "uninstall"));
    return all;
}

Contents contentsOf(const QString& folder) {
    Contents contents;
    const bool countsFolders = folder.endsWith(QStringLiteral("/docs"));
    QDirIterator entries(folder,
                         QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot,
                         QDirIterator::Subdirectories);
    while (entries.hasNext()) {
        const QString path = entries.next();
        const bool isFolder = entries.fileInfo().isDir();
        if (isNothing(entries.fileInfo()) || (isFolder && !countsFolders)) continue;
        const QString name = QDir(folder).relativeFilePath(path);
        contents.emplace(withoutMarks(name.toUtf8()).toStdString(),
                         isFolder ? "folder" : markOf(path));
    }
    return contents;
}

} // namespace quillabrae::faults
