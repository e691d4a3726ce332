#pragma once

#include <QWidget>

class QLabel;
class QPushButton;

/** What stands in place of a list that has nothing to show: why, and what can be done about it. */
class NyEmptyState : public QWidget
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(NyEmptyState)
public:
    struct Content
    {
        QString icon;
        QString title;
        QString text;
        /** Empty: no button. */
        QString button;
        friend bool operator==(const Content &, const Content &) = default;
    };

    explicit NyEmptyState(QWidget *parent = nullptr);
    ~NyEmptyState() override;

    /** The texts are shown as they stand, never as markup; `icon` is the id of a built-in one. */
    void setContent(const Content &content);
    const Content &content() const { return m_content; }
    QPushButton *button() const { return m_button; }

protected:
    void changeEvent(QEvent *event) override;

private:
    void updateFonts();

    Content m_content;
    QLabel *m_icon;
    QLabel *m_title;
    QLabel *m_text;
    QPushButton *m_button;
};
