// How the import pages look: the card of the list, its rows, and the words of a refusal.
#include "media/basePreview.h"
#include "media/dlgMediaManager.h"
#include "support/host/language.h"
#include "tests/media/importPage.h"
#include <QFrame>
#include <QTableWidget>

namespace {

const QRect kPage(152, 40, 648, 400); // between the bars

class ImportPageLook : public ImportTest
{
protected:
    ImportPageLook()
    {
        put("HHHH.png", picture("PNG", 20, 10));
        put("a name that is far too long for any row of any list of the phone and is shortened.png",
            picture("PNG", 20, 10));
        put("large.jpg", picture("JPG", 2400, 1440));
        put("damaged.jpg", "no picture");
        for (int i = 0; i < 12; ++i)
            put(QString("folder %1/x.png").arg(i));
    }
    ~ImportPageLook() override { GetLanguageHelper()->SetLanguage("English"); }
    QFrame* card() const { return page->findChild<QFrame*>("frmList"); }
    // Of a row, on the screen, without its line at the bottom.
    QRect rowRect(int row) const
    {
        return view->visualItemRect(view->item(row))
            .translated(view->viewport()->mapTo(page.data(), QPoint()))
            .adjusted(0, 0, 0, -2);
    }
    // Columns of a row, which is not the current one, in which something is painted.
    QList<int> inkOf(int row) const
    {
        const QImage shown = kit::screen();
        const QRect rect = rowRect(row);
        const QRgb paper = shown.pixel(rect.left() + 6, rect.center().y());
        QList<int> columns;
        for (int x = rect.left(); x <= rect.right(); ++x) {
            bool isInk = false;
            for (int y = rect.top() + 2; y < rect.bottom() && !isInk; ++y)
                isInk = std::abs(qGreen(shown.pixel(x, y)) - qGreen(paper)) > 24;
            if (isInk)
                columns.append(x);
        }
        return columns;
    }
    void showRow(const QString& name)
    {
        view->setCurrentRow(view->count() - 1 == rowOf(name) ? 0 : view->count() - 1);
        view->scrollToItem(view->item(rowOf(name)));
        kit::settle();
    }
};

TEST_F(ImportPageLook, TheListLiesOnACardWithAMarginToAllSides)
{
    openImages();
    ASSERT_NE(card(), nullptr);
    EXPECT_EQ(card()->geometry().topLeft(), QPoint(166, 56));
    EXPECT_LE(card()->geometry().right() + 8, label()->x());
    EXPECT_TRUE(kPage.adjusted(12, 12, -12, -12).contains(card()->geometry()));
    EXPECT_EQ(view->geometry().adjusted(-6, -6, 6, 6), card()->geometry());
    EXPECT_EQ(view->viewport()->height() % 40, 0) << "whole rows";
    delete page;
    open<dlgSoundImport>("sound");
    EXPECT_EQ(card()->geometry().topLeft(), QPoint(166, 56));
    EXPECT_TRUE(kPage.adjusted(12, 12, -12, -12).contains(card()->geometry()));
    EXPECT_GT(card()->width(), 600) << "the whole page when nothing is previewed";
    EXPECT_EQ(view->geometry().adjusted(-6, -6, 6, 6), card()->geometry());
    enter();
    kit::shot("import_sound");
}

TEST_F(ImportPageLook, TheCardIsThatOfTheManager)
{
    dlgMediaManager manager(nullptr, nullptr);
    manager.LoadSoundMedia("sound");
    open<dlgSoundImport>("sound");
    EXPECT_EQ(card()->geometry(), manager.findChild<QFrame*>("frmList")->geometry());
    EXPECT_EQ(view->geometry(), manager.findChild<QTableWidget*>()->geometry());
    EXPECT_EQ(card()->frameShape(), manager.findChild<QFrame*>("frmList")->frameShape());
}

TEST_F(ImportPageLook, RowsAreThoseOfTheManagerAndTheirIconsStandApart)
{
    openImages();
    enter();
    showRow("HHHH.png");
    EXPECT_EQ(view->visualItemRect(view->item(0)).height(), 40);
    EXPECT_EQ(view->visualItemRect(view->item(view->count() - 1)).height(), 40);
    const QList<int> ink = inkOf(rowOf("HHHH.png"));
    ASSERT_GT(ink.size(), 30);
    EXPECT_GE(ink.first() - view->x(), 14);
    int widest = 0; // gap between columns
    for (int i = 1; i < ink.size(); ++i)
        widest = std::max(widest, ink[i] - ink[i - 1]);
    EXPECT_GE(widest, 9) << "from the icon to its text";
    EXPECT_LE(widest, 20);
    kit::shot("import_rows");
}

TEST_F(ImportPageLook, ALongNameEndsWhereTheLineBelowItEnds)
{
    openImages();
    enter();
    const QString name =
        "a name that is far too long for any row of any list of the phone and is shortened.png";
    showRow(name);
    const QList<int> ink = inkOf(rowOf(name));
    ASSERT_GT(ink.size(), 100);
    EXPECT_LE(ink.last(), rowRect(rowOf(name)).right() - 13);
    EXPECT_GE(ink.last(), rowRect(rowOf(name)).right() - 60);
}

TEST_F(ImportPageLook, AnIconOfTheChosenRowKeepsItsColours)
{
    openImages();
    enter();
    const QIcon icon = view->item(0)->icon();
    EXPECT_EQ(icon.pixmap(QSize(32, 32), QIcon::Selected).toImage(),
              icon.pixmap(QSize(32, 32), QIcon::Normal).toImage());
}

TEST_F(ImportPageLook, TheWordsOfARefusalAreWholeAndInTheMiddleInEveryLanguage)
{
    for (const char* language : {"English", "Chinese", "German", "French", "Spanish"}) {
        ASSERT_EQ(GetLanguageHelper()->SetLanguage(language), 1);
        for (const bool isContact : {true, false}) {
            isContact ? openContacts() : openImages();
            enter();
            for (const char* name : {"large.jpg", "damaged.jpg"}) {
                SCOPED_TRACE(std::string(language) + ' ' + name);
                view->setCurrentRow(0);
                page->findChild<basePreview*>()->SetDelay(0);
                view->setCurrentRow(rowOf(name));
                ASSERT_TRUE(
                    kit::waitUntil([this] { return label()->isVisible() && !label()->text().isEmpty(); }));
                kit::settle();
                const QImage shown = kit::screen();
                const QRect place = label()->geometry();
                const QRect words = label()->fontMetrics().boundingRect(
                    place, Qt::AlignCenter | Qt::TextWordWrap, label()->text());
                EXPECT_TRUE(place.contains(words)) << words.width() << 'x' << words.height();
                if (QByteArray(name) == "large.jpg" && !isContact)
                    kit::shot(QString("import_refusal_%1").arg(language));
                label()->hide();
                kit::settle();
                const QImage without = kit::screen();
                QRect ink;
                for (int y = kPage.top(); y <= kPage.bottom(); ++y) {
                    for (int x = kPage.left(); x <= kPage.right(); ++x) {
                        if (shown.pixel(x, y) != without.pixel(x, y))
                            ink |= QRect(x, y, 1, 1);
                    }
                }
                EXPECT_LE(std::abs(ink.center().x() - place.center().x()), 8)
                    << "a full stop of a wide script is half blank";
                EXPECT_LE(std::abs(ink.center().y() - place.center().y()), 6);
                EXPECT_LE(std::abs(ink.width() - words.width()), 16) << "whole lines";
                EXPECT_GE(ink.height(), words.height() - 16) << "all of them";
            }
            delete page;
        }
    }
}

} // namespace
