#include "NyTranslation.h"

#include <algorithm>
#include <array>
#include <memory>

#include <QtCore/QCoreApplication>
#include <QtCore/QDebug>
#include <QtCore/QDir>
#include <QtCore/QLibraryInfo>
#include <QtCore/QPointer>
#include <QtCore/QReadWriteLock>
#include <QtCore/QTranslator>

namespace
{

using namespace Qt::Literals::StringLiterals;

const QString SOURCE_LANGUAGE = u"de"_s;
const QString COMMON_LANGUAGE = u"en"_s;
const QString FOLDER = u":/velmora/translations"_s;
const QString PREFIX = u"velmora_"_s;
const QString SUFFIX = u".qm"_s;

/** Languages of people who read German with more ease than English. */
constexpr std::array GERMAN_READERS{"gsw"_L1, "ksh"_L1, "lb"_L1, "nds"_L1};

struct Installed
{
    QReadWriteLock lock;
    QLocale locale{QLocale::German, QLocale::Germany};
    QPointer<QTranslator> ownTexts;
    QPointer<QTranslator> qtTexts;
};

Installed &installed()
{
    static Installed theInstalled;
    return theInstalled;
}

QLocale localeOf(const QString &language)
{
    const QLocale::Language wanted = QLocale(language).language();
    const QLocale::Territory territory = QLocale::system().territory();
    const QLocale local(wanted, territory);
    if (local.language() == wanted && local.territory() == territory)
        return local;
    // English as it is written where it is not spoken, instead of that of one country.
    return wanted == QLocale::English ? QLocale(wanted, QLocale::World) : QLocale(language);
}

/** Replaces the translator behind @p slot by one with the texts of @p file, or by none. */
bool replaceTranslator(QPointer<QTranslator> &slot, const QString &file, const QString &folder)
{
    delete slot;
    auto translator = std::make_unique<QTranslator>();
    if (!translator->load(file, folder) || !QCoreApplication::installTranslator(translator.get()))
        return false;
    translator->setParent(QCoreApplication::instance());
    slot = translator.release();
    return true;
}

} // namespace

QStringList NyTranslation::languages()
{
    QStringList found{SOURCE_LANGUAGE};
    const QStringList files = QDir(FOLDER).entryList({PREFIX + u'*' + SUFFIX}, QDir::Files, QDir::Name);
    for (const QString &file : files)
        found.append(file.sliced(PREFIX.size()).chopped(SUFFIX.size()));
    return found;
}

QString NyTranslation::languageFor(const QStringList &userLanguages)
{
    if (userLanguages.isEmpty() || userLanguages.constFirst() == "C"_L1)
        return SOURCE_LANGUAGE;
    const QStringList known = languages();
    for (const QString &userLanguage : userLanguages) {
        // "pt-BR" before "pt".
        const QString regional = QString(userLanguage).replace(u'-', u'_');
        if (known.contains(regional))
            return regional;
        const QString language = regional.section(u'_', 0, 0).toLower();
        if (known.contains(language))
            return language;
        if (std::find(GERMAN_READERS.begin(), GERMAN_READERS.end(), language) != GERMAN_READERS.end())
            return SOURCE_LANGUAGE;
    }
    return COMMON_LANGUAGE;
}

QString NyTranslation::install(const QStringList &userLanguages)
{
    const QString language = languageFor(userLanguages);
    Installed &now = installed();
    {
        const QWriteLocker locker(&now.lock);
        now.locale = localeOf(language);
    }
    if (language == SOURCE_LANGUAGE)
        delete now.ownTexts;
    else if (!replaceTranslator(now.ownTexts, PREFIX + language, FOLDER))
        qWarning() << "the texts of the language" << language << "cannot be loaded";
    // Comes in a package of its own, which may be missing; then Qt's few texts are English.
    replaceTranslator(now.qtTexts, u"qtbase_"_s + language, QLibraryInfo::path(QLibraryInfo::TranslationsPath));

    // Who reads the language anyway keeps the mixture of forms that the surroundings ask for.
    const QLocale system = QLocale::system();
    QLocale::setDefault(system.language() == now.locale.language() ? system : now.locale);
    return language;
}

QLocale NyTranslation::locale()
{
    Installed &now = installed();
    const QReadLocker locker(&now.lock);
    return now.locale;
}
