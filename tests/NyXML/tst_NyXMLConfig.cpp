#include <QTest>

#include <atomic>
#include <thread>
#include <vector>

#include <QDir>
#include <QFile>
#include <QRegularExpression>
#include <QTemporaryDir>

#include <NyQuilloServiceConfigBase.h>
#include <NyXMLConfig.h>

using namespace Qt::Literals::StringLiterals;

class tst_NyXMLConfig : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void values();
    void missingSectionsAndAttributes();
    void valuesOfTheWrongTypeAreReportedOnce();
    void firstSectionOfANameCounts();
    void deeperElementsAreNoSections();
    void brokenFileIsEmpty();
    void missingFileIsEmpty();
    void reloading();
    void reloadingReportsAgain();
    void documentElementOutlivesReload();
    void manyReaders();

    void builtInServiceFile();
    void serviceFileOfTheUser();
    void brokenServiceFileOfTheUser();

private:
    void write(const QByteArray &content) const
    {
        QFile file(path());
        QVERIFY(file.open(QIODevice::WriteOnly));
        QCOMPARE(file.write(content), content.size());
    }
    QString path() const { return m_folder->filePath(u"configuration.xml"_s); }
    NyResourceFile resource() const { return NyResourceFile(path()); }

    std::unique_ptr<QTemporaryDir> m_folder;
};

void tst_NyXMLConfig::init()
{
    QTest::failOnWarning(QRegularExpression(u"."_s));
    m_folder = std::make_unique<QTemporaryDir>();
}

void tst_NyXMLConfig::values()
{
    write("<any><recentFiles minimumPhotos=' 40 ' registryIdentifier=' a.b '/><debug enabled='Yes' printClassification='off'/></any>");
    const NyXMLConfig config(resource());
    QCOMPARE(config.getIntAttributeOfNode(u"recentFiles"_s, u"minimumPhotos"_s, 52), 40);
    QCOMPARE(config.getAttributeOfNode(u"recentFiles"_s, u"registryIdentifier"_s, u"def"_s), u" a.b "_s);
    QCOMPARE(config.getBoolAttributeOfNode(u"debug"_s, u"enabled"_s, false), true);
    QCOMPARE(config.getBoolAttributeOfNode(u"debug"_s, u"printClassification"_s, true), false);
    QCOMPARE(config.documentElement().tagName(), u"any"_s);
}

void tst_NyXMLConfig::missingSectionsAndAttributes()
{
    write("<any><recentFiles empty=''/></any>");
    const NyXMLConfig config(resource());
    QCOMPARE(config.getIntAttributeOfNode(u"recentFiles"_s, u"minimumPhotos"_s, 52), 52);
    QCOMPARE(config.getIntAttributeOfNode(u"suggestion"_s, u"minimumPhotos"_s, 52), 52);
    QCOMPARE(config.getIntAttributeOfNode(QString(), QString(), 52), 52);
    QCOMPARE(config.getBoolAttributeOfNode(u"debug"_s, u"enabled"_s, true), true);
    QCOMPARE(config.getAttributeOfNode(u"recentFiles"_s, u"empty"_s, u"def"_s), u""_s);
    QCOMPARE(config.getAttributeOfNode(u"recentFiles"_s, u"other"_s, u"def"_s), u"def"_s);
    // Names are told apart by their case.
    QCOMPARE(config.getAttributeOfNode(u"recentfiles"_s, u"empty"_s, u"def"_s), u"def"_s);
}

void tst_NyXMLConfig::valuesOfTheWrongTypeAreReportedOnce()
{
    write("<any><a n='many' f='perhaps'/></any>");
    const NyXMLConfig config(resource());
    QTest::ignoreMessage(QtWarningMsg, (u"file "_s + path() + u" section a attribute n is no number: many"_s).toUtf8().constData());
    QTest::ignoreMessage(QtWarningMsg, (u"file "_s + path() + u" section a attribute f is no yes or no: perhaps"_s).toUtf8().constData());
    for (int i = 0; i < 3; ++i) {
        QCOMPARE(config.getIntAttributeOfNode(u"a"_s, u"n"_s, 5), 5);
        QCOMPARE(config.getBoolAttributeOfNode(u"a"_s, u"f"_s, true), true);
    }
    QCOMPARE(config.getAttributeOfNode(u"a"_s, u"n"_s, QString()), u"many"_s);
}

void tst_NyXMLConfig::firstSectionOfANameCounts()
{
    write("<any><a x='1'/><b/><a x='2' y='3'/></any>");
    const NyXMLConfig config(resource());
    QCOMPARE(config.getIntAttributeOfNode(u"a"_s, u"x"_s, 0), 1);
    QCOMPARE(config.getIntAttributeOfNode(u"a"_s, u"y"_s, 0), 0);
}

void tst_NyXMLConfig::deeperElementsAreNoSections()
{
    write("<any x='1'><outer><inner x='2'/></outer></any>");
    const NyXMLConfig config(resource());
    QCOMPARE(config.getIntAttributeOfNode(u"inner"_s, u"x"_s, 0), 0);
    QCOMPARE(config.getIntAttributeOfNode(u"any"_s, u"x"_s, 0), 0);
}

void tst_NyXMLConfig::brokenFileIsEmpty()
{
    write("<any><a x='1'/>\n<b>");
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"^cannot parse "_s + path() + u" line 2 column "_s));
    const NyXMLConfig config(resource());
    QCOMPARE(config.getIntAttributeOfNode(u"a"_s, u"x"_s, 7), 7);
    QVERIFY(config.documentElement().isNull());
}

