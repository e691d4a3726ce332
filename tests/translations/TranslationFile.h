#pragma once

#include <QByteArray>
#include <QList>
#include <QString>
#include <QStringList>

/** One text of a Qt Linguist file. */
struct TranslatedText
{
    QString context;
    QString source;
    QString comment;
    /** "unfinished", "vanished", "obsolete"; empty when the text is translated. */
    QString type;
    bool hasPlural = false;
    /** One, or as many as the language has plural forms. */
    QStringList translations;

    /** Names the text in messages. */
    QString name() const;
    /** What makes a text the same as another one. */
    QString identity() const;
};

/** The content of a Qt Linguist file (*.ts). */
struct TranslationFile
{
    QString error;
    QString language;
    QString sourceLanguage;
    QList<TranslatedText> texts;

    /** Reads a file; `error` is empty if it is a well-formed one. */
    static TranslationFile read(const QString &path);
    static TranslationFile parse(const QByteArray &content);

    /** What `current`, made from the sources, has more and less than this file; empty if they hold the same texts. */
    QStringList differences(const TranslationFile &current) const;
    /** Everything that is wrong with the translations themselves; empty if nothing is. */
    QStringList faults() const;
};
