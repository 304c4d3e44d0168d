// The measure itself: a text that is too long is found at each kind of widget, one that has room is not.
#include "tests/texts/textRoom.h"
#include "host/look/look.h"
#include "host/widgets/dlgMessageBox.h"
#include "host/widgets/fittedLabel.h"
#include "support/host/bars.h"
#include "support/host/box.h"
#include "support/host/button.h"
#include "support/host/combo.h"
#include "support/host/iconview.h"
#include "support/host/linepages.h"
#include "support/host/ui.h"
#include "tests/kit/phoneTest.h"
#include <QCheckBox>
#include <QComboBox>
#include <QDialog>
#include <QGroupBox>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QRadioButton>
#include <QTabWidget>
#include <QTableWidget>

namespace {

const QString kShort("Save");
const QString kLong("A text that is a good deal too long for the place in which it is to be shown there");

class TextRoom : public PhoneTest
{
protected:
    TextRoom() { m_window.resize(800, 480); }

    // make(text) puts a widget with the text into the window.
    template <class Make>
    void expectFound(Make make, const QString& tooLong = kLong)
    {
        for (const bool isLong : {false, true}) {
            const QString text = isLong ? tooLong : kShort;
            std::unique_ptr<QWidget> widget(make(text));
            widget->show();
            m_window.show();
            kit::settle();
            const QString cut = cutTexts(&m_window, {kShort, kLong}).join("; ");
            EXPECT_EQ(cut.contains(text), isLong) << qPrintable(cut);
            EXPECT_EQ(cut.isEmpty(), !isLong) << qPrintable(cut);
        }
    }
    template <class Widget>
    Widget* place(const QRect& rect)
    {
        Widget* widget = new Widget(&m_window);
        widget->setGeometry(rect);
        return widget;
    }

    QDialog m_window;
};

const QRect kField(160, 100, 120, 36);

} // namespace

TEST_F(TextRoom, OfALabel)
{
    expectFound([this](const QString& text) {
        QLabel* label = place<QLabel>(kField);
        label->setText(text);
        return label;
    });
}

TEST_F(TextRoom, OfALabelWithAnIndent)
{
    // Of its width alone the text would have room.
    const int width = m_window.fontMetrics().horizontalAdvance("Gateway") + 4;
    expectFound(
        [this, width](const QString& text) {
            QLabel* label = place<QLabel>(QRect(160, 100, width, 36));
            label->setIndent(8);
            label->setText(text);
            return label;
        },
        "Gateway");
}

TEST_F(TextRoom, OfALabelThatWraps)
{
    const auto make = [this](const QString& text) {
        QLabel* label = place<QLabel>(QRect(160, 100, 120, 52));
        label->setWordWrap(true);
        label->setText(text);
        return label;
    };
    expectFound(make);
    expectFound(make, "Wallpapermanagement");
    std::unique_ptr<QWidget> twoLines(make("Contact Picture"));
    twoLines->show();
    EXPECT_EQ(cutTexts(&m_window).join("; "), "");
}

TEST_F(TextRoom, OfAFittedLabel)
{
    expectFound([this](const QString& text) {
        auto* label = new fittedLabel(text, look::font(look::kTextSize), 1, &m_window);
        label->setGeometry(kField);
        return label;
    });
}

TEST_F(TextRoom, OfAButton)
{
    expectFound([this](const QString& text) {
        QPushButton* button = place<QPushButton>(kField);
        button->setText(text);
        return button;
    });
}

TEST_F(TextRoom, OfAButtonWithPictures)
{
    expectFound([this](const QString& text) {
        QPushButton* button = CreateUIPushButton(QRect(160, 100, 300, 60), "btn", &m_window);
        SetButton3StatusImage(button, HX_THEME("button/btn_dss_bg_m001.png"),
                              HX_THEME("button/btn_dss_bg_m002.png"), HX_THEME("button/btn_dss_bg_m003.png"));
        button->setText(text);
        return button;
    });
}

TEST_F(TextRoom, OfACheckBox)
{
    expectFound([this](const QString& text) {
        QCheckBox* box = place<QCheckBox>(kField);
        box->setText(text);
        return box;
    });
    // The text alone would have room, but not beside its mark.
    const QString tight("Enable line");
    const int width = m_window.fontMetrics().horizontalAdvance(tight) + 8;
    expectFound(
        [this, width](const QString& text) {
            QCheckBox* box = place<QCheckBox>(QRect(160, 100, width, 36));
            box->setText(text);
            return box;
        },
        tight);
}

