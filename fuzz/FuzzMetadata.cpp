// SPDX-License-Identifier: GPL-3.0-or-later
// Whatever another program offers on the clipboard: its place of origin is two numbers or none, and
// the files it names are files of this machine.
#include "FuzzInput.h"
#include "store/ClipboardImageService.h"

#include <cmath>

using namespace quillabrae;

namespace {

/// The same bytes as every type.
class Everything final : public platform::MimeSource {
public:
    explicit Everything(QByteArray bytes) : m_bytes(std::move(bytes)) {}
    QStringList types() const override {
        namespace Types = platform::MimeTypes;
        return {store::clipboardMetadataType, Types::uriList, Types::copiedFiles, Types::text};
    }
    QByteArray data(const QString&) const override { return m_bytes; }

private:
    QByteArray m_bytes;
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const Everything offered(fuzz::bytesOf(data, size));
    if (const auto metadata = store::clipboardMetadata(offered))
        fuzz::require(std::isfinite(metadata->sourceX) && std::isfinite(metadata->sourceY));
    for (const QUrl& file : platform::localFiles(offered))
        fuzz::require(file.isValid() && file.host().isEmpty() && !file.toLocalFile().isEmpty());
    return 0;
}