void tst_NyXMLConfig::missingFileIsEmpty()
{
    // A name that is nowhere is no fault: the defaults are meant.
    const NyXMLConfig unknown(NyResourceFile(u"no such file.xml"_s));
    QCOMPARE(unknown.getIntAttributeOfNode(u"a"_s, u"x"_s, 7), 7);
    QVERIFY(unknown.documentElement().isNull());
    // A path that was given and is not there is one.
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"^cannot read "_s + path()));
    const NyXMLConfig missing(resource());
    QCOMPARE(missing.getIntAttributeOfNode(u"a"_s, u"x"_s, 7), 7);
}

void tst_NyXMLConfig::reloading()
{
    write("<any><a x='1'/></any>");
    NyXMLConfig config(resource());
    write("<any><a x='2'/></any>");
    QCOMPARE(config.getIntAttributeOfNode(u"a"_s, u"x"_s, 0), 1);
    config.reload();
    QCOMPARE(config.getIntAttributeOfNode(u"a"_s, u"x"_s, 0), 2);
}

void tst_NyXMLConfig::reloadingReportsAgain()
{
    write("<any><a x='one'/></any>");
    NyXMLConfig config(resource());
    for (int i = 0; i < 2; ++i) {
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"section a attribute x is no number: one$"_s));
        QCOMPARE(config.getIntAttributeOfNode(u"a"_s, u"x"_s, 0), 0);
        config.reload();
    }
}

void tst_NyXMLConfig::documentElementOutlivesReload()
{
    write("<any><eventFinder mode='m'><eventRecognizer maxPhotos='5'/></eventFinder></any>");
    NyXMLConfig config(resource());
    const QDomElement finder = config.documentElement().firstChildElement(u"eventFinder"_s);
    const QDomElement root = config.documentElement();
    write("<other/>");
    config.reload();
    QCOMPARE(finder.attribute(u"mode"_s), u"m"_s);
    QCOMPARE(finder.firstChildElement(u"eventRecognizer"_s).attribute(u"maxPhotos"_s), u"5"_s);
    QCOMPARE(root.firstChildElement(u"eventFinder"_s).attribute(u"mode"_s), u"m"_s);
    QCOMPARE(config.documentElement().tagName(), u"other"_s);
}

void tst_NyXMLConfig::manyReaders()
{
    write("<any><a x='1' y='text' z='true'/></any>");
    NyXMLConfig config(resource());
    std::atomic<int> wrong{0};
    std::vector<std::thread> threads;
    for (int t = 0; t < 4; ++t) {
        threads.emplace_back([&config, &wrong] {
            for (int i = 0; i < 5000; ++i) {
                if (config.getIntAttributeOfNode(QStringLiteral("a"), QStringLiteral("x"), 0) != 1
                    || config.getAttributeOfNode(QStringLiteral("a"), QStringLiteral("y"), QString()) != u"text"
                    || !config.getBoolAttributeOfNode(QStringLiteral("a"), QStringLiteral("z"), false)
                    || config.documentElement().tagName() != u"any")
                    ++wrong;
            }
        });
    }
    for (int i = 0; i < 50; ++i)
        config.reload();
    for (std::thread &thread : threads)
        thread.join();
    QCOMPARE(wrong.load(), 0);
}

void tst_NyXMLConfig::builtInServiceFile()
{
    QCOMPARE(NyResourceFile(u"quilloservice.xml"_s).path(), u":/velmora/quilloservice.xml"_s);
    const NyQuilloServiceConfigBase config;
    QVERIFY(!config.documentElement().isNull());
    // It leaves every value to the accessors' defaults.
    for (QDomElement section = config.documentElement().firstChildElement(); !section.isNull(); section = section.nextSiblingElement()) {
        QVERIFY(!section.hasAttributes());
        QVERIFY(section.tagName() != u"eventFinder" || !section.firstChildElement(u"eventRecognizer"_s).hasAttributes());
    }
    QCOMPARE(config.getIntAttributeOfNode(u"recentFiles"_s, u"minimumPhotos"_s, 52), 52);
}

void tst_NyXMLConfig::serviceFileOfTheUser()
{
    const QString users = QDir::homePath() + u"/.config/VELMORA/quilloservice.xml"_s;
    QVERIFY(QDir().mkpath(QFileInfo(users).absolutePath()));
    QFile file(users);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write("<quilloservice><recentFiles minimumPhotos='4'/></quilloservice>");
    file.close();
    const NyQuilloServiceConfigBase config;
    QVERIFY(file.remove());
    QCOMPARE(config.getIntAttributeOfNode(u"recentFiles"_s, u"minimumPhotos"_s, 52), 4);
}

void tst_NyXMLConfig::brokenServiceFileOfTheUser()
{
    // It counts as empty: the user sees the warning, not values from a file of somebody else.
    const QString users = QDir::homePath() + u"/.config/VELMORA/quilloservice.xml"_s;
    QVERIFY(QDir().mkpath(QFileInfo(users).absolutePath()));
    QFile file(users);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write("<quilloservice>\n <recentFiles minimumPhotos='4'>\n</quilloservice>");
    file.close();
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"^cannot parse "_s + users + u" line 3 column \\d+ "_s));
    const NyQuilloServiceConfigBase config;
    QVERIFY(file.remove());
    QCOMPARE(config.getIntAttributeOfNode(u"recentFiles"_s, u"minimumPhotos"_s, 52), 52);
}

QTEST_GUILESS_MAIN(tst_NyXMLConfig)
#include "tst_NyXMLConfig.moc"
