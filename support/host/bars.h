#pragma once
// Top bar, left bar and soft keys: the frame of every page. User-interface thread. Parents own them.
#include "support/host/api.h"
#include <QString>
#include <QWidget>

class QLabel;
class QAbstractButton;

// Title strip, 800 by 40.
class HX_HOST_API qTopBar : public QWidget
{
    Q_OBJECT
public:
    explicit qTopBar(QWidget* parent = nullptr);
    void setTitle(const QString& title);
    QString title() const;

protected:
    void paintEvent(QPaintEvent*) override;

private:
    QString m_strTitle;
};

// Icon and title of the page, 152 by 400.
class HX_HOST_API qLeftBar : public QWidget
{
    Q_OBJECT
public:
    enum Flow { LeftToRight = 0, TopToBottom = 1 };
    explicit qLeftBar(QWidget* parent = nullptr);
    void setTitle(const QString& title);
    // path: device path of a picture; empty shows none.
    void setIcon(const QString& path);
    // Where the icon or the title may be, in the bar's coordinates; with both the whole bar (the default)
    // the bar places them itself, in the order of the flow.
    void setIconGeometry(const QRect& rect);
    void setTextGeometry(const QRect& rect);
    void setFlow(int flow);
    QString title() const;
    QString icon() const;

protected:
    void paintEvent(QPaintEvent*) override;

private:
    QString m_strTitle;
    QString m_strIcon;
    QRect m_iconRect;
    QRect m_textRect;
    int m_nFlow = TopToBottom;
};

enum { SOFT_KEY_COUNT = 4 };

// One soft key: pressed by finger, or by its key F1 to F4.
class HX_HOST_API qSoftButton : public QWidget
{
    Q_OBJECT
public:
    explicit qSoftButton(QWidget* parent = nullptr);
    void setTitle(const QString& title);
    QString title() const;
    QString name() const;
    bool isPressed() const;
    // Presses the key as a finger would; an empty key does nothing.
    void press();

signals:
    void clicked();

protected:
    void paintEvent(QPaintEvent*) override;
    void mousePressEvent(QMouseEvent*) override;
    void mouseMoveEvent(QMouseEvent*) override;
    void mouseReleaseEvent(QMouseEvent*) override;

private:
    friend class qSoftKeyBar;
    QString m_strName;
    QString m_strTitle;
    bool m_bPressed = false;
};

// Four keys of 200 by 40.
class HX_HOST_API qSoftKeyBar : public QWidget
{
    Q_OBJECT
public:
    explicit qSoftKeyBar(QWidget* parent = nullptr);
    // index 0 to 3. name tells the key apart for tests and for SetButtonTitle by name; label is the visible
    // text in UTF-8; slot is SLOT(...) of receiver. Empty name, empty label and null clear the key.
    void SetButton(int index, const char* name, const char* label, QObject* receiver, const char* slot);
    void SetButtonTitle(int index, const QString& title);
    QString GetButtonTitle(int index) const;
    qSoftButton* GetButton(int index) const; // null for an index out of range
    // Index of the key of that name, -1 when there is none.
    int FindButton(const char* name) const;

protected:
    void paintEvent(QPaintEvent*) override;
    void resizeEvent(QResizeEvent*) override;

private:
    qSoftButton* m_aButtons[SOFT_KEY_COUNT];
};

// Each puts a bar in the place of a form's placeholder: its geometry, its parent. The placeholder is
// hidden and deleted later. title and icon may be null.
HX_HOST_API qTopBar* qReplaceTopBar(QWidget* placeholder, const char* title);
HX_HOST_API qLeftBar* qReplaceLeftBar(QWidget* placeholder, const char* title, const char* icon);
HX_HOST_API qSoftKeyBar* qReplaceSoftKeyBar(QWidget* placeholder);
