#include <NyToastMessage.h>

#include <QTest>

using namespace Qt::Literals::StringLiterals;

class tst_NyToastMessage : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void keepsItsFields();
    void clearPreviousMessages_data();
    void clearPreviousMessages();
    void imageUrl_data();
    void imageUrl();
    void toString_data();
    void toString();
};

void tst_NyToastMessage::keepsItsFields()
{
    const NyToastMessage message(u"Titel %1"_s, u"Text"_s, QFileInfo(u"/tmp/a.png"_s), u"a.nqp"_s, true);
    NyToastMessage copy(QString(), QString(), QFileInfo(), QString(), false);
    copy = message;
    for (const NyToastMessage &each : {message, copy, NyToastMessage(message)}) {
        QCOMPARE(each.title(), u"Titel %1"_s);
        QCOMPARE(each.description(), u"Text"_s);
        QCOMPARE(each.image().filePath(), u"/tmp/a.png"_s);
        QCOMPARE(each.id(), u"a.nqp"_s);
        QVERIFY(each.showLaunchButtons());
    }
}

void tst_NyToastMessage::clearPreviousMessages_data()
{
    QTest::addColumn<QString>("id");
    QTest::addColumn<bool>("hasButtons");
    QTest::addColumn<bool>("expected");
    QTest::newRow("no id, no buttons") << QString() << false << false;
    QTest::newRow("no id, buttons") << QString() << true << false;
    QTest::newRow("id, no buttons") << u"a.nqp"_s << false << true;
    QTest::newRow("id, buttons") << u"a.nqp"_s << true << true;
    QTest::newRow("blank id") << u" "_s << false << true;
}

void tst_NyToastMessage::clearPreviousMessages()
{
    QFETCH(QString, id);
    QFETCH(bool, hasButtons);
    QTEST(NyToastMessage(u"T"_s, u"D"_s, QFileInfo(), id, hasButtons).clearPreviousMessages(), "expected");
}

void tst_NyToastMessage::imageUrl_data()
{
    QTest::addColumn<QFileInfo>("image");
    QTest::addColumn<QString>("expected");
    QTest::newRow("empty") << QFileInfo() << QString();
    QTest::newRow("empty path") << QFileInfo(QString()) << QString();
    QTest::newRow("plain") << QFileInfo(u"/tmp/a.png"_s) << u"file:///tmp/a.png"_s;
    QTest::newRow("hostile") << QFileInfo(u"/tmp/a b&\"ü\"%1?#.png"_s) << u"file:///tmp/a b&%22ü%22%251%3F%23.png"_s;
    QTest::newRow("relative") << QFileInfo(u"a.png"_s) << QUrl::fromLocalFile(QDir::currentPath() + u"/a.png"_s).toString();
}

void tst_NyToastMessage::imageUrl()
{
    QFETCH(QFileInfo, image);
    QFETCH(QString, expected);
    const QUrl url = NyToastMessage(u"T"_s, u"D"_s, image, u"a.nqp"_s, true).imageUrl();
    QCOMPARE(url.isValid(), !expected.isEmpty());
    QCOMPARE(url.toString(), expected);
    if (url.isValid())
        QCOMPARE(url.toLocalFile(), image.absoluteFilePath());
}

void tst_NyToastMessage::toString_data()
{
    QTest::addColumn<QString>("id");
    QTest::addColumn<bool>("hasButtons");
    QTest::addColumn<QString>("expected");
    QTest::newRow("buttons")
        << u"a.nqp"_s << true
        << u"Toast Message\nTitle           = Der Titel\nDescription     = Der Text\nId              = a.nqp\nShowing Buttons = Yes"_s;
    QTest::newRow("no buttons")
        << QString() << false
        << u"Toast Message\nTitle           = Der Titel\nDescription     = Der Text\nId              = \nShowing Buttons = No"_s;
}

void tst_NyToastMessage::toString()
{
    QFETCH(QString, id);
    QFETCH(bool, hasButtons);
    QTEST(NyToastMessage(u"Der Titel"_s, u"Der Text"_s, QFileInfo(u"/tmp/a.png"_s), id, hasButtons).toString(), "expected");
}

QTEST_GUILESS_MAIN(tst_NyToastMessage)
#include "tst_NyToastMessage.moc"
