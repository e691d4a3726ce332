#pragma once

#include <memory>
#include <optional>

#include <QtCore/QMutex>
#include <QtCore/QObject>
#include <QtCore/QSet>
#include <QtCore/QString>
#include <QtXml/QDomElement>

#include "NyResourceFile.h"
#include "nyxml_export.h"

/**
 * Read-only configuration values: attributes of the sections directly below the document element.
 *
 * A file that is missing or broken holds no values, so every read gives its default. A value of the wrong type gives its
 * default and one warning that names file, section and attribute. Of two sections of one name the first counts. Any thread
 * may read, also during reload().
 */
class NYXML_EXPORT NyXMLConfig : public QObject
{
    Q_OBJECT

public:
    explicit NyXMLConfig(const NyResourceFile &file, QObject *parent = nullptr);
    ~NyXMLConfig() override;

    /** Looks the file up and reads it again. */
    virtual void reload();

    int getIntAttributeOfNode(const QString &node, const QString &attribute, int defaultValue) const;
    bool getBoolAttributeOfNode(const QString &node, const QString &attribute, bool defaultValue) const;
    QString getAttributeOfNode(const QString &node, const QString &attribute, const QString &defaultValue) const;

    /** The document element, null without a usable file. Not to be changed: others may be reading it. */
    QDomElement documentElement() const;

private:
    Q_DISABLE_COPY_MOVE(NyXMLConfig)

    struct Content;
    static std::shared_ptr<const Content> read(const NyResourceFile &file);
    std::shared_ptr<const Content> content() const;
    void reportValue(
        const Content &content, const QString &node, const QString &attribute, const QString &text, const char *expected) const;

    NyResourceFile m_file;
    mutable QMutex m_mutex;
    std::shared_ptr<const Content> m_content;
    mutable QSet<QString> m_reported;
};
