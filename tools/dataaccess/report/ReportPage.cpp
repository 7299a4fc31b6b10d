#include "ReportPage.h"

#include "ReportStyle.h"

#include <QRectF>
#include <QtMath>

#include <algorithm>
#include <cmath>
#include <stdexcept>

namespace {

constexpr double s_width = 1000;
/// Where a drawing over the length of a cable begins and ends; to the left of it stand names and values.
constexpr double s_left = 52;
constexpr double s_right = s_width - 12;
constexpr int s_barHeight = 24;
constexpr int s_mostEvents = 2000;
constexpr int s_mostNames = 60;

/// @p text in HTML, without what no document may have.
QString html(const QString& text)
{
    QString clean;
    for (const QChar character : text) {
        if (character.unicode() >= 0x20 || character == QLatin1Char('\n') || character == QLatin1Char('\t'))
            clean.append(character);
    }
    return clean.toHtmlEscaped();
}

QString number(double value, int decimals = 1)
{
    return QString::number(value, 'f', decimals);
}

QString counted(int count, const char* what)
{
    return QStringLiteral("%1 %2%3").arg(count).arg(QLatin1String(what), QLatin1String(count == 1 ? "" : "s"));
}

/// The largest of 1, 2, 5, 10, 20, ... that is at most @p value.
double roundBelow(double value)
{
    const double power = std::pow(10, std::floor(std::log10(value)));
    return value >= 5 * power ? 5 * power : value >= 2 * power ? 2 * power : power;
}

/// A time without what is below a minute.
QString minute(const QString& time)
{
    return html(time.left(16)) + QStringLiteral(" UTC");
}

/// Ratings rise with the need to do something: 1 is good, 3 is bad.
QString ratingClass(double rating)
{
    return std::isnan(rating) ? QStringLiteral("none")
           : rating < 1.5     ? QStringLiteral("good")
           : rating < 2.5     ? QStringLiteral("fair")
                              : QStringLiteral("bad");
}

QString ratingText(double rating)
{
    return std::isnan(rating) ? QStringLiteral("not rated") : QStringLiteral("rating ") + number(rating);
}

QString anchor(int cable)
{
    return QStringLiteral("c%1").arg(cable);
}

double lengthOf(const PhaseRow& phase)
{
    double length = 0;
    for (const SegmentRow& segment : phase.segments)
        length += segment.length;
    return length;
}

/// From longitude and latitude to places of a picture, as on a map: north is up.
class Projection
{
public:
    /// The picture is at most @p mostHeight high.
    Projection(const QVector<QPointF>& places, double mostHeight)
    {
        const auto [west, east] =
            std::minmax_element(places.begin(), places.end(), [](auto a, auto b) { return a.x() < b.x(); });
        const auto [south, north] =
            std::minmax_element(places.begin(), places.end(), [](auto a, auto b) { return a.y() < b.y(); });
        m_shrink = std::cos(qDegreesToRadians((south->y() + north->y()) / 2));
        m_corner = {west->x(), north->y()};
        const double across = (east->x() - west->x()) * m_shrink;
        const double down = north->y() - south->y();
        constexpr double leastDegrees = 1e-4; // About ten metres.
        m_scale =
            1 / std::max({across / (s_width - 2 * s_margin), down / (mostHeight - 2 * s_margin), leastDegrees / 100});
        m_height = down * m_scale + 2 * s_margin;
        m_left = (s_width - across * m_scale) / 2;
    }

    double height() const { return m_height; }
    /// How much of the picture a metre takes.
    double metre() const { return m_scale / 111320; }

    QPointF operator()(const QPointF& place) const
    {
        return {m_left + (place.x() - m_corner.x()) * m_shrink * m_scale,
                s_margin + (m_corner.y() - place.y()) * m_scale};
    }

private:
    static constexpr double s_margin = 36;

