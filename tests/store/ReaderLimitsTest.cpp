// SPDX-License-Identifier: GPL-3.0-or-later
// Whatever is in a file, and however much: each reader ends within ten seconds and a gigabyte, with
// something or with a refusal. The inputs are 8 MB long; QUILLABRAE_HOSTILE_MEGABYTES=100 makes
// them as long as what is promised.
//
// As root the gigabyte is for all that the process holds once its program runs, the input included,
// and it is killed where it holds more. Otherwise only addresses can be limited: a gigabyte beside
// what is mapped when reading begins, and what is asked for beyond that is refused.
#include "effects/OpenAIImageEditService.h"
#include "effects/QuillabraePlugin.h"
#include "persistence/AppPersistenceService.h"
#include "persistence/FileError.h"
#include "persistence/ImageLoader.h"
#include "persistence/ProjectFileService.h"
#include "platform/HandOver.h"
#include "platform/MemoryPasteboard.h"
#include "platform/MemoryPreferences.h"
#include "raster/PngCodec.h"
#include "services/AppSignInPayload.h"
#include "services/Appcast.h"
#include "store/ClipboardImageService.h"
#include "support/MemoryGroup.h"
#include "support/Sanitizer.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QUrl>
#include <QtEndian>

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>
#include <fstream>
#include <iostream>
#include <new>

