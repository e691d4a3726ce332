#pragma once

#include <QCoreApplication>
#include <QDate>
#include <QStringList>

/** Words for a book, in the language of NyTranslation: title and subtitle from folder names, occasions and dates. Pure otherwise. */
class NyBookTitle
{
    Q_DECLARE_TR_FUNCTIONS(NyBookTitle)
public:
    struct Result
    {
        QString title;
        QString subtitle;
    };

    /**
     * @p folders are the absolute paths of the photos' folders, @p picturesHome is never taken as a name, nor is anything
     * above it. The title is the event's name, else the occasion, else the dates; never empty.
     */
    static Result forBook(
        const QStringList &folders, const QString &picturesHome, const QStringList &occasions, const QDate &from, const QDate &to);

    /** A folder's name without date tokens and technical remains, made presentable; empty if nothing is left. */
    static QString eventName(const QString &folderName);

    /** "12. Juli 2024", "12. – 26. Juli 2024", "Juni – September 2024"; empty if a date is invalid. */
    static QString dateRange(const QDate &from, const QDate &to);

    /** "Samstag, 12. Juli 2024" */
    static QString day(const QDate &date);

    /** The word for an occasion keyword; empty for one that is not known. */
    static QString occasionName(const QString &keyword);
};