    QPointF m_corner;
    double m_shrink = 1;
    double m_scale = 1;
    double m_height = 0;
    double m_left = 0;
};

/// Where something is drawn that lies at @p position of a cable of @p length.
double placeOf(double position, double length)
{
    return s_left + (length > 0 ? qBound(0.0, position / length, 1.0) : 0) * (s_right - s_left);
}

/// The distances along a cable, from @p y downwards.
QString lengthAxis(double length, double y)
{
    if (length <= 0)
        return {};
    QString text = QStringLiteral("<line class=\"axis\" x1=\"%1\" x2=\"%2\" y1=\"%3\" y2=\"%3\"/>")
                       .arg(number(s_left), number(s_right), number(y));
    const double step = roundBelow(length / 4);
    const int decimals = step < 1 ? 2 : 0;
    for (int i = 0; i * step <= length; ++i)
        text += QStringLiteral("<line class=\"axis\" x1=\"%1\" x2=\"%1\" y1=\"%2\" y2=\"%3\"/>"
                               "<text class=\"middle\" x=\"%1\" y=\"%4\">%5 m</text>")
                    .arg(number(placeOf(i * step, length)), number(y), number(y + 4), number(y + 16),
                         number(i * step, decimals));
    return text;
}

/// Lines across at round charges up to @p highest, which is drawn at @p top, while none is drawn at @p bottom.
QString chargeAxis(double highest, double top, double bottom)
{
    QString text;
    const double picocoulombs = highest * 1e12;
    const double step = picocoulombs > 0 ? roundBelow(picocoulombs / 2) : 0;
    for (int i = 1; step > 0 && i * step <= picocoulombs; ++i)
        text += QStringLiteral("<line class=\"grid\" x1=\"%1\" x2=\"%2\" y1=\"%3\" y2=\"%3\"/>"
                               "<text class=\"end\" x=\"%4\" y=\"%5\">%6 pC</text>")
                    .arg(number(s_left), number(s_right))
                    .arg(number(bottom - i * step / picocoulombs * (bottom - top)), number(s_left - 6),
                         number(bottom - i * step / picocoulombs * (bottom - top) + 4))
                    .arg(number(i * step, step < 1 ? 2 : 0));
    return text;
}

/// The line of a cable on the plan; empty without @p way.
QString line(const CableRow& cable, int place, const QVector<QPointF>& way, const Projection& project, bool hasName)
{
    if (way.isEmpty())
        return {};
    QStringList points;
    for (const QPointF& corner : way) {
        const QPointF on = project(corner);
        points.append(number(on.x()) + QLatin1Char(',') + number(on.y()));
    }
    const double rating = cable.worstRating();
    const QPointF middle = project((way.at((way.size() - 1) / 2) + way.at(way.size() / 2)) / 2);
    return QStringLiteral("<a href=\"#%1\"><polyline class=\"%2\" points=\"%3\"/><title>%4: %5</title>%6</a>\n")
        .arg(anchor(place), ratingClass(rating), points.join(QLatin1Char(' ')), html(cable.number), ratingText(rating),
             hasName ? QStringLiteral("<text x=\"%1\" y=\"%2\">%3</text>")
                           .arg(number(middle.x() + 8), number(middle.y() - 6), html(cable.number))
                     : QString());
}

} // namespace

ReportPage::ReportPage(const NetworkData& data, QIODevice& file)
    : m_data(data)
    , m_file(file)
{}

void ReportPage::put(const QString& text)
{
    const QByteArray bytes = text.toUtf8();
    if (m_file.write(bytes) != bytes.size())
        throw std::runtime_error(m_file.errorString().toStdString());
}

QString ReportPage::stationName(const QString& id) const
{
    return m_data.stations.value(id).name;
}

void ReportPage::write(const QString& title)
{
    double length = 0;
    for (const CableRow& cable : m_data.cables)
        length += cable.length;
    put(QStringLiteral(
            "<!DOCTYPE html>\n<html lang=\"en\"><head><meta charset=\"utf-8\"/>\n"
            "<meta http-equiv=\"Content-Security-Policy\" content=\"default-src 'none'; style-src "
            "'unsafe-inline'; script-src 'unsafe-inline'; img-src data:\"/>\n<link rel=\"icon\" href=\"data:,\"/>\n"
            "<meta name=\"viewport\" content=\"width=device-width\"/>\n<title>%1</title><style>%2</style></head>\n"
            "<body><h1>%1</h1>\n<p class=\"facts\">%3, %4 km, %5</p>\n"
            "<p class=\"note\"><span class=\"dot good\"></span> rating below 1.5 <span class=\"dot fair\"></span> "
            "below 2.5 <span class=\"dot bad\"></span> 2.5 and above <span class=\"dot none\"></span> not rated</p>\n")
            .arg(html(title), reportStyle(), counted(m_data.cables.size(), "cable"), number(length / 1000, 2),
                 counted(m_data.stations.size(), "station")));
    writePlan();
    writeTable();
    put(QStringLiteral("<h2>Cables in detail</h2>\n"));
    for (int i = 0; i < m_data.cables.size(); ++i)
        writeCable(m_data.cables.at(i), i);
    put(QStringLiteral("<script>%1</script></body></html>\n").arg(reportScript()));
}

