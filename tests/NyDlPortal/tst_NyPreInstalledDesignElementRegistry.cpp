#include <QDir>
#include <QFile>
#include <QRegularExpression>
#include <QStandardPaths>
#include <QTest>

#include "NyPreInstalledDesignElementRegistry.h"

using namespace Qt::Literals::StringLiterals;

class tst_NyPreInstalledDesignElementRegistry : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void cleanup();
    void builtInDesigns();
    void usersFileComesFirst();
    void brokenFileIsReported();
    void emptyFileIsReported();
    void badDesignsAreLeftOut();
    void nothingReleased();
    void firstKnownStyle();

private:
    QString m_file = QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) + u"/VELMORA/designs.xml"_s;
    void write(const QByteArray &content) const;
};

void tst_NyPreInstalledDesignElementRegistry::write(const QByteArray &content) const
{
    QVERIFY(QDir().mkpath(QFileInfo(m_file).path()));
    QFile file(m_file);
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(content), content.size());
}

void tst_NyPreInstalledDesignElementRegistry::cleanup()
{
    QFile::remove(m_file);
}

void tst_NyPreInstalledDesignElementRegistry::builtInDesigns()
{
    const NyPreInstalledDesignElementRegistry registry;
    QVERIFY(registry.styles().size() >= 5);
    const QStringList released = registry.quilloDesignElementIDs().toStringList(false);
    QVERIFY(released.size() >= 4);
    QVERIFY(released.size() < registry.styles().size());
    QCOMPARE(registry.defaultStyle().id.toString(), released.first());
    QVERIFY(registry.style(NyDesignElementID(u"velmora.style.gallery"_s)).release == NyDesignRelease::ManualOnly);
    QCOMPARE(NyPreInstalledDesignElementRegistry::instance().quilloDesignElementIDs().toStringList(false), released);
    for (const NyDesignStyle &style : registry.styles()) {
        QVERIFY(!style.name.isEmpty());
        QVERIFY(qAbs(style.coverBackground.lightness() - style.coverTextColor.lightness()) > 80);
        QVERIFY(qAbs(style.pageBackground.lightness() - style.textColor.lightness()) > 80);
    }
}

void tst_NyPreInstalledDesignElementRegistry::usersFileComesFirst()
{
    write("<designs><design id='z.own' name='Eigenes' proposal='true'><page background='#102030'/></design>"
          "<design id='a.other' proposal='yes'/></designs>");
    const NyPreInstalledDesignElementRegistry registry;
    QCOMPARE(registry.quilloDesignElementIDs().toStringList(false), QStringList({u"z.own"_s, u"a.other"_s}));
    QCOMPARE(registry.quilloDesignElementIDs().toStringList(true), QStringList({u"a.other"_s, u"z.own"_s}));
    QCOMPARE(registry.defaultStyle().name, u"Eigenes"_s);
    QCOMPARE(registry.defaultStyle().pageBackground, QColor(0x10, 0x20, 0x30));
    QCOMPARE(registry.style(NyDesignElementID(u"a.other"_s)).name, u"a.other"_s);
}

void tst_NyPreInstalledDesignElementRegistry::brokenFileIsReported()
{
    write("<designs>\n<design id='a'>");
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"designs.xml.*[23]"_s));
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"designs.xml.*holds no design, the built-in ones are used"_s));
    const NyPreInstalledDesignElementRegistry registry;
    QVERIFY(registry.quilloDesignElementIDs().count() >= 4);
}

void tst_NyPreInstalledDesignElementRegistry::emptyFileIsReported()
{
    write("<designs/>");
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"designs.xml.*holds no design, the built-in ones are used"_s));
    const NyPreInstalledDesignElementRegistry registry;
    QVERIFY(registry.quilloDesignElementIDs().count() >= 4);
}

void tst_NyPreInstalledDesignElementRegistry::badDesignsAreLeftOut()
{
    write("<designs>\n<design name='x'/>\n<design id='a,b'/>\n<design id='a' proposal='true'><page background='nocolor'/></design>\n"
          "<design id='a' name='again'/>\n</designs>");
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"designs.xml.*line 2 has a design without a usable id"_s));
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"designs.xml.*line 3 has a design without a usable id"_s));
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"designs.xml.*line 4 has no colour in \"background\" : \"nocolor\""_s));
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"designs.xml.*line 5 repeats the design \"a\""_s));
    const NyPreInstalledDesignElementRegistry registry;
    QCOMPARE(registry.quilloDesignElementIDs().toStringList(false), QStringList{u"a"_s});
    QCOMPARE(registry.styles().size(), 1);
    QCOMPARE(registry.styles().first().pageBackground, NyDesignStyle().pageBackground);
}

void tst_NyPreInstalledDesignElementRegistry::nothingReleased()
{
    write("<designs><design id='a'/><design id='b'/></designs>");
    const NyPreInstalledDesignElementRegistry registry;
    QVERIFY(registry.quilloDesignElementIDs().isEmpty());
    QCOMPARE(registry.defaultStyle().id.toString(), u"a"_s);
}

void tst_NyPreInstalledDesignElementRegistry::firstKnownStyle()
{
    write("<designs><design id='a' proposal='true'/><design id='b'/></designs>");
    const NyPreInstalledDesignElementRegistry registry;
    const auto first = [&](const QStringList &ids) {
        QList<NyDesignElementID> wanted;
        for (const QString &id : ids)
            wanted.append(NyDesignElementID(id));
        return registry.firstKnownStyle(wanted).id.toString();
    };
    QCOMPARE(first({u"gone"_s, u"b"_s, u"a"_s}), u"b"_s);
    QCOMPARE(first({u"gone"_s}), u"a"_s);
    QCOMPARE(first({}), u"a"_s);
}

QTEST_GUILESS_MAIN(tst_NyPreInstalledDesignElementRegistry)
#include "tst_NyPreInstalledDesignElementRegistry.moc"
