#include "NyEmptyState.h"

#include <QEvent>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

#include <NyGUIWidgetsConfig.h>

namespace
{

using namespace Qt::Literals::StringLiterals;

constexpr int IconSide = 96;
/** Longer lines are hard to read. */
constexpr int WidestText = 520;
constexpr int WidestTitle = 680;

}

NyEmptyState::NyEmptyState(QWidget *parent)
    : QWidget(parent)
    , m_icon(new QLabel(this))
    , m_title(new QLabel(this))
    , m_text(new QLabel(this))
    , m_button(new QPushButton(this))
{
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(32, 24, 32, 24);
    layout->setSpacing(14);
    layout->addStretch(2);
    layout->addWidget(m_icon, 0, Qt::AlignHCenter);
    for (QLabel *label : {m_title, m_text}) {
        label->setTextFormat(Qt::PlainText);
        label->setAlignment(Qt::AlignHCenter | Qt::AlignTop);
        label->setWordWrap(true);
        label->setMaximumWidth(label == m_title ? WidestTitle : WidestText);
        // Not aligned in the layout: an aligned label is given no height for its width.
        auto *row = new QHBoxLayout;
        row->addStretch(1);
        row->addWidget(label, 1000);
        row->addStretch(1);
        layout->addLayout(row);
    }
    layout->addSpacing(6);
    layout->addWidget(m_button, 0, Qt::AlignHCenter);
    layout->addStretch(3);
    m_title->setObjectName(u"emptyTitle"_s);
    m_text->setObjectName(u"emptyText"_s);
    m_text->setTextInteractionFlags(Qt::TextSelectableByMouse);
    m_button->setObjectName(u"emptyButton"_s);
    m_button->setMinimumSize(140, 36);
    m_button->setAutoDefault(true);
    updateFonts();
}

NyEmptyState::~NyEmptyState() = default;

void NyEmptyState::setContent(const Content &content)
{
    if (content == m_content)
        return;
    m_content = content;
    m_icon->setPixmap(NyGUIWidgetsConfig::instance().loadIconById(content.icon).pixmap(QSize(IconSide, IconSide), devicePixelRatioF()));
    m_title->setText(content.title);
    m_text->setText(content.text);
    m_button->setText(content.button);
    m_button->setVisible(!content.button.isEmpty());
    setAccessibleName(content.title);
    setAccessibleDescription(content.text);
}

void NyEmptyState::updateFonts()
{
    QFont large = font();
    large.setPointSizeF(large.pointSizeF() * 1.5);
    large.setWeight(QFont::DemiBold);
    m_title->setFont(large);
}

void NyEmptyState::changeEvent(QEvent *event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::FontChange)
        updateFonts();
}
