// SPDX-License-Identifier: GPL-3.0-or-later
// Any bytes are a project, which can be written and read again as the same, or one JsonError.
#include "FuzzInput.h"
#include "model/RecordCoding.h"

using namespace quillabrae;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const QByteArray input(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
    model::PaintProject project;
    try {
        project = model::decodedJson<model::PaintProject>(input);
    } catch (const model::JsonError&) {
        return 0;
    }
    const QByteArray json = model::encodedJson(project);
    fuzz::require(model::encodedJson(model::decodedJson<model::PaintProject>(json)) == json);
    return 0;
}
