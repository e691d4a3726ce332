#pragma once

#include <QtCore/QFlags>
#include <QtCore/QHash>
#include <QtCore/QString>

#include "nyquilloeventclassifier_export.h"

/**
 * The words in folder names that are no title: what cameras, programs and tidy people write, in the languages of the program's users.
 *
 * Entries are single words or phrases, in composed form (NFC), case-folded, words joined by one blank. Built once on first use, then only
 * read, from any thread.
 */
class NYQUILLOEVENTCLASSIFIER_EXPORT NyFolderWords
{
public:
    enum Role : quint16 {
        NoRole = 0,
        Filler = 1, ///< "Fotos", "Jahr", "neu"
        Connector = 2, ///< "von", "the", "et"
        Device = 4, ///< "iPhone", "Canon"
        Import = 8, ///< "DCIM", "Neuer Ordner", "Takeout"
        Source = 16, ///< programs and places whose pictures are no event: "WhatsApp", "Downloads"
        Technical = 32, ///< a state of work on photos: "RAW", "Auswahl", "edited"
        Project = 64, ///< long-running work: "Renovierung"
        DayWord = 128, ///< with a number, a day of something: "Tag", "jour"
        PartWord = 256, ///< with a number, a part of something: "Teil", "stage"
        TimeOfDay = 512, ///< a part of a day: "Abend"
        Category = 1024, ///< many events or many years under one name: "Familie", "Reisen"
        CounterPrefix = 2048, ///< what cameras put before their running number: "IMG", "DSC"
        ModelWord = 4096, ///< belongs to a device's name when it follows one: "EOS", "Mark"
        Title = 8192, ///< phrases that are a title although their words are none: "New Year"
        NumberWord = 16384, ///< what follows is a number and no date: "Top 10"
    };
    Q_DECLARE_FLAGS(Roles, Role)

    static constexpr int MaximumPhraseLength = 4;

    static const NyFolderWords &instance();

    Roles roles(const QString &phrase) const { return m_roles.value(phrase); }
    /** The number of words of the longest phrase that begins with this word, 1 if there is none. */
    int longestPhrase(const QString &word) const { return m_phraseLengths.value(word, 1); }

private:
    NyFolderWords();
    void add(const char16_t *phrases, Roles roles);

    QHash<QString, Roles> m_roles;
    QHash<QString, int> m_phraseLengths;
};

Q_DECLARE_OPERATORS_FOR_FLAGS(NyFolderWords::Roles)
