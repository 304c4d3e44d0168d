#include "tools/signServer/StatusPage.h"
#include "tools/signServer/HtmlText.h"
#include "tools/signServer/StatusStyle.h"
#include <QCryptographicHash>
#include <QDateTime>

namespace {

constexpr int kReloadS = 10;
constexpr int kFilesInOverview = 8; // of a display
constexpr int kMostWarnings = 100;

struct Look
{
    const char* style; // class
    const char* title;
    const char* glyph; // paths of a picture of 24 by 24
};

const Look& LookOf(Standing standing)
{
    static const Look looks[] = {
        {"late", "Late", "<path d='M3 12a9 9 0 1 0 18 0a9 9 0 0 0 -18 0'/><path d='M12 7v5l3 3'/>"},
        {"refused", "Refused", "<path d='M18 6l-12 12'/><path d='M6 6l12 12'/>"},
        {"incomplete", "Incomplete", "<path d='M12 5v11'/><path d='M7 12l5 5l5 -5'/><path d='M5 20h14'/>"},
        {"instep", "In step", "<path d='M5 12l5 5l10 -10'/>"},
    };
    return looks[int(standing)];
}

const char* const kWarningGlyph =
    "<path d='M12 9v4'/><path d='M10.363 3.591l-8.106 13.534a1.914 1.914 0 0 0 1.636 2.871h16.214a1.914 "
    "1.914 "
    "0 0 0 1.636 -2.87l-8.106 -13.536a1.914 1.914 0 0 0 -3.274 0'/><path d='M12 16h.01'/>";
const char* const kDisplayGlyph =
    "<path d='M3 9a2 2 0 0 1 2 -2h14a2 2 0 0 1 2 2v9a2 2 0 0 1 -2 2h-14a2 2 0 0 1 -2 -2l0 -9'/>"
    "<path d='M16 3l-4 4l-4 -4'/>";

QByteArray Picture(const char* glyph)
{
    return QByteArray("<svg viewBox='0 0 24 24' aria-hidden='true'>") + glyph + "</svg>";
}

QByteArray Tile(const char* glyph)
{
    return "<div class='tile'>" + Picture(glyph) + "</div>";
}

QByteArray Number(qint64 number)
{
    return QByteArray::number(number);
}

QByteArray Count(qint64 number, const char* one, const char* many)
{
    return Number(number) + " " + (number == 1 ? one : many);
}

QByteArray Span(qint64 seconds)
{
    if (seconds < 120)
        return Number(std::max<qint64>(seconds, 0)) + " s";
    if (seconds < 120 * 60)
        return Number(seconds / 60) + " min";
    return seconds < 48 * 3600 ? Number(seconds / 3600) + " h" : Number(seconds / 86400) + " days";
}

// The time of day, and the day if it is another one.
QByteArray Clock(qint64 at, qint64 now)
{
    const QDateTime time = QDateTime::fromSecsSinceEpoch(at);
    const bool isToday = time.date() == QDateTime::fromSecsSinceEpoch(now).date();
    return time.toString(isToday ? "HH:mm:ss" : "yyyy-MM-dd HH:mm").toLatin1();
}

QByteArray Counts(const StatusReport& report)
{
    QByteArray html = "<section class='counts'>";
    for (Standing standing : {Standing::Late, Standing::Refused, Standing::Incomplete, Standing::InStep}) {
        const Look& look = LookOf(standing);
        const int count = report.Count(standing);
        html += QByteArray("<div class='") + look.style + (count ? "'>" : " none'>") + Tile(look.glyph) +
                "<p><b>" + Number(count) + "</b><span>" + look.title + "</span></p></div>";
    }
    return html + "</section>\n";
}

QByteArray Warnings(const QStringList& warnings)
{
    if (warnings.isEmpty())
        return QByteArray();
    QByteArray html =
        "<section class='content'>" + Tile(kWarningGlyph) + "<div><h2>Content that no phone shows</h2><ul>";
    for (const QString& warning : warnings.mid(0, kMostWarnings))
        html += "<li>" + HtmlText(warning.toUtf8()) + "</li>";
    if (warnings.size() > kMostWarnings)
        html += "<li>and " + Number(warnings.size() - kMostWarnings) + " more</li>";
    return html + "</ul></div></section>\n";
}

QByteArray StateText(const StatusRow& row, qint64 now)
{
    const DisplayRecord& record = row.record;
    switch (row.standing) {
    case Standing::Late:
        if (record.lastLook)
            return "silent for " + Span(now - record.lastLook);
        return record.lastRegistration ? "never asked for its schedule" : "never seen";
    case Standing::Refused:
        return record.refusals.isEmpty() ? "is no longer admitted" : HtmlText(record.refusals.first().why);
    case Standing::Incomplete:
        return record.files ? Count(row.wanted - row.whole, "file is missing", "files are missing")
                            : QByteArray("has not asked for its schedule yet");
    case Standing::InStep:
        break;
    }
    return "looked " + Span(now - record.lastLook) + " ago";
}

QByteArray When(const DisplayRecord& record, qint64 now)
{
    QByteArray text;
    if (record.lastLook)
        text = "Last look " + Clock(record.lastLook, now);
    if (record.lastRegistration)
        text +=
            (text.isEmpty() ? "Registered " : " &middot; registered ") + Clock(record.lastRegistration, now);
    return text;
}

QByteArray Files(const StatusRow& row, qint64 now)
{
    if (!row.record.files)
        return "<div class='files'><p class='when'>" + When(row.record, now) + "</p></div>";
    const QByteArray shown = Number(row.whole) + " of " + Count(row.wanted, "file", "files");
    return "<div class='files'><p><span>" + shown + "</span></p><progress" +
           (row.whole == row.wanted ? " class='full'" : "") + " max='" + Number(std::max(row.wanted, 1)) +
           "' value='" + Number(row.wanted ? row.whole : 1) + "'>" + shown + "</progress></div>";
}

QByteArray FileNote(const ScheduledFile& file, FileStanding standing)
{
    static const std::pair<const char*, const char*> words[] = {
        {"ok", "whole"}, {"", "cut off"}, {"", "refused"}, {"", "not fetched"}, {"rest", "not its time"}};
    const auto& [style, word] = words[int(standing)];
    return QByteArray("<li class='") + style + "'>" + HtmlText(file.name) + " <em>" + word + "</em></li>";
}

// The files that are missing; all of them when `all` is set.
QByteArray FileNotes(const DisplayRecord& record, qint64 now, bool all)
{
    QByteArray html;
    int beyond = 0, shown = 0;
    for (qsizetype i = 0; i < record.states.size(); ++i) {
        const FileStanding standing = StandingOf(record, i, now);
        const bool isFine = standing == FileStanding::Whole || standing == FileStanding::NotDue;
        if (isFine && !all)
            continue;
        if (all || shown < kFilesInOverview) {
            html += FileNote(record.files->files[i], standing);
            ++shown;
        } else {
            ++beyond;
        }
    }
    return beyond ? html + "<li class='rest'><em>and " + Number(beyond) + " more</em></li>" : html;
}

QByteArray RefusalNotes(const DisplayRecord& record, qint64 now)
{
    QByteArray html;
    for (const Refusal& one : record.refusals)
        html += "<li class='no'>" + HtmlText(one.what) + ": " + HtmlText(one.why) + " &middot; " +
                Clock(one.at, now) + (one.times > 1 ? " &middot; " + Number(one.times) + " times" : "") +
                "</li>";
    return html;
}

QByteArray Article(const StatusRow& row, qint64 now, bool all)
{
    const DisplayRecord& record = row.record;
    const Look& look = LookOf(row.standing);
    const QByteArray name = record.name.isEmpty() ? QByteArray("(no name)") : HtmlText(record.name);
    const QByteArray link = "<a href='/status?display=" + HtmlText(HtmlQueryValue(record.key)) + "'>";
    const QByteArray notes = FileNotes(record, now, all) + RefusalNotes(record, now);
    return QByteArray("<article class='") + look.style + "'>" + Tile(look.glyph) + "<div><h3>" + link + name +
           "</a></h3><p class='key'>" + HtmlText(record.key) +
           (record.address.isEmpty() ? QByteArray() : " &middot; " + HtmlText(record.address)) +
           "</p></div><div class='state'><p><b>" + look.title + "</b> " + StateText(row, now) +
           "</p><p class='when'>" + (record.files ? When(record, now) : QByteArray()) + "</p></div>" +
           Files(row, now) + (notes.isEmpty() ? QByteArray() : "<ul class='notes'>" + notes + "</ul>") +
           "</article>\n";
}

QByteArray Articles(const StatusReport& report, const QByteArray& display)
{
    QByteArray html = "<section class='list'>\n";
    int shown = 0;
    for (const StatusRow& row : report.rows) {
        if (!display.isEmpty() && row.record.key != display)
            continue;
        html += Article(row, report.now, !display.isEmpty());
        ++shown;
    }
    if (!shown)
        html += display.isEmpty()
                    ? "<p class='empty'>No display has registered, and server.ini names none.</p>"
                    : "<p class='empty'>There is no such display any more.</p>";
    return html + "</section>\n";
}

} // namespace

