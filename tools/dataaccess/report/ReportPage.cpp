#include "ReportPage.h"

#include "ReportStyle.h"

#include <QRectF>
#include <QtMath>

#include <algorithm>
#include <cmath>
#include <stdexcept>

namespace {

constexpr double s_width = 1000;
constexpr int s_barHeight = 18;
constexpr int s_mostEvents = 2000;

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
    explicit Projection(const QVector<QPointF>& places)
    {
        if (places.isEmpty())
            return;
        const auto [west, east] =
            std::minmax_element(places.begin(), places.end(), [](auto a, auto b) { return a.x() < b.x(); });
        const auto [south, north] =
            std::minmax_element(places.begin(), places.end(), [](auto a, auto b) { return a.y() < b.y(); });
        m_shrink = std::cos(qDegreesToRadians((south->y() + north->y()) / 2));
        m_corner = {west->x(), north->y()};
        const double across = (east->x() - west->x()) * m_shrink;
        const double down = north->y() - south->y();
        m_scale = (s_width - 2 * s_margin) / std::max({across, down * 2, 1e-9});
        m_height = down * m_scale + 2 * s_margin;
    }

    double height() const { return m_height; }

    QPointF operator()(const QPointF& place) const
    {
        return {s_margin + (place.x() - m_corner.x()) * m_shrink * m_scale,
                s_margin + (m_corner.y() - place.y()) * m_scale};
    }

private:
    static constexpr double s_margin = 30;

