#include <QLibrary>
#include <QProcess>
#include <QTest>

#include "TestSupport.h"

/** Which symbols of other libraries the linked files need. */
class tst_OrrinSymbols : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void runtimeSymbols_data();
    void runtimeSymbols();
    void needsNeitherQtNorTheRuntime();
    void loadsTheRuntimeWithTheFirstModel();

private:
    static QStringList lines(const QString &program, const QStringList &arguments);
};

QStringList tst_OrrinSymbols::lines(const QString &program, const QStringList &arguments)
{
    QProcess process;
    process.start(program, arguments);
    if (!process.waitForStarted() || !process.waitForFinished() || process.exitCode() != 0)
        return {};
    return QString::fromUtf8(process.readAllStandardOutput()).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
}

void tst_OrrinSymbols::runtimeSymbols_data()
{
    QTest::addColumn<QString>("file");
    QTest::addColumn<QStringList>("expected");
    QTest::newRow("orrin itself") << QStringLiteral(ORRIN_LIBRARY) << QStringList();
    QTest::newRow("a library that includes its interface") << QStringLiteral(ORRIN_READER) << QStringList{QStringLiteral("OrtGetApiBase")};
}

void tst_OrrinSymbols::runtimeSymbols()
{
    QFETCH(QString, file);
    QFETCH(QStringList, expected);
    const QStringList undefined = lines(QStringLiteral("nm"), {QStringLiteral("-D"), QStringLiteral("--undefined-only"), file});
    QVERIFY(undefined.size() > 3);
    QStringList names;
    for (const QString &line : undefined) {
        const QString name = line.simplified().section(QLatin1Char(' '), -1).section(QLatin1Char('@'), 0, 0);
        if (name.contains(QStringLiteral("Ort")) || name.contains(QStringLiteral("onnx"), Qt::CaseInsensitive))
            names.append(name);
    }
    QCOMPARE(names, expected);
}

void tst_OrrinSymbols::needsNeitherQtNorTheRuntime()
{
    const QStringList dynamic = lines(QStringLiteral("readelf"), {QStringLiteral("-d"), QStringLiteral(ORRIN_LIBRARY)});
    QVERIFY(!dynamic.filter(QStringLiteral("libstdc++")).isEmpty());
    QVERIFY2(dynamic.filter(QStringLiteral("Qt")).isEmpty(), qPrintable(dynamic.join(QLatin1Char('\n'))));
    const QStringList needed = dynamic.filter(QStringLiteral("(NEEDED)"));
    QVERIFY2(needed.filter(QStringLiteral("onnxruntime")).isEmpty(), qPrintable(needed.join(QLatin1Char('\n'))));
    QCOMPARE(dynamic.filter(QStringLiteral("SONAME")).filter(QStringLiteral("[liborrin.so]")).size(), 1);
}

void tst_OrrinSymbols::loadsTheRuntimeWithTheFirstModel()
{
    const auto isLoaded = [] { return TestSupport::readFile(QStringLiteral("/proc/self/maps")).contains("libonnxruntime"); };
    QLibrary reader(QStringLiteral(ORRIN_READER));
    QVERIFY2(reader.load(), qPrintable(reader.errorString()));
    QVERIFY(!isLoaded());
    const auto usesModels = reinterpret_cast<int (*)(const char *)>(reader.resolve("orrinReaderUsesModels"));
    QVERIFY(usesModels);

    const QString folder = TestSupport::dataFolder() + QStringLiteral("/models/broken");
    QVERIFY(TestSupport::writeFile(folder + QStringLiteral("/model.json"),
        R"({"file": "a.onnx", "input": {"name": "pixels", "width": 8, "height": 8}, "outputs": {"scores": "s"}, "labels": ["a"]})"));
    QVERIFY(TestSupport::writeFile(folder + QStringLiteral("/a.onnx"), "no model"));
    QCOMPARE(usesModels(QFile::encodeName(folder).constData()), 0);
    if (QByteArray(ORRIN_RUNTIME).isEmpty())
        QSKIP("there is no ONNX Runtime on this machine");
    QVERIFY(isLoaded());
}

QTEST_GUILESS_MAIN(tst_OrrinSymbols)
#include "tst_OrrinSymbols.moc"