QByteArray StatusPage(const StatusReport& report, const QByteArray& display)
{
    const int late = report.Count(Standing::Late);
    const QByteArray title = late ? Number(late) + " late" : QByteArray("Displays");
    const QByteArray body = display.isEmpty() ? Counts(report) + Warnings(report.warnings) + "<h2>" +
                                                    Count(report.rows.size(), "display", "displays") + "</h2>"
                                              : QByteArray("<h2>All files of its schedule</h2>");
    return "<!DOCTYPE html>\n<html lang='en'><head><meta charset='utf-8'>"
           "<meta name='viewport' content='width=device-width,initial-scale=1'>"
           "<meta http-equiv='refresh' content='" +
           Number(kReloadS) + "'><title>" + title + " &middot; Signage</title><style>" + StatusStyle +
           "</style></head>\n<body><header><a href='/status'>" + Picture(kDisplayGlyph) +
           "</a><h1>Signage displays</h1><time>" + Clock(report.now, report.now) +
           "</time></header>\n<main>" + body + Articles(report, display) +
           "<footer>Late: no look at the schedule for " + Span(StatusReport::LateAfterS(report.intervalS)) +
           ", three of the displays&#39; intervals.</footer>" + "</main></body></html>\n";
}

QByteArray StatusPagePolicy()
{
    const QByteArray sum = QCryptographicHash::hash(StatusStyle, QCryptographicHash::Sha256).toBase64();
    return "default-src 'none'; style-src 'sha256-" + sum +
           "'; base-uri 'none'; form-action 'none'; frame-ancestors 'none'";
}
