#pragma once

#include <QtCore/QLocale>
#include <QtCore/QString>
#include <QtCore/QStringList>

#include "nycore_export.h"

/**
 * The language of the texts that a program shows.
 *
 * The sources are German; every other language is a translation file among the resources. Main thread, apart from locale().
 */
class NYCORE_EXPORT NyTranslation
{
public:
    NyTranslation() = delete;

    /**
     * Installs the translation for a user who reads these languages, Qt's own texts with it, and makes the default locale write dates and
     * numbers in the same language. A later call replaces what an earlier one installed. Needs the application object, which
     * takes the translation along when it ends. Returns the language, as languageFor().
     */
    static QString install(const QStringList &userLanguages = QLocale::system().uiLanguages());

    /**
     * The language that fits @p userLanguages (BCP 47, the preferred one first) best among those there are texts in: the first that is
     * German or has a translation. English when there is none; German for the locale "C", in which nothing is translated.
     */
    static QString languageFor(const QStringList &userLanguages);

    /** The languages that there are texts in, such as "de". German, the language of the sources, stands first. */
    static QStringList languages();

    /**
     * For dates that stand in a text: speaks the language of install(), in the form of the user's country if that language is at home
     * there. German before install(). Any thread.
     */
    static QLocale locale();
};
