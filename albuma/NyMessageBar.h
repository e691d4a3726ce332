#pragma once

#include <QFrame>

class QLabel;
class QToolButton;

/** A line above a window's content that says what went wrong or what to know, until it is closed or outdated. */
class NyMessageBar : public QFrame
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(NyMessageBar)
public:
    enum class Kind { Error, Hint };

    explicit NyMessageBar(QWidget *parent = nullptr);
    ~NyMessageBar() override;

    /** Shown as it stands, never as markup; an empty text takes the bar away. */
    void setMessage(Kind kind, const QString &text);

protected:
    void paintEvent(QPaintEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;

private:
    QLabel *m_icon;
    QLabel *m_text;
    QToolButton *m_close;
    Kind m_kind = Kind::Error;
};
