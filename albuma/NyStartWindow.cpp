#include "NyStartWindow.h"

#include <QAction>
#include <QLabel>
#include <QMenuBar>
#include <QPushButton>
#include <QVBoxLayout>

#include <NyProgramConfig.h>

namespace
{

using namespace Qt::Literals::StringLiterals;

}

NyStartWindow::NyStartWindow()
{
    const QString programName = NyProgramConfig::instance().programName(NyProgramID::MainProgram);
    setWindowTitle(programName);
    auto *central = new QWidget(this);
    auto *layout = new QVBoxLayout(central);
    layout->setContentsMargins(48, 40, 48, 40);
    layout->setSpacing(18);
    layout->addStretch();
    auto *title = new QLabel(programName, central);
    QFont font = title->font();
    font.setPointSizeF(font.pointSizeF() * 2);
    font.setBold(true);
    title->setFont(font);
    title->setAlignment(Qt::AlignCenter);
    layout->addWidget(title);
    auto *hint = new QLabel(tr("Öffnen Sie ein Fotobuch, um darin zu blättern."), central);
    hint->setAlignment(Qt::AlignCenter);
    hint->setWordWrap(true);
    layout->addWidget(hint);
    m_error = new QLabel(central);
    m_error->setObjectName(u"error"_s);
    m_error->setTextFormat(Qt::PlainText);
    m_error->setWordWrap(true);
    m_error->setAlignment(Qt::AlignCenter);
    m_error->setTextInteractionFlags(Qt::TextSelectableByMouse);
    m_error->setStyleSheet(u"background: #f8d7da; color: #6b1f28; border-radius: 4px; padding: 8px;"_s);
    m_error->hide();
    layout->addWidget(m_error);
    auto *open = new QPushButton(tr("Buch öffnen …"), central);
    open->setDefault(true);
    open->setMinimumSize(180, 40);
    layout->addWidget(open, 0, Qt::AlignHCenter);
    layout->addStretch();
    setCentralWidget(central);
    resize(640, 420);
    connect(open, &QPushButton::clicked, this, &NyStartWindow::openRequested);

    QMenu *file = menuBar()->addMenu(tr("&Datei"));
    QAction *openAction = file->addAction(tr("Buch ö&ffnen …"));
    openAction->setShortcut(QKeySequence::Open);
    connect(openAction, &QAction::triggered, this, &NyStartWindow::openRequested);
    QAction *preferences = file->addAction(tr("&Einstellungen …"));
    preferences->setMenuRole(QAction::PreferencesRole);
    preferences->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_Comma));
    connect(preferences, &QAction::triggered, this, &NyStartWindow::preferencesRequested);
    QAction *quit = file->addAction(tr("&Beenden"));
    quit->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_Q));
    connect(quit, &QAction::triggered, this, &QWidget::close);
}

NyStartWindow::~NyStartWindow() = default;

void NyStartWindow::setError(const QString &error)
{
    m_error->setText(error);
    m_error->setVisible(!error.isEmpty());
}