TEST_F(TextRoom, OfARadioButton)
{
    expectFound([this](const QString& text) {
        QRadioButton* radio = place<QRadioButton>(kField);
        radio->setText(text);
        return radio;
    });
}

TEST_F(TextRoom, OfAnItemOfAComboBoxThatIsNotTheCurrentOne)
{
    expectFound([this](const QString& text) {
        QComboBox* box = place<QComboBox>(QRect(160, 100, 200, 36));
        qAddComboBoxItem(box, "First", "1");
        qAddComboBoxItem(box, text, "2");
        return box;
    });
}

TEST_F(TextRoom, OfATab)
{
    expectFound([this](const QString& text) {
        qLinePages* pages = place<qLinePages>(QRect(152, 40, 648, 400));
        for (int i = 0; i < 3; ++i)
            pages->AddLinePage(new qLineBodyWidget(pages), "Line");
        pages->AddLinePage(new qLineBodyWidget(pages), text);
        return pages;
    });
}

TEST_F(TextRoom, OfAHeadingOfATable)
{
    expectFound([this](const QString& text) {
        QTableWidget* table = place<QTableWidget>(QRect(160, 60, 500, 300));
        SetTabWgtNormalProperty(table, true);
        table->setColumnCount(2);
        table->setHorizontalHeaderLabels({text, "Number"});
        return table;
    });
}

TEST_F(TextRoom, OfACellOfATable)
{
    expectFound([this](const QString& text) {
        QTableWidget* table = place<QTableWidget>(QRect(160, 60, 500, 300));
        SetTabWgtNormalProperty(table, false);
        table->setColumnCount(2);
        table->setRowCount(1);
        table->setItem(0, 1, new QTableWidgetItem(text));
        return table;
    });
}

TEST_F(TextRoom, OfAHeadingOfAGroup)
{
    expectFound([this](const QString& text) {
        QGroupBox* group = place<QGroupBox>(QRect(160, 60, 200, 100));
        group->setTitle(text);
        return group;
    });
}

TEST_F(TextRoom, OfThePlaceholderOfAField)
{
    expectFound([this](const QString& text) {
        QLineEdit* edit = place<QLineEdit>(kField);
        edit->setPlaceholderText(text);
        return edit;
    });
}

TEST_F(TextRoom, OfTheTopBar)
{
    expectFound(
        [this](const QString& text) {
            qTopBar* bar = place<qTopBar>(QRect(0, 0, 800, 40));
            bar->setTitle(text);
            return bar;
        },
        kLong + " " + kLong);
}

TEST_F(TextRoom, OfTheLeftBar)
{
    const auto make = [this](const QString& text) {
        qLeftBar* bar = place<qLeftBar>(QRect(0, 40, 152, 400));
        bar->setTitle(text);
        return bar;
    };
    expectFound(make);
    expectFound(make, "Wallpapermanagements");
}

TEST_F(TextRoom, OfASoftKey)
{
    expectFound([this](const QString& text) {
        qSoftKeyBar* keys = place<qSoftKeyBar>(QRect(0, 440, 800, 40));
        keys->SetButton(2, "Key", text.toUtf8().constData(), nullptr, nullptr);
        return keys;
    });
}

TEST_F(TextRoom, OfACaptionOfAMenu)
{
    expectFound([this](const QString& text) {
        writeFile("/rundata/data/menu.xml",
                  "<RootMenu title='Menu' icon=''><item title='" + text.toUtf8() + "' icon=''/></RootMenu>");
        qIconView* view = place<qIconView>(QRect(152, 40, 648, 400));
        view->SetMartrixGrix(4, 2);
        view->LoadMenuFile("/rundata/data/menu.xml");
        return view;
    });
}

TEST_F(TextRoom, OfABox)
{
    for (const QString& text : {kShort, kLong, kLong.repeated(12)}) {
        dlgMessageBox box("Note", text, BOX_NOTE, nullptr);
        EXPECT_EQ(cutTexts(&box).isEmpty(), text.size() < 200) << qPrintable(cutTexts(&box).join("; "));
    }
    dlgMessageBox titled(kLong, kShort, BOX_NOTE, nullptr);
    EXPECT_FALSE(cutTexts(&titled).isEmpty());
}
