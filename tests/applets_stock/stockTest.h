#pragma once
// A phone with a list of stocks, and a feed of the test's own that answers for their codes.
#include "applets/appletPages.h"
#include "applets/cStockAction.h"
#include "applets/cStockController.h"
#include "applets/dlgStock.h"
#include "applets/stockEntry.h"
#include "frame/configFiles.h"
#include "host/services/system/netWorld.h"
#include "host/services/transfers/taskBook.h"
#include "support/host/createObject.h"
#include "support/host/net.h"
#include "support/host/text.h"
#include "support/host/trace.h"
#include "support/xml/xmlFile.h"
#include "tests/kit/kitTime.h"
#include "tests/kit/pageTest.h"
#include "tests/services/httpServer.h"
#include <QDir>
#include <QFileInfo>
#include <QLabel>
#include <QMap>
#include <QPointer>
#include <QTimer>
#include <vector>

#define STOCK_SOURCE "/phone/resource/StockSource.xml"

class StockTest : public PageTest
{
protected:
    static constexpr int kWaitMs = 20000;

    StockTest()
    {
        appletPages();
        netWorld().state = NET_UP;
        QDir().mkpath(hostPath("/rundata/data"));
        serve("/ig/api?stock=");
        http.onRequest = [this](QTcpSocket& socket, const QByteArray& path) { onRequest(socket, path); };
    }

    void serve(const QByteArray& prefix)
    {
        replaceFirmwareFile(STOCK_SOURCE, "<StockSource><source title=\"Google\" address=\"" +
                                              http.url(prefix) + "\"/></StockSource>");
    }
    // A reply of the public feed; what changes is told, the rest is always the same.
    static QByteArray quote(const QByteArray& company, const QByteArray& change = "+1.35",
                            const QByteArray& percent = "0.92")
    {
        return "<xml_api_reply><finance><company data=\"" + company +
               "\"/><last data=\"148.20\"/><change data=\"" + change + "\"/><perc_change data=\"" + percent +
               "\"/><open data=\"146.90\"/><y_close data=\"146.85\"/><low data=\"146.10\"/>"
               "<high data=\"148.60\"/><bid data=\"148.15\"/><ask data=\"148.25\"/>"
               "<market_cap data=\"12.4B\"/><volume data=\"1.82M\"/>"
               "<current_date_utc data=\"20261121140500\"/></finance></xml_api_reply>";
    }
    static std::vector<chString*> fieldsOf(tagCStockInfo& of)
    {
        return {&of.strCompany,   &of.strLast,   &of.strChange, &of.strPercChange, &of.strOpen,
                &of.strPrevClose, &of.strLow,    &of.strHigh,   &of.strBid,        &of.strAsk,
                &of.strMarketCap, &of.strVolume, &of.strUpdated};
    }
    void writeList(const QStringList& codes, int count = 10) const
    {
        QByteArray list = "<Stock>";
        for (int i = 0; i < count; ++i)
            list += "<item name=\"" + codes.value(i).toUtf8() + "\"/>";
        writeFile(STOCK_DATA_XML, list + "</Stock>");
    }
    QStringList storedCodes() const
    {
        QStringList codes;
        xmlFile file;
        EXPECT_TRUE(file.LoadFromFile(STOCK_DATA_XML));
        const xmlElement* list = file.GetRootElement();
        for (xmlElement* slot = list ? list->GetFirstChildElement() : nullptr; slot;
             slot = xmlGetNextElement(slot))
            codes.append(toQString(slot->GetAttributeValue("name").GetString()));
        return codes;
    }
    // Until nothing is asked for any more and what came was told.
    static bool quiet()
    {
        int still = 0;
        return kit::waitUntil(
            [&] {
                still = taskPendingCount() == 0 ? still + 1 : 0;
                return still > 3;
            },
            kWaitMs);
    }
    void openStock(const QStringList& codes)
    {
        writeList(codes);
        openPage();
    }
    void openPage()
    {
        open("Stock");
        kit::settle();
        ASSERT_TRUE(quiet());
    }
    dlgStock* stock() const { return qobject_cast<dlgStock*>(page); }
    QComboBox* list() const { return child<QComboBox>("cmbStockList"); }
    QString text(const char* label) const { return child<QLabel>(label)->text(); }
    QColor colour(const char* label) const
    {
        return child<QLabel>(label)->palette().color(QPalette::WindowText);
    }
    QStringList shownCodes() const
    {
        QStringList codes;
        for (int i = 0; i < list()->count(); ++i)
            codes.append(list()->itemText(i));
        return codes;
    }
    QStringList shownQuote() const
    {
        QStringList texts;
        for (const char* label :
             {"labStockName", "labCurrentPrice", "labCurrentRate", "labCurrentPriceRate",
              "labOpeningPriceData", "labPrevClosingPriceData", "labLowData", "labHighData",
              "labBidPriceData", "labAskPriceData", "labMarketCapData", "labVolumeData", "labTime"})
            texts.append(text(label));
        return texts;
    }
    static QStringList nothingKnown()
    {
        QStringList texts;
        for (int i = 0; i < 13; ++i)
            texts.append("N/A");
        return texts;
    }
    void select(int index)
    {
        list()->setCurrentIndex(index);
        kit::settle();
        ASSERT_TRUE(quiet());
    }
    // A box that comes when so much time has gone by.
    static bool boxComes(const kit::BoxAnswers& boxes, int ms)
    {
        const auto before = boxes.texts().size();
        kit::moveClocks(ms);
        return kit::waitUntil([&] { return boxes.texts().size() > before; }, kWaitMs);
    }
    // Three seconds go by as soon as there is a box; until it was seen to be gone.
    bool boxClosesByItself(const kit::BoxAnswers& boxes) const
    {
        QTimer clock;
        bool isOver = false;
        clock.callOnTimeout(&clock, [&] {
            if (!boxes.texts().isEmpty() && !std::exchange(isOver, true))
                kit::moveClocks(3000);
        });
        clock.start(1);
        return kit::waitUntil([&] { return isOver && kit::windows().first() == page; }, kWaitMs);
    }
    // Codes that the feed was asked for.
    QStringList asked() const
    {
        QStringList codes;
        for (const QByteArray& path : http.paths)
            codes.append(QString::fromUtf8(path).section('=', -1));
        return codes;
    }
    QStringList answerFiles() const
    {
        return QDir(hostPath("/rundata/data"))
            .entryList({"*-download.xml*"}, QDir::AllEntries | QDir::Hidden);
    }

    httpServer http;
    QMap<QByteArray, QByteArray> replies; // by code; without one the code is the company
    QSet<QByteArray> failing;
    bool silent = false; // answers wait for release()
    void release()
    {
        silent = false;
        for (const auto& [socket, path] : std::exchange(m_held, {})) {
            if (socket)
                onRequest(*socket, path);
        }
    }
    int held() const { return int(m_held.size()); }

private:
    void onRequest(QTcpSocket& socket, const QByteArray& path)
    {
        if (silent) {
            m_held.append({&socket, path});
            return;
        }
        const QByteArray code = path.mid(path.lastIndexOf('=') + 1);
        if (failing.contains(code))
            socket.write(httpServer::answer("", "404 Not Found"));
        else
            socket.write(httpServer::answer(replies.value(code, quote(code))));
    }
    QList<std::pair<QPointer<QTcpSocket>, QByteArray>> m_held;
};
