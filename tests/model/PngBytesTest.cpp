// SPDX-License-Identifier: GPL-3.0-or-later
#include "model/PaintHistory.h"
#include "model/PngBytes.h"
#include "support/PeakMemory.h"

#include <gtest/gtest.h>

#include <set>

namespace quillabrae::model {
namespace {

constexpr qsizetype megabyte = qsizetype{1024} * 1024;

TEST(PngBytes, NoBytesAreNoBuffer) {
    EXPECT_EQ(PngBytes(), PngBytes(QByteArray()));
    EXPECT_EQ(PngBytes(QByteArray("")).buffer(), nullptr);
    EXPECT_TRUE(PngBytes().bytes().empty());
}

TEST(PngBytes, EqualityIsOfBytesAndNotOfBuffers) {
    const PngBytes a(QByteArray("same"));
    const PngBytes b(QByteArray("same").append(""));
    EXPECT_EQ(a, b);
    EXPECT_FALSE(a.sharesBufferWith(b));
    EXPECT_NE(a, PngBytes(QByteArray("sane")));
    EXPECT_NE(a, PngBytes());
}

TEST(PngBytes, ACopySharesItsBytes) {
    const PngBytes a(QByteArray("same"));
    const PngBytes b = a; // NOLINT(performance-unnecessary-copy-initialization): it is the subject
    EXPECT_TRUE(a.sharesBufferWith(b));
    EXPECT_EQ(a.toByteArray().constData(), b.toByteArray().constData());
}

TEST(PngBytes, TwoHundredHistoryEntriesHoldTheLayerThatTheyDidNotTouchOnce) {
    const tests::PeakMemory memory;
    PaintProject project;
    project.layers.resize(2);
    project.layers[0].bitmapPNGData = PngBytes(QByteArray(64 * megabyte, 'L'));
    PaintHistoryState history;
    for (int i = 0; i < 200; ++i) {
        project.layers[1].bitmapPNGData = PngBytes(QByteArray(1000, static_cast<char>(i)));
        history.entries.push_back({QUuid::createUuid(), {}, {}, project});
    }

    std::set<const QByteArray*> buffers;
    qsizetype held = 0;
    for (const PaintHistoryEntry& entry : history.entries) {
        for (const PaintLayer& layer : entry.project.layers) {
            const PngBytes::Buffer& buffer = layer.bitmapPNGData->buffer();
            if (buffers.insert(buffer.get()).second) held += buffer->size();
        }
    }
    EXPECT_EQ(buffers.size(), 201U);
    EXPECT_EQ(held, 64 * megabyte + qsizetype{200} * 1000);
    EXPECT_LT(memory.growth(), 68 * megabyte);
}

} // namespace
} // namespace quillabrae::model