    QPointF m_corner;
    double m_shrink = 1;
    double m_scale = 1;
    double m_height = 2 * s_margin;
};

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
            "<body><h1>%1</h1>\n<p class=\"facts\">%3 cables, %4 km, %5 stations</p>\n")
            .arg(html(title), reportStyle())
            .arg(m_data.cables.size())
            .arg(number(length / 1000, 2))
            .arg(m_data.stations.size()));
    put(QStringLiteral("<p class=\"note\"><span class=\"dot\" style=\"background:#3d9a50\"></span> rating below 1.5 "
                       "<span class=\"dot\" style=\"background:#e0b020\"></span> below 2.5 "
                       "<span class=\"dot\" style=\"background:#cf3b30\"></span> 2.5 and above "
                       "<span class=\"dot\" style=\"background:#a9b4bf\"></span> not rated</p>\n"));
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
    const Projection project(places);
    put(QStringLiteral("<svg id=\"plan\" viewBox=\"0 0 %1 %2\" role=\"img\" aria-label=\"Plan\">\n")
            .arg(s_width)
            .arg(number(project.height())));
    for (int i = 0; i < ways.size(); ++i) {
        QStringList line;
        for (const QPointF& place : ways.at(i)) {
            const QPointF on = project(place);
            line.append(number(on.x()) + QLatin1Char(',') + number(on.y()));
        }
        const CableRow& cable = m_data.cables.at(i);
        if (!line.isEmpty())
            put(QStringLiteral(
                    "<a href=\"#%1\"><polyline class=\"%2\" points=\"%3\"><title>%4: %5</title></polyline></a>\n")
                    .arg(anchor(i), ratingClass(cable.worstRating()), line.join(QLatin1Char(' ')), html(cable.number),
                         ratingText(cable.worstRating())));
    }
    constexpr int mostNames = 60;
    for (const StationRow& station : m_data.stations) {
        if (!m_data.points.contains(station.point))
            continue;
        const QPointF on = project(m_data.points.value(station.point));
        put(QStringLiteral("<circle class=\"station\" cx=\"%1\" cy=\"%2\" r=\"5\"><title>%3</title></circle>\n")
                .arg(number(on.x()), number(on.y()), html(station.name)));
        if (m_data.stations.size() <= mostNames)
            put(QStringLiteral("<text x=\"%1\" y=\"%2\" text-anchor=\"%3\">%4</text>\n")
                    .arg(number(on.x()), number(on.y() - 9),
                         on.x() > s_width / 2 ? QStringLiteral("end") : QStringLiteral("start"), html(station.name)));
    }
    put(QStringLiteral("</svg></section>\n"));
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
    QString sections = QStringLiteral("<text x=\"0\" y=\"%1\">L%2</text>").arg(y + 13).arg(phase.index + 1);
    QString joints;
    double position = 0;
    constexpr double left = 24;
    const double scale = length > 0 ? (s_width - left - 4) / length : 0;
    for (const SegmentRow& segment : phase.segments) {
        const DetailRow detail = m_data.details.value(segment.detail);
        const double rating = cable.ratingOf(phase.index, segment.id);
        const QString title = QStringLiteral("<title>%1, %2, %3 m at %4 m, %5</title>")
                                  .arg(html(segment.name), html(detail.name), number(segment.length), number(position),
                                       ratingText(rating));
        const double x = left + position * scale;
        // Joints lie over the sections that they connect.
        if (detail.isJoint || segment.length <= 0)
            joints += QStringLiteral("<path class=\"joint %1\" d=\"M%2 %3l5 %4l-5 %4l-5 -%4z\">%5</path>")
                          .arg(ratingClass(rating), number(x))
                          .arg(y)
                          .arg(s_barHeight / 2)
                          .arg(title);
        else
            sections += QStringLiteral("<rect class=\"%1\" x=\"%2\" y=\"%3\" width=\"%4\" height=\"%5\">%6</rect>")
                            .arg(ratingClass(rating), number(x))
                            .arg(y + 3)
                            .arg(number(std::max(segment.length * scale - 1, 1.0)))
                            .arg(s_barHeight - 6)
                            .arg(title);
        position += segment.length;
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
    constexpr double left = 24;
    constexpr double height = 120;
    QString text =
        QStringLiteral("<p class=\"note\">Test of %1 by %2: %3 events%4, up to %5 pC</p>")
            .arg(html(test.time), html(test.tester))
            .arg(test.events.size())
            .arg(test.events.size() > largest.size() ? QStringLiteral(" (the largest %1 are shown)").arg(largest.size())
                                                     : QString(),
                 number(highest * 1e12, 0));
    if (largest.isEmpty() || length <= 0)
        return text;
    text += QStringLiteral("<svg viewBox=\"0 0 %1 %2\"><line class=\"axis\" x1=\"%3\" x2=\"%1\" y1=\"%4\" y2=\"%4\"/>")
                .arg(s_width)
                .arg(height)
                .arg(left)
                .arg(height - 10);
    for (const EventRow& event : largest) {
        const double x = left + qBound(0.0, event.position / length, 1.0) * (s_width - left - 4);
        const double y = height - 10 - (highest > 0 ? std::abs(event.charge) / highest : 0) * (height - 20);
        text += QStringLiteral(
                    "<circle class=\"p%1\" cx=\"%2\" cy=\"%3\" r=\"3\"><title>L%4, %5 m, %6 pC, %7 kV</title></circle>")
                    .arg(qBound<qint64>(0, event.phase, 3))
                    .arg(number(x), number(y))
                    .arg(event.phase + 1)
                    .arg(number(event.position), number(event.charge * 1e12, 0), number(event.voltage / 1000));
    }
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
        put(QStringLiteral("<svg viewBox=\"0 0 %1 %2\">").arg(s_width).arg(phases * (s_barHeight + 6)));
        for (int i = 0; i < phases; ++i)
            put(bar(cable, cable.phases.at(i), length, i * (s_barHeight + 6)));
        put(QStringLiteral("</svg>\n"));
    }
    if (!cable.ratingTime.isEmpty())
        put(QStringLiteral("<p class=\"note\">Rated by the measurement of %1</p>\n").arg(html(cable.ratingTime)));
    for (const TestRow& test : cable.tests)
        put(events(test, length));
    put(QStringLiteral("</details>\n"));
}