void ReportPage::writePlan()
{
    QVector<QVector<QPointF>> ways;
    QVector<QPointF> places;
    for (const CableRow& cable : m_data.cables) {
        ways.append(m_data.wayOf(cable));
        places += ways.last();
    }
    for (const StationRow& station : m_data.stations) {
        if (m_data.points.contains(station.point))
            places.append(m_data.points.value(station.point));
    }
    put(QStringLiteral("<h2>Plan</h2>\n<section>"));
    if (places.isEmpty()) {
        put(QStringLiteral("<p class=\"note\">No place has coordinates.</p></section>\n"));
        return;
    }
    // All names together would hide the lines.
    const bool hasNames = std::max(m_data.cables.size(), m_data.stations.size()) <= s_mostNames;
    const Projection project(places, hasNames ? 420 : 800);
    put(QStringLiteral("<svg id=\"plan\" viewBox=\"0 0 %1 %2\" role=\"img\" aria-label=\"Plan\">\n")
            .arg(s_width)
            .arg(number(project.height())));
    for (int i = 0; i < ways.size(); ++i)
        put(line(m_data.cables.at(i), i, ways.at(i), project, hasNames));
    for (const StationRow& station : m_data.stations) {
        if (!m_data.points.contains(station.point))
            continue;
        const QPointF on = project(m_data.points.value(station.point));
        put(QStringLiteral("<circle class=\"station\" cx=\"%1\" cy=\"%2\" r=\"%3\"><title>%4</title></circle>\n")
                .arg(number(on.x()), number(on.y()), number(hasNames ? 5 : 2), html(station.name)));
        if (hasNames)
            put(QStringLiteral("<text class=\"%1\" x=\"%2\" y=\"%3\">%4</text>\n")
                    .arg(on.x() > s_width / 2 ? QStringLiteral("start") : QStringLiteral("end"),
                         number(on.x() + (on.x() > s_width / 2 ? 10 : -10)), number(on.y() + 4), html(station.name)));
    }
    const double metres = roundBelow(s_width / 6 / project.metre());
    const double end = s_width - 8;
    const double bottom = project.height() - 8;
    put(QStringLiteral("<polyline class=\"scale\" points=\"%1,%3 %1,%4 %2,%4 %2,%3\"/>"
                       "<text class=\"end\" x=\"%2\" y=\"%5\">%6</text>\n</svg></section>\n")
            .arg(number(end - metres * project.metre()), number(end), number(bottom - 5), number(bottom),
                 number(bottom - 8),
                 metres < 1000 ? number(metres, 0) + QStringLiteral(" m")
                               : number(metres / 1000, 0) + QStringLiteral(" km")));
}

void ReportPage::writeTable()
{
    put(QStringLiteral(
            "<h2>Cables</h2>\n<section><input id=\"search\" type=\"search\" placeholder=\"Search\" "
            "aria-label=\"Search\"/> <span id=\"found\" class=\"note\">%1 of %1</span>\n<table id=\"cables\">"
            "<thead><tr><th>Number</th><th>From</th><th>To</th><th>City</th><th>Owner</th><th "
            "class=\"n\">kV</th><th class=\"n\">m</th><th>Installed</th><th class=\"n\">Rating</th>"
            "<th class=\"n\">Tests</th></tr></thead>\n<tbody>\n")
            .arg(m_data.cables.size()));
    for (int i = 0; i < m_data.cables.size(); ++i) {
        const CableRow& cable = m_data.cables.at(i);
        const double rating = cable.worstRating();
        put(QStringLiteral("<tr data-cable=\"%1\"><td><a href=\"#%1\">%2</a></td>").arg(anchor(i), html(cable.number)));
        for (const QString& text : {stationName(cable.stationA), stationName(cable.stationB), cable.city, cable.owner})
            put(QStringLiteral("<td>%1</td>").arg(html(text)));
        put(QStringLiteral("<td class=\"n\">%1</td><td class=\"n\">%2</td><td>%3</td><td class=\"n\">%4</td>"
                           "<td class=\"n\">%5</td></tr>\n")
                .arg(number(cable.voltage / 1000), number(cable.length), html(cable.installed),
                     std::isnan(rating) ? QString() : number(rating))
                .arg(cable.tests.size()));
    }
    put(QStringLiteral("</tbody></table></section>\n"));
}

