// SPDX-License-Identifier: GPL-3.0-or-later
#include "persistence/FormatRoundTrip.h"

namespace quillabrae::persistence {
namespace {

class LargePicture : public FormatRoundTrip, public testing::WithParamInterface<Format> {};

TEST_P(LargePicture, IsReadBackByOthers) {
    constexpr QSize size(4096, 4096);
    expectRoundTrip(projectOf({"Large", size, Contents::translucent}), GetParam());
}

INSTANTIATE_TEST_SUITE_P(, LargePicture,
                         testing::ValuesIn(allFormats().begin(), allFormats().end()),
                         [](const auto& info) { return rawText(info.param.format).toStdString(); });

} // namespace
} // namespace quillabrae::persistence
