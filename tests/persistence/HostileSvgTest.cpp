// SPDX-License-Identifier: GPL-3.0-or-later
// Drawings that were made to take for ever, or all memory.
#include "persistence/ImageCodecs.h"
#include "support/Sanitizer.h"

#include <QBuffer>
#include <QElapsedTimer>
#include <QImage>

#include <gtest/gtest.h>
#include <sys/resource.h>

namespace quillabrae::persistence {
namespace {

using namespace std::chrono_literals;

QByteArray svg(const QByteArray& contents, const QByteArray& size = "64") {
    return "<svg xmlns=\"http://www.w3.org/2000/svg\" "
           "xmlns:xlink=\"http://www.w3.org/1999/xlink\" width=\"" +
           size + "\" height=\"" + size + "\">" + contents + "</svg>";
}

ImageCodecs::Bytes bytesOf(const QByteArray& data) {
    return {reinterpret_cast<const std::uint8_t*>(data.constData()),
            static_cast<std::size_t>(data.size())};
}

QByteArray deeplyNested() {
    constexpr qsizetype depth = 200'000;
    return svg(QByteArray("<g>").repeated(depth) + QByteArray("</g>").repeated(depth));
}

/// Ten times as many as before, twelve times over.
QByteArray tenfold(const QByteArray& first, const char* start, const char* middle,
                   const char* end) {
    QByteArray text = first;
    for (int i = 1; i <= 12; ++i) {
        text += start + QByteArray::number(i) + "\">";
        for (int j = 0; j < 10; ++j) text += middle + QByteArray::number(i - 1) + end;
        text += "</g>";
    }
    return text;
}

QByteArray usesOfUses() {
    return svg(tenfold("<defs><g id=\"a0\"><rect width=\"9\" height=\"9\"/></g>", "<g id=\"a",
                       "<use xlink:href=\"#a", "\"/>") +
               "</defs><use xlink:href=\"#a12\"/>");
}

QByteArray entitiesOfEntities() {
    QByteArray text = "<!DOCTYPE svg [<!ENTITY a0 \"lol\">";
    for (int i = 1; i <= 12; ++i) {
        const QByteArray former = "&a" + QByteArray::number(i - 1) + ";";
        text += "<!ENTITY a" + QByteArray::number(i) + " \"" + former.repeated(10) + "\">";
    }
    return text + "]>" + svg("<text>&a12;</text>");
}

QByteArray patternOfItself() {
    return svg(
        "<pattern id=\"a\" width=\"1\" height=\"1\"><rect width=\"9\" height=\"9\" "
        "fill=\"url(#b)\"/></pattern><pattern id=\"b\" width=\"1\" height=\"1\"><rect width=\"9\" "
        "height=\"9\" fill=\"url(#a)\"/></pattern><rect width=\"64\" height=\"64\" "
        "fill=\"url(#a)\"/>");
}

QByteArray endlessTurbulence() {
    return svg(
        "<filter id=\"f\"><feTurbulence numOctaves=\"2000000000\" baseFrequency=\"0.1\"/></filter>"
        "<rect width=\"64\" height=\"64\" filter=\"url(#f)\"/>");
}

QByteArray hugeFilters() {
    const QByteArray blurs =
        QByteArray(
            "<feGaussianBlur stdDeviation=\"3000\"/><feMorphology operator=\"dilate\" "
            "radius=\"3000\"/>")
            .repeated(50);
    return svg("<filter id=\"f\" x=\"-100\" y=\"-100\" width=\"900\" height=\"900\">" + blurs +
                   "</filter><rect width=\"30000\" height=\"30000\" filter=\"url(#f)\"/>",
               "30000");
}

QByteArray finestDashes() {
    return svg(
        "<path d=\"M0 0H1e9\" stroke=\"#000\" stroke-width=\"9\" stroke-dasharray=\"1e-6\"/>");
}

/// A picture of 900 million pixels that packs small.
QByteArray hugePicture() {
    QImage image(30000, 30000, QImage::Format_Mono);
    image.fill(0);
    QBuffer png;
    png.open(QIODevice::WriteOnly);
    image.save(&png, "PNG");
    return svg("<image width=\"64\" height=\"64\" href=\"data:image/png;base64," +
               png.data().toBase64() + "\"/>");
}

struct Hostile {
    const char* name;
    QByteArray (*make)();
};

void PrintTo(const Hostile& hostile, std::ostream* stream) {
    *stream << hostile.name;
}

class HostileSvg : public testing::TestWithParam<Hostile> {};

TEST_P(HostileSvg, IsDrawnOrRefusedInTimeAndInBoundedMemory) {
    constexpr auto time = 2s;
    constexpr qint64 withRoomForABusyMachine = 30'000;
    const QByteArray drawing = GetParam().make();
    QElapsedTimer elapsed;
    elapsed.start();
    const auto image = ImageCodecs::drawSvg(bytesOf(drawing), QSize(64, 64), {}, time);
    EXPECT_LT(elapsed.elapsed(), withRoomForABusyMachine);
    if (image) {
        EXPECT_EQ(image->width(), 64);
        EXPECT_EQ(image->height(), 64);
    }
    if (tests::hasSanitizer) return; // It keeps memory of its own.
    rusage used{};
    ASSERT_EQ(::getrusage(RUSAGE_CHILDREN, &used), 0);
    constexpr long kilobytes = 1'200'000;
    EXPECT_LT(used.ru_maxrss, kilobytes);
}

INSTANTIATE_TEST_SUITE_P(, HostileSvg,
                         testing::Values(Hostile{"DeeplyNested", deeplyNested},
                                         Hostile{"UsesOfUses", usesOfUses},
                                         Hostile{"EntitiesOfEntities", entitiesOfEntities},
                                         Hostile{"PatternOfItself", patternOfItself},
                                         Hostile{"EndlessTurbulence", endlessTurbulence},
                                         Hostile{"HugeFilters", hugeFilters},
                                         Hostile{"FinestDashes", finestDashes},
                                         Hostile{"HugePicture", hugePicture}),
                         [](const auto& info) { return std::string(info.param.name); });

TEST(SlowSvg, ThatTakesTooLongComesToNothing) {
    QByteArray blurs;
    for (int i = 0; i < 2000; ++i)
        blurs += "<rect width=\"2000\" height=\"2000\" filter=\"url(#f)\" opacity=\"0.5\"/>";
    const QByteArray drawing =
        svg("<filter id=\"f\"><feTurbulence numOctaves=\"9\"/><feGaussianBlur "
            "stdDeviation=\"90\"/></filter>" +
                blurs,
            "2000");
    QElapsedTimer elapsed;
    elapsed.start();
    EXPECT_FALSE(ImageCodecs::drawSvg(bytesOf(drawing), QSize(2000, 2000), {}, 100ms));
    EXPECT_GE(elapsed.elapsed(), 100);
    EXPECT_LT(elapsed.elapsed(), 20'000);
}

} // namespace
} // namespace quillabrae::persistence
