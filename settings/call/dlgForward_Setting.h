#pragma once
// The page "Forward": which calls go on to another number. The phone reads it with each call: nobody is told.
// User-interface thread.
#include "frame/configPage.h"
#include <QList>
#include <memory>

class QCheckBox;
namespace Ui {
class dlgForward_Setting;
}

class dlgForward_Setting : public ConfigPage
{
    Q_OBJECT
public:
    dlgForward_Setting(QWidget* parent, tagLeftBarInfo* info);
    ~dlgForward_Setting() override;

    // Whether the number is that of a registered line; tells the user so.
    HX_MODULE_API bool IsForwadingtoSelf(const QString& number);
    // Show these in the place of what is there.
    HX_MODULE_API void Display_Always_Forward(Qt::CheckState state, const char* target);
    HX_MODULE_API void Display_Busy_Forward(Qt::CheckState state, const char* target);
    HX_MODULE_API void Display_No_Answer_Forward(Qt::CheckState state, const char* target, const char* time);
    // Move the focus by that many of the inputs, round at the ends, and on to one that is enabled.
    HX_MODULE_API void setNextFocus(int steps);
    HX_MODULE_API void setPreFocus(int steps);
    // The inputs begin anew; always 0.
    HX_MODULE_API int initm_cur(QList<QObject*> inputs);

protected:
    QWidget* FirstFocus() override;
    int save() override;

private:
    void showTimeCaption();
    void on_init_data(int first);
    int checkTarget(QCheckBox* box, QLineEdit* edit, const char* message);
    int checkTime();
    void stepFocus(int steps);

    std::unique_ptr<Ui::dlgForward_Setting> ui;
    QList<QObject*> m_lstFocusWidgets;
    int m_iCurFocus = 0;
};