QString ReportPage::bar(const CableRow& cable, const PhaseRow& phase, double length, int y) const
{
    QString sections = QStringLiteral("<text class=\"end\" x=\"%1\" y=\"%2\">L%3</text>")
                           .arg(s_left - 10)
                           .arg(y + 16)
                           .arg(phase.index + 1);
    QString joints;
    double position = 0;
    for (const SegmentRow& segment : phase.segments) {
        const DetailRow detail = m_data.details.value(segment.detail);
        const double rating = cable.ratingOf(phase.index, segment.id);
        const QString title = QStringLiteral("<title>%1, %2, %3 m at %4 m, %5</title>")
                                  .arg(html(segment.name), html(detail.name), number(segment.length), number(position),
                                       ratingText(rating));
        const double x = placeOf(position, length);
        const double width = placeOf(position + segment.length, length) - x;
        position += segment.length;
        // Joints lie over the sections that they connect.
        if (detail.isJoint || segment.length <= 0) {
            joints += QStringLiteral("<path class=\"joint %1\" d=\"M%2 %3l6 %4l-6 %4l-6 -%4z\">%5</path>")
                          .arg(ratingClass(rating), number(x))
                          .arg(y)
                          .arg(s_barHeight / 2)
                          .arg(title);
            continue;
        }
        sections += QStringLiteral("<rect class=\"%1\" x=\"%2\" y=\"%3\" width=\"%4\" height=\"%5\">%6</rect>")
                        .arg(ratingClass(rating), number(x))
                        .arg(y + 3)
                        .arg(number(std::max(width, 1.0)))
                        .arg(s_barHeight - 6)
                        .arg(title);
        constexpr double letter = 6.5;
        if (segment.name.size() * letter < width - 24)
            sections += QStringLiteral("<text class=\"middle\" x=\"%1\" y=\"%2\">%3</text>")
                            .arg(number(x + width / 2))
                            .arg(y + 16)
                            .arg(html(segment.name));
    }
    return sections + joints;
}

QString ReportPage::events(const TestRow& test, double length) const
{
    QVector<EventRow> largest = test.events;
    std::sort(largest.begin(), largest.end(), [](const EventRow& left, const EventRow& right) {
        return std::abs(left.charge) > std::abs(right.charge);
    });
    largest.resize(std::min(static_cast<int>(largest.size()), s_mostEvents));
    const double highest = largest.isEmpty() ? 0 : std::abs(largest.front().charge);
    QString text =
        QStringLiteral("<p class=\"note\">Test of %1 by %2: %3%4, up to %5 pC. <span class=\"dot p0\"></span> L1 "
                       "<span class=\"dot p1\"></span> L2 <span class=\"dot p2\"></span> L3</p>")
            .arg(minute(test.time), html(test.tester), counted(test.events.size(), "event"),
                 test.events.size() > largest.size() ? QStringLiteral(" (the largest %1 are shown)").arg(largest.size())
                                                     : QString(),
                 number(highest * 1e12, 0));
    if (largest.isEmpty() || length <= 0)
        return text;
    constexpr double top = 10;
    constexpr double bottom = 120;
    text += QStringLiteral("<svg viewBox=\"0 0 %1 %2\">%3%4")
                .arg(s_width)
                .arg(bottom + 20)
                .arg(chargeAxis(highest, top, bottom), lengthAxis(length, bottom));
    for (const EventRow& event : largest)
        text += QStringLiteral(
                    "<circle class=\"p%1\" cx=\"%2\" cy=\"%3\" r=\"4\"><title>L%4, %5 m, %6 pC, %7 kV</title></circle>")
                    .arg(qBound<qint64>(0, event.phase, 3))
                    .arg(number(placeOf(event.position, length)),
                         number(bottom - (highest > 0 ? std::abs(event.charge) / highest : 0) * (bottom - top)))
                    .arg(event.phase + 1)
                    .arg(number(event.position), number(event.charge * 1e12, 0), number(event.voltage / 1000));
    return text + QStringLiteral("</svg>");
}

void ReportPage::writeCable(const CableRow& cable, int place)
{
    double length = cable.length;
    for (const PhaseRow& phase : cable.phases)
        length = std::max(length, lengthOf(phase));
    put(QStringLiteral("<details id=\"%1\"%2><summary>%3</summary>\n<p class=\"note\">%4 – %5, %6 kV, %7 m%8</p>\n")
            .arg(anchor(place), m_data.cables.size() == 1 ? QStringLiteral(" open=\"open\"") : QString(),
                 html(cable.number), html(stationName(cable.stationA)), html(stationName(cable.stationB)),
                 number(cable.voltage / 1000), number(cable.length),
                 cable.comment.isEmpty() ? QString() : QStringLiteral(". ") + html(cable.comment)));
    const int phases = cable.phases.size();
    if (phases > 0) {
        constexpr int distance = s_barHeight + 2;
        put(QStringLiteral("<svg viewBox=\"0 0 %1 %2\">").arg(s_width).arg(phases * distance + 22));
        for (int i = 0; i < phases; ++i)
            put(bar(cable, cable.phases.at(i), length, i * distance));
        put(lengthAxis(length, phases * distance + 2) + QStringLiteral("</svg>\n"));
    }
    if (!cable.ratingTime.isEmpty())
        put(QStringLiteral("<p class=\"note\">Rated by the measurement of %1</p>\n").arg(minute(cable.ratingTime)));
    for (const TestRow& test : cable.tests)
        put(events(test, length));
    put(QStringLiteral("</details>\n"));
}
