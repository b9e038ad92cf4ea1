// SPDX-License-Identifier: MIT
#include "platform/common/ComposedSpelling.h"
#include "tests/support/TestProgram.h"

#include <QTest>

class ComposedSpellingTest : public QObject {
    Q_OBJECT

private slots:
    void a_letter_and_its_accent_become_one_data();
    void a_letter_and_its_accent_become_one();
};

void ComposedSpellingTest::a_letter_and_its_accent_become_one_data()
{
    QTest::addColumn<QByteArray>("path");
    QTest::addColumn<QByteArray>("composed");
    const auto row = [](const char *name, const QByteArray &path, const QByteArray &composed) {
        QTest::newRow(name) << path << composed;
    };
    row("plain", "/a/b c.png", "/a/b c.png");
    row("in two parts",
        "/e\xcc\x81"
        "cran.png",
        "/\xc3\xa9"
        "cran.png");
    row("in one piece",
        "/\xc3\xa9"
        "cran.png",
        "/\xc3\xa9"
        "cran.png");
    row("in a folder's name", "/e\xcc\x81/a", "/\xc3\xa9/a");
    row("an apostrophe stays one", "/d\xe2\x80\x99", "/d\xe2\x80\x99");
    row("a letter outside the first plane", "/\xf0\x9f\x93\x81", "/\xf0\x9f\x93\x81");
    row("no UTF-8", "/e\xcc\x81\xff", "/e\xcc\x81\xff");
}

void ComposedSpellingTest::a_letter_and_its_accent_become_one()
{
    QFETCH(QByteArray, path);
    QTEST(composedSpelling(path), "composed");
}

PARKLET_TEST(ComposedSpellingTest)

#include "ComposedSpellingTest.moc"
