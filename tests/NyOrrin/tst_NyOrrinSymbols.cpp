#include <QProcess>
#include <QTest>

/** A library that uses NyOrrin meets ONNX Runtime in one symbol only. */
class tst_NyOrrinSymbols : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void runtimeSymbols();
};

void tst_NyOrrinSymbols::runtimeSymbols()
{
    QProcess nm;
    nm.start(QStringLiteral("nm"), {QStringLiteral("-D"), QStringLiteral("--undefined-only"), QStringLiteral(NYORRIN_READER)});
    QVERIFY(nm.waitForStarted() && nm.waitForFinished());
    QCOMPARE(nm.exitCode(), 0);
    const QStringList undefined = QString::fromUtf8(nm.readAllStandardOutput()).split(QLatin1Char('\n'));
    QVERIFY(!undefined.filter(QStringLiteral("NyOrrinAccess")).isEmpty());
    const QStringList ofRuntime = undefined.filter(QStringLiteral(" Ort"));
    QCOMPARE(int(ofRuntime.size()), 1);
    QCOMPARE(int(ofRuntime.filter(QStringLiteral(" OrtGetApiBase")).size()), 1);
}

QTEST_GUILESS_MAIN(tst_NyOrrinSymbols)
#include "tst_NyOrrinSymbols.moc"
