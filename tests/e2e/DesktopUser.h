#pragma once

#include <QImage>
#include <QList>
#include <QProcess>
#include <QRect>
#include <QString>
#include <QStringList>

#include <functional>
#include <memory>
#include <optional>
#include <vector>

/**
 * Somebody who sits before the test's display: finds what programs show through the accessibility bus, as screen readers do, and
 * works it with pointer and keys. Brings the parts of a desktop that this needs, and ends them.
 */
class DesktopUser
{
public:
    /** What a program shows: its role ("check box", "push button", "menu item", "label", …), its name and its place in pixels. */
    struct Thing
    {
        QString role;
        QString name;
        QString description;
        QRect place;
        bool isChecked = false;
        bool isEnabled = false;
        bool isSelected = false;
        /** Where the accessibility bus has it. */
        QString service;
        QString path;
    };
    using Condition = std::function<bool(const Thing &)>;

    /** @p pictureFolder: where look() leaves its pictures; what it holds is removed. */
    explicit DesktopUser(const QString &pictureFolder);
    ~DesktopUser();
    Q_DISABLE_COPY_MOVE(DesktopUser)

    /** Starts the accessibility bus and a window manager; false, with a line on stderr, if one does not come up. */
    bool sitDown();
    /** Starts another part of the desktop, which ends with this object. */
    bool startPart(const QString &program, const QStringList &arguments = QStringList());

    /** All that is on the screen, in the order of the programs' trees; only programs that started after this object tell. */
    QList<Thing> things() const;
    std::optional<Thing> find(const Condition &condition) const;
    std::optional<Thing> find(const QString &role, const QString &name) const;
    /** Waits until there is such a thing; false, with what is on the screen on stderr, if none comes. */
    bool waitFor(const Condition &condition) const;
    bool waitFor(const QString &role, const QString &name) const;
    /** Waits until there is no such thing any more; false, with what is on the screen on stderr, if it stays. */
    bool waitUntilGone(const Condition &condition) const;
    bool waitUntilGone(const QString &role, const QString &name) const;
    /** Whether a window of this class (as X has it) is on the screen. */
    static bool showsWindow(const QString &windowClass);

    /** Waits until there is such a thing that is enabled and does not move, and clicks its middle; false if none comes. */
    bool click(const QString &role, const QString &name);
    bool clickOn(const Condition &condition);
    bool doubleClickOn(const Condition &condition);
    /** Does what the thing offers as its action with this number; false if it offers none or refuses. */
    bool act(const Thing &thing, int action) const;
    /** Selects what the line with this name holds and writes the text (ASCII) in its place. */
    bool write(const QString &lineName, const QString &text);
    static bool key(const QString &keys);
    static bool clickAt(QPoint place, int count = 1);

    /** A picture of the whole screen. */
    QImage screen() const;
    /** How many colours there are at that place of the screen. */
    qsizetype coloursAt(const QRect &place) const;
    /** Keeps a picture of the whole screen under a number and this name. */
    void look(const QString &what);

private:
    void report(const char *what) const;
    bool pressOn(const Condition &condition, int count);
    void collect(const QString &service, const QString &path, int depth, QList<Thing> &things) const;

    QString m_pictureFolder;
    int m_pictures = 0;
    QString m_busName;
    std::vector<std::unique_ptr<QProcess>> m_parts;
};
