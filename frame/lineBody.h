#pragma once
// The body of one line on a page with a tab for each line: its widgets are tied to the keys of that line by
// the same table and the same checks as those of a page. User-interface thread.
#include "frame/configBindings.h"
#include "support/host/linepages.h"

class LineBody : public qLineBodyWidget, public ConfigBindings
{
    Q_OBJECT
public:
    explicit LineBody(QWidget* parent = nullptr);

    // At each show: the stored values of the line, texts in the present language, input methods.
    void LoadLineInfo(int line) override;
    // save(), with what it refused.
    QWidget* GetInvalidInput(QString& message) override;
    bool SaveLineInfo() override;
    // 0 after a SaveLineInfo() that could not store everything.
    int IsStored() { return AreConfigsSaved(); }
    // Where the focus goes when the page is shown; null leaves it.
    virtual QWidget* FirstFocus() { return nullptr; }

protected:
    // Calls Bind() with the keys of line 0 to 3.
    virtual void BindLine(int line) = 0;
    // At each show, after the stored values were loaded: what the table does not do.
    virtual void RefreshData() {}
    int Refuse(QWidget* widget, const char* message) override;

    int m_iLine = -1; // 0 to 3, -1 before the first load

private:
    QWidget* m_pRefused = nullptr;
    const char* m_szRefusal = nullptr;
};
