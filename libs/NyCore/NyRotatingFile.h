#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QString>

/**
 * A file that only grows at its end and is set aside when it gets large: name, name.1, name.2, name.3.
 *
 * Several processes may append to the same file. What cannot be written is told once on stderr and dropped. Not thread-safe.
 */
class NyRotatingFile
{
public:
    static constexpr qint64 LargestSize = 5 * 1024 * 1024;
    static constexpr int KeptFiles = 3;

    NyRotatingFile() = default;
    ~NyRotatingFile();

    /** Closes the present file and goes on with this one. */
    void setPath(const QString &path);
    QString path() const { return m_path; }

    /** Appends the bytes, opening the file and its folder first where needed. False if they are not all in the file. */
    bool append(const QByteArray &bytes);
    void close();

private:
    Q_DISABLE_COPY_MOVE(NyRotatingFile)

    bool ensureOpen();
    void rotate();
    bool fail(int error);

    QString m_path;
    int m_descriptor = -1;
    bool m_lineBroken = false;
    bool m_failureTold = false;
};
