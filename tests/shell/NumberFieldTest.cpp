// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/controls/NumberField.h"
#include "store/StoreTest.h"

#include <QLocale>
#include <QTest>

#include <gtest/gtest.h>

namespace quillabrae::shell {
namespace {

/// The user's language for as long as it lives.
class Language {
public:
    explicit Language(QLocale::Language language) : m_former(QLocale()) {
        QLocale::setDefault(QLocale(language));
    }
    ~Language() { QLocale::setDefault(m_former); }
    Language(const Language&) = delete;
    Language& operator=(const Language&) = delete;

private:
    QLocale m_former;
};

double typed(NumberField& field, const QString& text) {
    field.selectAll();
    QTest::keyClicks(&field, text);
    return field.value();
}

TEST(NumberField, ShowsNoNeedlessDecimals) {
    NumberField field;
    field.setValue(1234567);
    EXPECT_EQ(field.text(), QStringLiteral("1234567"));
    field.setValue(118.1102);
    EXPECT_EQ(field.text(), QStringLiteral("118.11"));
    field.setValue(0.5);
    EXPECT_EQ(field.text(), QStringLiteral("0.5"));
}

TEST(NumberField, ReadsACommaAndAPoint) {
    NumberField field;
    EXPECT_EQ(typed(field, QStringLiteral("2.5")), 2.5);
    EXPECT_EQ(typed(field, QStringLiteral("3,5")), 3.5);
}

TEST(NumberField, WritesAsTheUsersLanguageDoes) {
    const Language german(QLocale::German);
    NumberField field;
    field.setValue(1234.5);
    EXPECT_EQ(field.text(), QStringLiteral("1234,5"));
    EXPECT_EQ(typed(field, QStringLiteral("2,5")), 2.5);
    EXPECT_EQ(typed(field, QStringLiteral("3.5")), 3.5);
    EXPECT_EQ(field.text(), QStringLiteral("3,5"));
}

TEST(NumberField, StepsByKeysAndWheel) {
    NumberField field;
    field.setValue(10);
    QTest::keyClick(&field, Qt::Key_Up);
    EXPECT_EQ(field.value(), 11.0);
    QTest::keyClick(&field, Qt::Key_PageDown);
    EXPECT_EQ(field.value(), 1.0);
    QTest::keyClick(&field, Qt::Key_PageDown);
    EXPECT_EQ(field.value(), 0.0);
    constexpr int notch = 120;
    QWheelEvent wheel(QPointF(2, 2), QPointF(2, 2), QPoint(), QPoint(0, notch), Qt::NoButton,
                      Qt::NoModifier, Qt::NoScrollPhase, false);
    QCoreApplication::sendEvent(&field, &wheel);
    EXPECT_EQ(field.value(), 1.0);
}

} // namespace
} // namespace quillabrae::shell
