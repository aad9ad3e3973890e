// SPDX-License-Identifier: GPL-3.0-or-later
#include "effects/MultipartBody.h"

#include <gtest/gtest.h>

namespace quillabrae::effects {
namespace {

TEST(MultipartBody, IsFieldsThenFilesThenTheEnd) {
    const QByteArray bytes("\x89PNG\r\n\0\x1a", 8);
    EXPECT_EQ(multipartBody(QStringLiteral("B-1"),
                            {{QStringLiteral("prompt"), QStringLiteral("two\nlines, é")},
                             {QStringLiteral("model"), QStringLiteral("m")}},
                            {{QStringLiteral("image"), QStringLiteral("a.png"),
                              QStringLiteral("image/png"), bytes},
                             {QStringLiteral("mask"), QStringLiteral("b.png"),
                              QStringLiteral("image/png"), QByteArray()}}),
              "--B-1\r\nContent-Disposition: form-data; name=\"model\"\r\n\r\nm\r\n"
              "--B-1\r\nContent-Disposition: form-data; name=\"prompt\"\r\n\r\n"
              "two\nlines, \xc3\xa9\r\n"
              "--B-1\r\nContent-Disposition: form-data; name=\"image\"; filename=\"a.png\"\r\n"
              "Content-Type: image/png\r\n\r\n" +
                  bytes +
                  "\r\n"
                  "--B-1\r\nContent-Disposition: form-data; name=\"mask\"; filename=\"b.png\"\r\n"
                  "Content-Type: image/png\r\n\r\n\r\n"
                  "--B-1--\r\n");
}

TEST(MultipartBody, OfNothingIsItsEnd) {
    EXPECT_EQ(multipartBody(QStringLiteral("B"), {}, {}), "--B--\r\n");
}

} // namespace
} // namespace quillabrae::effects
