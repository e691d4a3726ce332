#pragma once

#include <utility>
#include <vector>

#include <QtCore/QHash>
#include <QtCore/QString>
#include <QtCore/QStringList>
#include <QtCore/QStringView>

#include "nyorrin_export.h"

/**
 * The words of German, English, French and Spanish folder names that tell of occasions, and the plainest of Italian and Dutch ones.
 *
 * Words are matched whole, without regard to case and accents, longest phrase first; German compounds also by their last part, or by
 * their first one before a word such as "Fotos" or "Feier". Built
 * once on first use, then only read, from any thread.
 */
class NYORRIN_EXPORT NyOrrinTitleWords
{
public:
    struct Reading
    {
        /** Evidence by keyword, 0 to 1. */
        QHash<QString, double> evidence;
        /** The name tells of something that nobody wants to be offered a book of, such as a funeral. */
        bool isDelicate = false;
        /** The name tells of a journey for work, which is no vacation however far it goes. */
        bool isWork = false;
    };

    static const NyOrrinTitleWords &instance();

    /** Reads one folder's name. */
    Reading read(const QString &folderName) const;

    /** The names of the folders above a photo that may be titles, the nearest first. @p id is the photo's URL or path. */
    static QStringList folderNames(const QString &id);

private:
    struct Entry
    {
        QString keyword; ///< empty for phrases that mean none of the occasions
        double strength = 0.0;
    };

    static constexpr int MaximumPhraseLength = 4;

    NyOrrinTitleWords();
    void add(const char16_t *keyword, double strength, const char16_t *phrases);
    const Entry *findCompound(const QString &word) const;
    QList<Entry> findBeginning(const QString &word) const;

    QHash<QString, QList<Entry>> m_phrases;
    /** The longest first: more of a word tells more. */
    std::vector<std::pair<QString, Entry>> m_endings;
};
