#include <QTest>

#include <QFile>
#include <QRegularExpression>
#include <QTemporaryDir>

#include <NyUniqueFilenameMaker.h>

using namespace Qt::Literals::StringLiterals;

class tst_NyUniqueFilenameMaker : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void names_data();
    void names();
    void linkThatLeadsNowhere();
    void longNames_data();
    void longNames();
    void missingFolder();
    void severalInARow();
};

void tst_NyUniqueFilenameMaker::names_data()
{
    QTest::addColumn<QStringList>("present");
    QTest::addColumn<QString>("wanted");
    QTest::addColumn<QString>("separator");
    QTest::addColumn<QString>("made");

    QTest::newRow("free") << QStringList() << u"a.nqp"_s << u"_"_s << u"a.nqp"_s;
    QTest::newRow("taken") << QStringList{u"a.nqp"_s} << u"a.nqp"_s << u"_"_s << u"a_2.nqp"_s;
    QTest::newRow("second taken") << QStringList{u"a.nqp"_s, u"a_2.nqp"_s} << u"a.nqp"_s << u"_"_s << u"a_3.nqp"_s;
    QTest::newRow("gap is filled") << QStringList{u"a.nqp"_s, u"a_3.nqp"_s} << u"a.nqp"_s << u"_"_s << u"a_2.nqp"_s;
    QTest::newRow("preview left over") << QStringList{u"a.nqp.png"_s} << u"a.nqp"_s << u"_"_s << u"a_2.nqp"_s;
    QTest::newRow("description left over") << QStringList{u"a.nqp.json"_s} << u"a.nqp"_s << u"_"_s << u"a_2.nqp"_s;
    QTest::newRow("preview of the second left over") << QStringList{u"a.nqp"_s, u"a_2.nqp.png"_s} << u"a.nqp"_s << u"_"_s << u"a_3.nqp"_s;
    QTest::newRow("neighbour with another ending")
        << QStringList{u"a.nqpx"_s, u"a"_s, u"a.nqp.bak"_s} << u"a.nqp"_s << u"_"_s << u"a.nqp"_s;
    QTest::newRow("other case is another name") << QStringList{u"A.nqp"_s} << u"a.nqp"_s << u"_"_s << u"a.nqp"_s;
    QTest::newRow("other separator") << QStringList{u"a.nqp"_s} << u"a.nqp"_s << u" - "_s << u"a - 2.nqp"_s;
    QTest::newRow("no separator") << QStringList{u"a.nqp"_s} << u"a.nqp"_s << u""_s << u"a2.nqp"_s;
    QTest::newRow("several dots") << QStringList{u"2026.07.02.nqp"_s} << u"2026.07.02.nqp"_s << u"_"_s << u"2026.07.02_2.nqp"_s;
    QTest::newRow("no ending") << QStringList{u"a"_s} << u"a"_s << u"_"_s << u"a_2"_s;
    QTest::newRow("dot at the end") << QStringList{u"a."_s} << u"a."_s << u"_"_s << u"a_2."_s;
    QTest::newRow("only an ending") << QStringList{u".nqp"_s} << u".nqp"_s << u"_"_s << u"_2.nqp"_s;
    QTest::newRow("hostile") << QStringList{u"%1 \"a\"\n\u00e4.nqp"_s} << u"%1 \"a\"\n\u00e4.nqp"_s << u"_"_s
                             << u"%1 \"a\"\n\u00e4_2.nqp"_s;
}

void tst_NyUniqueFilenameMaker::names()
{
    QFETCH(QStringList, present);
    QFETCH(QString, wanted);
    QFETCH(QString, separator);
    QFETCH(QString, made);
    QTemporaryDir folder;
    for (const QString &name : std::as_const(present)) {
        QFile file(folder.filePath(name));
        QVERIFY(file.open(QIODevice::WriteOnly));
    }
    const QFileInfo result = NyUniqueFilenameMaker::makeHumanCompatibleUniqueFileName(QFileInfo(folder.filePath(wanted)), separator);
    QCOMPARE(result.absoluteFilePath(), folder.filePath(made));
    QVERIFY(!QFile::exists(result.absoluteFilePath()));
}

void tst_NyUniqueFilenameMaker::linkThatLeadsNowhere()
{
    QTemporaryDir folder;
    QVERIFY(QFile::link(folder.filePath(u"nowhere"_s), folder.filePath(u"a.nqp"_s)));
    const QFileInfo result = NyUniqueFilenameMaker::makeHumanCompatibleUniqueFileName(QFileInfo(folder.filePath(u"a.nqp"_s)), u"_"_s);
    QCOMPARE(result.fileName(), u"a_2.nqp"_s);
}

void tst_NyUniqueFilenameMaker::longNames_data()
{
    QTest::addColumn<QString>("base");
    QTest::newRow("ASCII") << QString(250, u'x');
    QTest::newRow("two bytes a letter") << QString(125, u'\u00e4');
    QTest::newRow("four bytes a sign") << QString::fromUcs4(U"\U0001F4F7").repeated(62);
}

void tst_NyUniqueFilenameMaker::longNames()
{
    QFETCH(QString, base);
    QTemporaryDir folder;
    const QString name = base + u".nqp"_s;
    QFile file(folder.filePath(name));
    QVERIFY(file.open(QIODevice::WriteOnly));
    const QFileInfo result = NyUniqueFilenameMaker::makeHumanCompatibleUniqueFileName(QFileInfo(file), u"_"_s);
    QVERIFY(result.fileName().endsWith(u"_2.nqp"_s));
    // All files of the group can be made.
    for (const QString &ending : {u""_s, u".png"_s, u".json"_s}) {
        QFile member(result.absoluteFilePath() + ending);
        QVERIFY2(member.open(QIODevice::WriteOnly), qPrintable(member.fileName()));
    }
    // Cut between signs, not inside one.
    QVERIFY(base.startsWith(result.completeBaseName().chopped(2)));
    QVERIFY(!result.completeBaseName().chopped(2).back().isHighSurrogate());
}

void tst_NyUniqueFilenameMaker::missingFolder()
{
    const QFileInfo wanted(u"/nowhere/a.nqp"_s);
    QCOMPARE(NyUniqueFilenameMaker::makeHumanCompatibleUniqueFileName(wanted, u"_"_s), wanted);
}

void tst_NyUniqueFilenameMaker::severalInARow()
{
    QTemporaryDir folder;
    const QFileInfo wanted(folder.filePath(u"a.nqp"_s));
    QStringList made;
    for (int i = 0; i < 12; ++i) {
        QFile file(NyUniqueFilenameMaker::makeHumanCompatibleUniqueFileName(wanted, u"_"_s).absoluteFilePath());
        QVERIFY(!file.exists());
        QVERIFY(file.open(QIODevice::WriteOnly));
        made.append(QFileInfo(file).fileName());
    }
    QCOMPARE(made.constFirst(), u"a.nqp"_s);
    QCOMPARE(made.constLast(), u"a_12.nqp"_s);
}

QTEST_APPLESS_MAIN(tst_NyUniqueFilenameMaker)
#include "tst_NyUniqueFilenameMaker.moc"
