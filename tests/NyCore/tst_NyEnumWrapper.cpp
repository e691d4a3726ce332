#include <QTest>

#include <atomic>
#include <thread>
#include <vector>

#include <NyEnumWrapper.h>

using namespace Qt::Literals::StringLiterals;

namespace
{

enum class Colour : int { None = 0, Red = 1, Green = 2, Blue = 4 };

class ColourWrapper : public NyEnumWrapper<Colour>
{
public:
    explicit ColourWrapper(Colour colour = Colour::None)
        : NyEnumWrapper<Colour>(colour)
    {
    }
    explicit ColourWrapper(const QString &text) { setValue(enumToStringTable()->decodeCSV(text)); }

    void fillTable(NyEnumToStringTable<Colour> *table) const override
    {
        ++fillings;
        table->insert(QString(), Colour::None);
        table->insert(u"none"_s, Colour::None);
        table->insert(u"Red"_s, Colour::Red);
        table->insert(u"rot"_s, Colour::Red);
        table->insert(u"Green"_s, Colour::Green);
        table->insert(u"BLUE"_s, Colour::Blue);
    }

    static inline std::atomic<int> fillings{0};
};

/** Counts the calls that come through the virtual table. */
class CountingWrapper : public ColourWrapper
{
public:
    using ColourWrapper::ColourWrapper;
    using ColourWrapper::expandTo;
    void expandTo(Colour colour) override
    {
        ++calls;
        ColourWrapper::expandTo(colour);
    }
    int calls = 0;
};

// No text at all for 0: what an enumeration looks like whose 0 is a real member but not in the table.
enum Sparse : int { SparseOne = 1 };

class SparseWrapper : public NyEnumWrapper<Sparse>
{
public:
    using NyEnumWrapper<Sparse>::NyEnumWrapper;
    void fillTable(NyEnumToStringTable<Sparse> *table) const override { table->insert(u"one"_s, SparseOne); }
};

// A table that is asked for by many threads at once.
enum class Contended : int { A = 1 };

class ContendedWrapper : public NyEnumWrapper<Contended>
{
public:
    using NyEnumWrapper<Contended>::NyEnumWrapper;
    void fillTable(NyEnumToStringTable<Contended> *table) const override
    {
        ++fillings;
        for (int i = 0; i < 1000; ++i)
            table->insert(u"name%1"_s.arg(i), static_cast<Contended>(i + 1));
    }

    static inline std::atomic<int> fillings{0};
};

Colour operator|(Colour a, Colour b)
{
    return static_cast<Colour>(static_cast<int>(a) | static_cast<int>(b));
}

} // namespace

class tst_NyEnumWrapper : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { QTest::failOnWarning(QRegularExpression(u"."_s)); }
    void decoding_data();
    void decoding();
    void encoding_data();
    void encoding();
    void valueWithoutText();
    void laterInsertionWinsDecodingFirstWinsEncoding();
    void comparisons();
    void bitOperations();
    void expandingByWrapperCallsTheVirtualForm();
    void validity();
    void tableIsMadeOnce();
};

void tst_NyEnumWrapper::decoding_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("value");

    QTest::newRow("null") << QString() << 0;
    QTest::newRow("empty") << u""_s << 0;
    QTest::newRow("none") << u"none"_s << 0;
    QTest::newRow("one") << u"Red"_s << 1;
    QTest::newRow("other case") << u"rEd"_s << 1;
    QTest::newRow("blanks around") << u" \tred\n "_s << 1;
    QTest::newRow("blank inside") << u"r ed"_s << 0;
    QTest::newRow("second text") << u"ROT"_s << 1;
    QTest::newRow("two") << u"red,blue"_s << 5;
    QTest::newRow("two with blanks") << u" red , blue "_s << 5;
    QTest::newRow("twice the same") << u"red,red"_s << 1;
    QTest::newRow("empty parts") << u"red,,"_s << 1;
    QTest::newRow("only commas") << u",,,"_s << 0;
    QTest::newRow("unknown") << u"yellow"_s << 0;
    QTest::newRow("unknown beside known") << u"yellow,BLUE"_s << 4;
    QTest::newRow("other separator") << u"red;blue"_s << 0;
    QTest::newRow("number") << u"1"_s << 0;
    QTest::newRow("sentinel as text") << u"-260570"_s << 0;
}

void tst_NyEnumWrapper::decoding()
{
    QFETCH(QString, text);
    QFETCH(int, value);
    QCOMPARE(static_cast<int>(ColourWrapper().enumToStringTable()->decodeCSV(text)), value);
    QCOMPARE(static_cast<int>(ColourWrapper(text).value()), value);
}

void tst_NyEnumWrapper::encoding_data()
{
    QTest::addColumn<int>("value");
    QTest::addColumn<QString>("whole");
    QTest::addColumn<QStringList>("list");
    QTest::addColumn<QString>("csv");

    QTest::newRow("zero") << 0 << u""_s << QStringList() << u""_s;
    QTest::newRow("negative") << -1 << u""_s << QStringList() << u""_s;
    QTest::newRow("one bit") << 1 << u"Red"_s << QStringList{u"Red"_s} << u"Red"_s;
    QTest::newRow("two bits") << 5 << u""_s << QStringList{u"Red"_s, u"BLUE"_s} << u"Red, BLUE"_s;
    QTest::newRow("all bits") << 7 << u""_s << QStringList{u"Red"_s, u"Green"_s, u"BLUE"_s} << u"Red, Green, BLUE"_s;
    QTest::newRow("bit without text") << 9 << u""_s << QStringList{u"Red"_s, u""_s} << u"Red, "_s;
    QTest::newRow("highest bit") << 0x40000000 << u""_s << QStringList{u""_s} << u""_s;
}

