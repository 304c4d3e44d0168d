#include "tools/themeRender/PictureMaker.h"
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>
#include <cairo.h>
#include <librsvg/rsvg.h>

namespace {

const double GlyphGrid = 24;
const double GlyphShare = 0.58;  // of the picture's shorter side
const double CornerShare = 0.23; // the same
const int ShadowRim = 12;        // room that a shadow needs around what casts it

QString Number(double value)
{
    return QString::number(value, 'g', 8);
}

double InkOpacity(ButtonState state)
{
    return state == ButtonState::Disabled ? 0.45 : 1;
}

} // namespace

PictureMaker::PictureMaker(const QString& themeFolder, const Palette& palette)
    : m_folder(themeFolder), m_palette(palette), m_glyphs(themeFolder + "/glyphs")
{
}

int PictureMaker::Fail(const QString& error)
{
    m_error = error;
    return 0;
}

int PictureMaker::Make(const ThemePicture& picture, const QString& file)
{
    Values values;
    QByteArray svg;
    QImage image(picture.size, QImage::Format_ARGB32_Premultiplied);
    return CollectValues(picture, values) && FillTemplate(picture.templateName, values, svg) &&
           Draw(svg, image) && Write(image, file);
}

int PictureMaker::CollectValues(const ThemePicture& picture, Values& values)
{
    const int width = picture.size.width(), height = picture.size.height();
    const int shorter = qMin(width, height);
    values["width"] = Number(width);
    values["height"] = Number(height);
    values["radius"] = Number(shorter * CornerShare);
    values["centreX"] = Number(width / 2.0);
    values["centreY"] = Number(height / 2.0);
    values["disc"] = Number(shorter / 2.0 - 0.5);
    values["innerWidth"] = Number(width - 2 * ShadowRim);
    values["innerHeight"] = Number(height - 2 * ShadowRim);
    values["innerRadius"] = Number((shorter - 2 * ShadowRim) * CornerShare);
    values["plate"] = picture.state == ButtonState::Pressed ? "0.2" : "0";
    values["edge"] = picture.state == ButtonState::Pressed ? "0.12" : "0.35";
    return AddColours(picture, values) && AddGlyph(picture, values);
}

int PictureMaker::AddColours(const ThemePicture& picture, Values& values)
{
    const QString name = picture.row["colour"].toString();
    if (name.isEmpty())
        return 1;
    const QVector<QColor> colours = m_palette.Family(name, picture.state);
    if (colours.size() != 3)
        return Fail(picture.devicePath + ": no colour family " + name);
    values["top"] = colours[0].name();
    values["middle"] = colours[1].name();
    values["bottom"] = colours[2].name();
    return 1;
}

// Row values: glyphSize in pixels, glyphDown moves the glyph below the middle, ink its colour, faint its
// opacity. A picture without a glyph has an empty one.
int PictureMaker::AddGlyph(const ThemePicture& picture, Values& values)
{
    const QJsonObject& row = picture.row;
    const QString name = row["glyph"].toString();
    values["glyph"] = QString();
    if (name.isEmpty())
        return 1;
    const QString markup = m_glyphs.Markup(name);
    if (markup.isNull())
        return Fail(picture.devicePath + ": no glyph " + name);

    const QSize size = picture.size;
    const double side = row["glyphSize"].toDouble(qMin(size.width(), size.height()) * GlyphShare);
    values["glyph"] =
        QString("<g transform=\"translate(%1 %2) scale(%3)\" opacity=\"%4\" fill=\"none\" stroke=\"%5\" "
                "color=\"%5\" stroke-width=\"%6\" stroke-linecap=\"round\" stroke-linejoin=\"round\">%7</g>")
            .arg(Number((size.width() - side) / 2),
                 Number((size.height() - side) / 2 + row["glyphDown"].toDouble()), Number(side / GlyphGrid),
                 Number(InkOpacity(picture.state) * row["faint"].toDouble(1)), row["ink"].toString("#ffffff"),
                 Number(row["line"].toDouble(1.75)), markup);
    return 1;
}

int PictureMaker::FillTemplate(const QString& name, const Values& values, QByteArray& svg)
{
    if (!m_templates.contains(name)) {
        QFile file(m_folder + "/templates/" + name + ".svg");
        if (!file.open(QIODevice::ReadOnly))
            return Fail(file.fileName() + ": " + file.errorString());
        m_templates[name] = QString::fromUtf8(file.readAll());
    }

    static const QRegularExpression slot("\\{\\{(\\w+)\\}\\}");
    const QString text = m_templates[name];
    QString filled;
    qsizetype from = 0;
    for (auto it = slot.globalMatch(text); it.hasNext();) {
        const QRegularExpressionMatch match = it.next();
        const auto value = values.find(match.captured(1));
        if (value == values.end())
            return Fail(QString("template %1 needs {{%2}}").arg(name, match.captured(1)));
        filled += text.mid(from, match.capturedStart() - from) + *value;
        from = match.capturedEnd();
    }
    svg = (filled + text.mid(from)).toUtf8();
    return 1;
}

int PictureMaker::Draw(const QByteArray& svg, QImage& image)
{
    GError* error = nullptr;
    RsvgHandle* handle =
        rsvg_handle_new_from_data(reinterpret_cast<const guint8*>(svg.constData()), svg.size(), &error);
    int drawn = 0;
    if (handle) {
        image.fill(Qt::transparent);
        cairo_surface_t* surface = cairo_image_surface_create_for_data(
            image.bits(), CAIRO_FORMAT_ARGB32, image.width(), image.height(), int(image.bytesPerLine()));
        cairo_t* context = cairo_create(surface);
        const RsvgRectangle whole = {0, 0, double(image.width()), double(image.height())};
        drawn = rsvg_handle_render_document(handle, context, &whole, &error) ? 1 : 0;
        cairo_destroy(context);
        cairo_surface_destroy(surface);
        g_object_unref(handle);
    }
    if (error) {
        m_error = QString::fromUtf8(error->message);
        g_error_free(error);
    }
    return drawn;
}

int PictureMaker::Write(const QImage& image, const QString& file)
{
    QDir().mkpath(QFileInfo(file).path());
    const bool photo = file.endsWith(".jpg");
    // Anything less than full quality tints the pages' soft gradients.
    if (!image.convertToFormat(photo ? QImage::Format_RGB32 : QImage::Format_ARGB32)
             .save(file, photo ? "JPG" : "PNG", photo ? 100 : -1))
        return Fail(file + ": cannot be written");
    return 1;
}
