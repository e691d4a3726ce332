#include "TranslationFile.h"

#include <QFile>
#include <QRegularExpression>
#include <QSet>
#include <QXmlStreamReader>

using namespace Qt::Literals::StringLiterals;

namespace
{

/** All that `pattern` finds, sorted, so that a translation may change the order. */
QStringList sortedMatches(const QString &text, const QString &pattern)
{
    QStringList found;
    for (auto matches = QRegularExpression(pattern).globalMatch(text); matches.hasNext();)
        found.append(matches.next().captured());
    found.sort();
    return found;
}

QStringList argumentsIn(const QString &text)
{
    return sortedMatches(text, u"%(?:L?\\d{1,2}|n)"_s);
}

QStringList tagsIn(const QString &text)
{
    return sortedMatches(text, u"</?[a-zA-Z][^>]*>|&[a-z]+;"_s);
}

QStringList mnemonicsIn(const QString &text)
{
    return sortedMatches(QString(text).remove(u"&&"_s).remove(QRegularExpression(u"&[a-z]+;"_s)), u"&[^\\s]"_s);
}

QString endingOf(const QString &text)
{
    static const QRegularExpression ending(u"(?:\\s*(?:…|\\.{3})|[.:?!,;]|\\s)*$"_s);
    // "…" follows a blank in German and none in English.
    return ending.match(text).captured().remove(u' ');
}

QString beginningOf(const QString &text)
{
    static const QRegularExpression beginning(u"^\\s*"_s);
    return beginning.match(text).captured();
}

/** A format for QDate, which nobody reads: its full stops belong to the language. */
bool isDateFormat(const TranslatedText &text)
{
    return text.comment.contains(u"::toString()"_s);
}

void compareForm(const TranslatedText &text, const QString &form, bool isSingular, QStringList &faults)
{
    const auto fault = [&](const QString &what) { faults.append(u"%1: %2 in \"%3\""_s.arg(text.name(), what, form)); };
    if (form.trimmed().isEmpty()) {
        fault(u"nothing"_s);
        return;
    }
    QStringList arguments = argumentsIn(text.source);
    // "One photo" needs no number.
    if (isSingular && !form.contains(u"%n"_s))
        arguments.removeAll(u"%n"_s);
    if (argumentsIn(form) != arguments)
        fault(u"other arguments"_s);
    if (tagsIn(form) != tagsIn(text.source))
        fault(u"other markup"_s);
    if (mnemonicsIn(form).size() != mnemonicsIn(text.source).size() || mnemonicsIn(form).size() > 1)
        fault(u"another number of access keys"_s);
    if (form.count(u'\n') != text.source.count(u'\n'))
        fault(u"another number of lines"_s);
    if (beginningOf(form) != beginningOf(text.source))
        fault(u"other blanks at the beginning"_s);
    if (!isDateFormat(text) && endingOf(form) != endingOf(text.source))
        fault(u"another ending"_s);
}

TranslatedText readText(QXmlStreamReader &xml, const QString &context)
{
    TranslatedText text;
    text.context = context;
    text.hasPlural = xml.attributes().value("numerus"_L1) == "yes"_L1;
    while (xml.readNextStartElement()) {
        if (xml.name() == "source"_L1) {
            text.source = xml.readElementText();
        } else if (xml.name() == "comment"_L1) {
            text.comment = xml.readElementText();
        } else if (xml.name() == "translation"_L1) {
            text.type = xml.attributes().value("type"_L1).toString();
            if (!text.hasPlural) {
                text.translations.append(xml.readElementText());
                continue;
            }
            while (xml.readNextStartElement())
                text.translations.append(xml.readElementText());
        } else {
            xml.skipCurrentElement();
        }
    }
    return text;
}

}

QString TranslatedText::name() const
{
    return u"%1: \"%2\"%3"_s.arg(context, source, comment.isEmpty() ? QString() : u" (%1)"_s.arg(comment));
}

QString TranslatedText::identity() const
{
    return QStringList{context, source, comment, hasPlural ? u"n"_s : u"1"_s}.join(QChar(0x1f));
}

TranslationFile TranslationFile::read(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        TranslationFile none;
        none.error = path + u": "_s + file.errorString();
        return none;
    }
    return parse(file.readAll());
}

TranslationFile TranslationFile::parse(const QByteArray &content)
{
    TranslationFile result;
    QXmlStreamReader xml(content);
    if (xml.readNextStartElement() && xml.name() == "TS"_L1) {
        result.language = xml.attributes().value("language"_L1).toString();
        result.sourceLanguage = xml.attributes().value("sourcelanguage"_L1).toString();
        while (xml.readNextStartElement()) {
            QString context;
            while (xml.readNextStartElement()) {
                if (xml.name() == "name"_L1)
                    context = xml.readElementText();
                else if (xml.name() == "message"_L1)
                    result.texts.append(readText(xml, context));
                else
                    xml.skipCurrentElement();
            }
        }
    } else {
        result.error = u"this is no translation file"_s;
    }
    if (xml.hasError())
        result.error = u"line %1: %2"_s.arg(xml.lineNumber()).arg(xml.errorString());
    return result;
}

QStringList TranslationFile::differences(const TranslationFile &current) const
{
    QSet<QString> mine;
    for (const TranslatedText &text : texts)
        mine.insert(text.identity());
    QStringList found;
    QSet<QString> theirs;
    for (const TranslatedText &text : current.texts) {
        theirs.insert(text.identity());
        if (!mine.contains(text.identity()))
            found.append(u"missing: "_s + text.name());
    }
    for (const TranslatedText &text : texts) {
        if (!theirs.contains(text.identity()))
            found.append(u"gone from the sources: "_s + text.name());
    }
    return found;
}

QStringList TranslationFile::faults() const
{
    QStringList found;
    QSet<QString> seen;
    for (const TranslatedText &text : texts) {
        if (!text.type.isEmpty())
            found.append(u"%1: %2"_s.arg(text.name(), text.type));
        if (seen.contains(text.identity()))
            found.append(u"%1: twice"_s.arg(text.name()));
        seen.insert(text.identity());
        if (text.translations.isEmpty() || (text.hasPlural && text.translations.size() < 2))
            found.append(u"%1: too few forms"_s.arg(text.name()));
        for (qsizetype i = 0; i < text.translations.size(); ++i)
            compareForm(text, text.translations.at(i), text.hasPlural && i == 0, found);
    }
    return found;
}