namespace quillabrae::store {
namespace {

qsizetype hostileBytes() {
    const int megabytes = qEnvironmentVariableIntValue("QUILLABRAE_HOSTILE_MEGABYTES");
    return qsizetype{megabytes > 0 ? megabytes : 8} * 1'000'000;
}

QByteArray repeated(const QByteArray& part) {
    return part.repeated(hostileBytes() / part.size());
}

/// As long as one may be.
QByteArray handOverOf(const QByteArray& start, const QByteArray& part) {
    const qsizetype room = platform::HandOver::maximumPayload - start.size();
    const QByteArray payload = start + part.repeated(room / part.size());
    QByteArray length(sizeof(quint32), Qt::Uninitialized);
    qToBigEndian(static_cast<quint32>(payload.size()), length.data());
    return "quillabrae 1\n" + length + payload;
}

/// Bytes that cost a reader more than their length, each in its way.
struct Hostile {
    const char* name;
    QByteArray (*make)();
};

const std::vector<Hostile> hostileInputs{
    {"Depth", [] { return repeated("["); }},
    {"DeepObjects", [] { return repeated("{\"layers\":"); }},
    {"Numbers", [] { return "{\"layers\":[" + repeated("0,") + "0]}"; }},
    {"EmptyRecords", [] { return "{\"layers\":[" + repeated("{},") + "{}]}"; }},
    {"LongText", [] { return "{\"title\":\"" + repeated("a") + "\"}"; }},
    {"Escapes", [] { return "{\"title\":\"" + repeated("\\u0000") + "\"}"; }},
    {"Base64", [] { return "{\"data\":[{\"b64_json\":\"" + repeated("AAAA") + "\"}]}"; }},
    {"Elements", [] { return "<rss><channel>" + repeated("<item/>") + "</channel></rss>"; }},
    {"Lines", [] { return repeated("file:///a\n"); }},
    {"Zeros", [] { return QByteArray(hostileBytes(), '\0'); }},
    {"PngOfChunks",
     [] {
         return QByteArray::fromHex(
                    "89504e470d0a1a0a0000000d49484452000080000000800008060000007b6d"
                    "0b0a") +
                repeated(QByteArray::fromHex("000000004944415435af061e"));
     }},
    {"Rubbish", [] { return repeated("a:\n"); }},
    {"Steps", [] { return "file:///" + repeated("a/../"); }},
    {"HandOverOfLines", [] { return handOverOf("", "file:///a\n"); }},
    {"HandOverOfSteps", [] { return handOverOf("file:///", "a/../"); }},
    {"HandOverOfSlashes", [] { return handOverOf("file://", "/"); }},
    {"HandOver",
     [] { return "quillabrae 1\n" + QByteArray::fromHex("7fffffff") + repeated("file:///a\n"); }},
};

/// A reader of bytes, from the place that it finds them in.
struct Reader {
    const char* name;
    void (*read)(const QByteArray& bytes, const QString& folder);
};

QString written(const QByteArray& bytes, const QString& path) {
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size()) std::abort();
    return path;
}

const std::vector<Reader> readers{
    {"Project",
     [](const QByteArray& bytes, const QString& folder) {
         const QString package = folder + QStringLiteral("/a.quillabrae");
         QDir().mkpath(package);
         written(bytes, package + QStringLiteral("/project.json"));
         try {
             persistence::ProjectFileService::read(QUrl::fromLocalFile(package));
         } catch (const persistence::FileError&) {
             // A refusal.
         }
     }},
    {"Session",
     [](const QByteArray& bytes, const QString& folder) {
         const QString path = written(bytes, folder + QStringLiteral("/a"));
         persistence::AppPersistenceService::loadAutosavedSession(path);
     }},
    {"Settings",
     [](const QByteArray& bytes, const QString&) {
         platform::MemoryPreferences preferences;
         preferences.setValue(QStringLiteral("Quillabrae.settings"), bytes);
         preferences.setValue(QStringLiteral("Quillabrae.recents"), bytes);
         persistence::AppPersistenceService::loadSettings(preferences);
         persistence::AppPersistenceService::loadRecents(preferences,
                                                         QStringLiteral("Quillabrae.recents"));
     }},
    {"Manifest",
     [](const QByteArray& bytes, const QString&) { effects::pluginFromManifest(bytes); }},
    {"Png",
     [](const QByteArray& bytes, const QString&) { raster::decodePng(model::PngBytes(bytes)); }},
    {"Image", [](const QByteArray& bytes, const QString&) { persistence::loadImage(bytes); }},
    {"Metadata",
     [](const QByteArray& bytes, const QString&) {
         platform::MemoryPasteboard pasteboard;
         pasteboard.put({{clipboardMetadataType, bytes}, {platform::MimeTypes::uriList, bytes}});
         clipboardMetadata(pasteboard);
         platform::localFiles(pasteboard);
     }},
    {"Reply",
     [](const QByteArray& bytes, const QString&) {
         platform::HttpReply reply;
         reply.status = 200;
         reply.body = bytes;
         effects::imageEditOutcome(reply);
         services::appSignInPayload(bytes);
     }},
    {"Appcast", [](const QByteArray& bytes, const QString&) { services::readAppcast(bytes); }},
    {"HandOver", [](const QByteArray& bytes, const QString&) { platform::HandOver::read(bytes); }},
};

constexpr qint64 gigabyte = 1'000'000'000;

/// No more than a gigabyte of addresses from here on.
void limitAddresses() {
    std::size_t pages = 0;
    std::ifstream("/proc/self/statm") >> pages;
    const rlim_t bytes = pages * static_cast<std::size_t>(sysconf(_SC_PAGESIZE)) + gigabyte;
    const rlimit limit{bytes, bytes};
    if (setrlimit(RLIMIT_AS, &limit) != 0) std::abort();
}

void limitTime() {
    std::signal(SIGALRM, SIG_DFL);
    alarm(10);
}

class ReaderLimits : public testing::TestWithParam<Reader> {
protected:
    // A process of its own for each input, started anew.
    void SetUp() override { GTEST_FLAG_SET(death_test_style, "threadsafe"); }
};

TEST_P(ReaderLimits, HoldForWhateverIsRead) {
    if (tests::hasSanitizer) GTEST_SKIP() << "a sanitizer takes more room than the limit leaves";
    const tests::MemoryGroup group(gigabyte);
    for (const Hostile& hostile : hostileInputs) {
        const auto readWithinLimits = [&] {
            const QTemporaryDir folder;
            if (group.isThere() && !group.enter()) std::abort();
            const QByteArray bytes = hostile.make();
            if (!group.isThere()) limitAddresses();
            limitTime();
            try {
                GetParam().read(bytes, folder.path());
            } catch (const std::bad_alloc&) {
                // Commands and starts answer that with a refusal.
            }
            QDir(folder.path()).removeRecursively();
            std::_Exit(EXIT_SUCCESS);
        };
        EXPECT_EXIT(readWithinLimits(), testing::ExitedWithCode(EXIT_SUCCESS), "") << hostile.name;
    }
    const std::string peak =
        group.peak() == 0 ? "an unknown part" : std::to_string(group.peak() / 1'000'000) + " MB";
    std::cout << GetParam().name << ": "
              << (group.isThere() ? "at most " + peak + " of a gigabyte for all that it holds\n"
                                  : "a gigabyte of addresses, since no memory group can be made\n");
}

INSTANTIATE_TEST_SUITE_P(Each, ReaderLimits, testing::ValuesIn(readers),
                         [](const auto& info) { return std::string(info.param.name); });

} // namespace
} // namespace quillabrae::store
