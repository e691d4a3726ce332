#include "NyFotoStartDirSelectionBox.h"

#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QUrl>

namespace
{
bool isUrl(const QString &text)
{
    return QDir::isRelativePath(text)
        && (text.contains(QStringLiteral("://")) || text.startsWith(QStringLiteral("file:"), Qt::CaseInsensitive));
}

/** The path of a folder on this machine, or the text itself if it names another place. */
QString localPath(const QString &text)
{
    if (!isUrl(text))
        return text;
    const QUrl url(text);
    return url.isLocalFile() ? url.toLocalFile() : text;
}

QString displayText(const QString &folder)
{
    return QDir::toNativeSeparators(localPath(folder));
}

QString folderFromText(const QString &text)
{
    const QString path = localPath(QDir::fromNativeSeparators(text));
    if (isUrl(path))
        return path;
    if (path == QLatin1String("~"))
        return QDir::homePath();
    const QString inHome = path.startsWith(QLatin1String("~/")) ? path.mid(2) : path;
    return QDir::cleanPath(QDir::home().absoluteFilePath(inHome));
}
}

NyFotoStartDirSelectionBox *NyFotoStartDirSelectionBox::create(QWidget *parent, bool withCaption, bool typingAllowed)
{
    return new NyFotoStartDirSelectionBox(parent, withCaption, typingAllowed);
}

NyFotoStartDirSelectionBox::NyFotoStartDirSelectionBox(QWidget *parent, bool withCaption, bool typingAllowed)
    : QWidget(parent)
    , m_line(new QLineEdit(this))
    , m_browseButton(new QPushButton(tr("&Durchsuchen…"), this))
    , m_missingLabel(new QLabel(tr("Diesen Ordner gibt es zurzeit nicht."), this))
    , m_typingAllowed(typingAllowed)
{
    auto *grid = new QGridLayout(this);
    grid->setContentsMargins(0, 0, 0, 0);
    const QString caption = tr("Ordner mit Ihren Fotos");
    if (withCaption) {
        auto *captionLabel = new QLabel(caption, this);
        captionLabel->setBuddy(m_line);
        grid->addWidget(captionLabel, 0, 0, 1, 2);
    }
    grid->addWidget(m_line, 1, 0);
    grid->addWidget(m_browseButton, 1, 1);
    grid->addWidget(m_missingLabel, 2, 0, 1, 2);

    m_line->setAccessibleName(caption);
    m_line->setReadOnly(!typingAllowed);
    m_browseButton->setAccessibleName(tr("Ordner mit Ihren Fotos auswählen"));
    m_browseButton->setAutoDefault(false);
    m_missingLabel->setTextFormat(Qt::PlainText);
    m_missingLabel->setWordWrap(true);
    m_missingLabel->hide();
    setFocusProxy(m_line);

    connect(m_line, &QLineEdit::editingFinished, this, &NyFotoStartDirSelectionBox::takeFolder);
    connect(m_browseButton, &QPushButton::clicked, this, &NyFotoStartDirSelectionBox::browse);
}

NyFotoStartDirSelectionBox::~NyFotoStartDirSelectionBox()
{
    // The line ends its editing when it loses the focus, which it does while the base class takes it down.
    m_line->disconnect(this);
}

void NyFotoStartDirSelectionBox::setup(const QString &folder, bool locked, bool notify)
{
    m_setupFolder = folder;
    m_line->setText(displayText(folder));
    // The line may show less than it was given, a line break for example.
    m_setupText = m_line->text();
    m_line->setReadOnly(locked || !m_typingAllowed);
    m_browseButton->setEnabled(!locked);
    if (notify) {
        takeFolder();
        return;
    }
    m_announcedFolder = folder;
    pointOutMissingFolder();
}

QString NyFotoStartDirSelectionBox::folder() const
{
    const QString text = m_line->text();
    if (text.trimmed().isEmpty() || text == m_setupText)
        return m_setupFolder;
    // Blanks at the ends come from pasting, unless there is such a folder.
    const QString asWritten = folderFromText(text);
    return QFileInfo(asWritten).isDir() ? asWritten : folderFromText(text.trimmed());
}

void NyFotoStartDirSelectionBox::takeFolder()
{
    if (m_line->text().trimmed().isEmpty())
        m_line->setText(m_setupText);
    pointOutMissingFolder();
    const QString chosen = folder();
    if (chosen == m_announcedFolder)
        return;
    m_announcedFolder = chosen;
    Q_EMIT folderChanged(chosen);
}

void NyFotoStartDirSelectionBox::pointOutMissingFolder()
{
    const QString path = localPath(folder());
    const bool missing = !path.isEmpty() && !isUrl(path) && !QFileInfo(path).isDir();
    m_missingLabel->setVisible(missing);
    m_line->setAccessibleDescription(missing ? m_missingLabel->text() : QString());
}

QString NyFotoStartDirSelectionBox::browseStart() const
{
    const QString path = localPath(folder());
    if (path.isEmpty() || isUrl(path) || QDir::isRelativePath(path))
        return QDir::homePath();
    QString start = QDir::cleanPath(path);
    while (!QFileInfo(start).isDir()) {
        const QString above = QFileInfo(start).absolutePath();
        if (above == start)
            return QDir::homePath();
        start = above;
    }
    return start;
}

void NyFotoStartDirSelectionBox::browse()
{
    auto *dialog = new QFileDialog(this, tr("Ordner mit Ihren Fotos auswählen"), browseStart());
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setFileMode(QFileDialog::Directory);
    dialog->setOption(QFileDialog::ShowDirsOnly);
    connect(dialog, &QFileDialog::fileSelected, this, [this](const QString &folder) {
        m_line->setText(QDir::toNativeSeparators(folder));
        takeFolder();
    });
    dialog->open();
}