void tst_NyEnumWrapper::encoding()
{
    QFETCH(int, value);
    const ColourWrapper wrapper(static_cast<Colour>(value));
    QTEST(wrapper.encode(), "whole");
    QTEST(wrapper.enumToStringTable()->encodeAsList(wrapper.value()), "list");
    QTEST(wrapper.enumToStringTable()->encodeCSV(wrapper.value()), "csv");
}

void tst_NyEnumWrapper::valueWithoutText()
{
    const SparseWrapper wrapper;
    QCOMPARE(wrapper.encode(), QString());
    QCOMPARE(wrapper.enumToStringTable()->encodeCSV(SparseOne), u"one"_s);
    QCOMPARE(static_cast<int>(wrapper.enumToStringTable()->decodeCSV(QString())), 0);
}

void tst_NyEnumWrapper::laterInsertionWinsDecodingFirstWinsEncoding()
{
    NyEnumToStringTable<Colour> table;
    table.insert(u"Name"_s, Colour::Red);
    table.insert(u"nAME"_s, Colour::Blue);
    QCOMPARE(table.decodeCSV(u"name"_s), Colour::Blue);
    QCOMPARE(table.encode(Colour::Red), u"Name"_s);
    QCOMPARE(table.encode(Colour::Blue), u"nAME"_s);
    table.insert(u"other"_s, Colour::Red);
    QCOMPARE(table.encode(Colour::Red), u"Name"_s);
    QCOMPARE(table.decodeCSV(u"OTHER"_s), Colour::Red);
}

void tst_NyEnumWrapper::comparisons()
{
    const ColourWrapper negative(static_cast<Colour>(-1));
    const ColourWrapper red(Colour::Red);
    const ColourWrapper blue(Colour::Blue);
    QVERIFY(negative < red);
    QVERIFY(red < blue);
    QVERIFY(!(red < red));
    QVERIFY(red <= red);
    QVERIFY(!(blue <= red));
    QVERIFY(blue > red);
    QVERIFY(!(red > red));
    QVERIFY(red == ColourWrapper(Colour::Red));
    QVERIFY(red == Colour::Red);
    QVERIFY(red != blue);
    QVERIFY(red != Colour::Blue);
    QVERIFY(!(red != Colour::Red));
}

void tst_NyEnumWrapper::bitOperations()
{
    const ColourWrapper green(Colour::Green);
    ColourWrapper wrapper(Colour::Red);
    wrapper |= green;
    QCOMPARE(wrapper.value(), Colour::Red | Colour::Green);
    wrapper |= Colour::Blue;
    QCOMPARE(static_cast<int>(wrapper.value()), 7);
    QCOMPARE(wrapper & green, Colour::Green);
    QCOMPARE(ColourWrapper(Colour::Red) | green, Colour::Red | Colour::Green);
    wrapper &= ColourWrapper(Colour::Red | Colour::Blue);
    QCOMPARE(static_cast<int>(wrapper.value()), 5);
    wrapper &= Colour::Blue;
    QCOMPARE(wrapper.value(), Colour::Blue);

    wrapper.expandTo(green);
    wrapper.expandTo(Colour::Red);
    QCOMPARE(static_cast<int>(wrapper.value()), 7);
    QCOMPARE(wrapper.reducedTo(Colour::Red | Colour::Green), Colour::Red | Colour::Green);
    QCOMPARE(static_cast<int>(wrapper.value()), 7);
    wrapper.exclude(green);
    QCOMPARE(static_cast<int>(wrapper.value()), 5);
    wrapper.exclude(Colour::Green);
    QCOMPARE(static_cast<int>(wrapper.value()), 5);
    wrapper.exclude(Colour::Red);
    QCOMPARE(wrapper.value(), Colour::Blue);
    wrapper.reduceTo(Colour::Red);
    QCOMPARE(wrapper.value(), Colour::None);
}

void tst_NyEnumWrapper::expandingByWrapperCallsTheVirtualForm()
{
    CountingWrapper wrapper(Colour::Red);
    wrapper.expandTo(ColourWrapper(Colour::Blue));
    QCOMPARE(wrapper.calls, 1);
    QCOMPARE(static_cast<int>(wrapper.value()), 5);
}

void tst_NyEnumWrapper::validity()
{
    QVERIFY(!ColourWrapper(Colour::None).isValid());
    QVERIFY(ColourWrapper(Colour::Red).isValid());
    QVERIFY(ColourWrapper(static_cast<Colour>(-1)).isValid());
}

void tst_NyEnumWrapper::tableIsMadeOnce()
{
    std::vector<const NyEnumToStringTable<Contended> *> tables(8, nullptr);
    std::vector<QString> texts(8);
    std::vector<std::thread> threads;
    for (size_t i = 0; i < tables.size(); ++i) {
        threads.emplace_back([&tables, &texts, i] {
            const ContendedWrapper wrapper(static_cast<Contended>(1000));
            tables[i] = wrapper.enumToStringTable();
            texts[i] = wrapper.encode();
        });
    }
    for (std::thread &thread : threads)
        thread.join();
    for (size_t i = 0; i < tables.size(); ++i) {
        QCOMPARE(tables[i], tables[0]);
        QCOMPARE(texts[i], u"name999"_s);
    }
    QCOMPARE(ContendedWrapper::fillings.load(), 1);
    QCOMPARE(ColourWrapper::fillings.load(), 1);
}

QTEST_APPLESS_MAIN(tst_NyEnumWrapper)
#include "tst_NyEnumWrapper.moc"
