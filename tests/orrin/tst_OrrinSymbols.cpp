#include <QProcess>
#include <QTest>

/** Which symbols of other libraries the linked files need. */
class tst_OrrinSymbols : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void runtimeSymbols_data();
    void runtimeSymbols();
    void runsWithoutQt();

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
    QTest::newRow("orrin itself") << QStringLiteral(ORRIN_LIBRARY);
    QTest::newRow("a library that includes its interface") << QStringLiteral(ORRIN_READER);
}

void tst_OrrinSymbols::runtimeSymbols()
{
    QFETCH(QString, file);
    const QStringList undefined = lines(QStringLiteral("nm"), {QStringLiteral("-D"), QStringLiteral("--undefined-only"), file});
    QVERIFY(undefined.size() > 3);
    QStringList names;
    for (const QString &line : undefined) {
        const QString name = line.simplified().section(QLatin1Char(' '), -1).section(QLatin1Char('@'), 0, 0);
        if (name.contains(QStringLiteral("Ort")) || name.contains(QStringLiteral("onnx"), Qt::CaseInsensitive))
            names.append(name);
    }
    if (ORRIN_RUNTIME)
        QCOMPARE(names, QStringList{QStringLiteral("OrtGetApiBase")});
    else
        QCOMPARE(names, QStringList());
}

void tst_OrrinSymbols::runsWithoutQt()
{
    const QStringList dynamic = lines(QStringLiteral("readelf"), {QStringLiteral("-d"), QStringLiteral(ORRIN_LIBRARY)});
    QVERIFY(!dynamic.filter(QStringLiteral("libstdc++")).isEmpty());
    QVERIFY2(dynamic.filter(QStringLiteral("Qt")).isEmpty(), qPrintable(dynamic.join(QLatin1Char('\n'))));
    QCOMPARE(dynamic.filter(QStringLiteral("SONAME")).filter(QStringLiteral("[liborrin.so]")).size(), 1);
}

QTEST_GUILESS_MAIN(tst_OrrinSymbols)
#include "tst_OrrinSymbols.moc"
