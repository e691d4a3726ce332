#pragma once

#include <initializer_list>

#include <QtCore/QFileInfo>
#include <QtCore/QList>
#include <QtCore/QStringList>
#include <QtCore/QUrl>

#include "NyFoto.h"
#include "nyfoto_export.h"

/** Photos in a given order; the same photo may stand in it more than once. Value type, implicitly shared. */
class NYFOTO_EXPORT NyFotoList
{
public:
    using value_type = NyFoto;
    using const_iterator = QList<NyFoto>::const_iterator;
    using iterator = const_iterator;

    NyFotoList() = default;
    NyFotoList(std::initializer_list<NyFoto> fotos);
    explicit NyFotoList(const QList<NyFoto> &fotos);
    explicit NyFotoList(const QList<QFileInfo> &files);
    explicit NyFotoList(const QList<QUrl> &urls);

    qsizetype size() const { return m_fotos.size(); }
    qsizetype count() const { return m_fotos.size(); }
    bool isEmpty() const { return m_fotos.isEmpty(); }
    const NyFoto &at(qsizetype index) const { return m_fotos.at(index); }
    const NyFoto &operator[](qsizetype index) const { return m_fotos.at(index); }
    const NyFoto &first() const { return m_fotos.first(); }
    const NyFoto &last() const { return m_fotos.last(); }
    bool contains(const NyFoto &foto) const { return m_fotos.contains(foto); }

    const_iterator begin() const { return m_fotos.cbegin(); }
    const_iterator end() const { return m_fotos.cend(); }
    const_iterator cbegin() const { return m_fotos.cbegin(); }
    const_iterator cend() const { return m_fotos.cend(); }

    void reserve(qsizetype size) { m_fotos.reserve(size); }
    void append(const NyFoto &foto) { m_fotos.append(foto); }
    void append(const NyFotoList &other) { m_fotos.append(other.m_fotos); }
    void clear() { m_fotos.clear(); }

    /** One file info for each photo, also for those that are no local files (NyFoto::localFileInfo()). */
    QList<QFileInfo> toLocalFileInfoList() const;
    QList<QUrl> toUrlList() const;
    /** NyFoto::urlString() of each. */
    QStringList toUrlStringList() const;

    friend bool operator==(const NyFotoList &left, const NyFotoList &right) { return left.m_fotos == right.m_fotos; }

private:
    QList<NyFoto> m_fotos;
};
