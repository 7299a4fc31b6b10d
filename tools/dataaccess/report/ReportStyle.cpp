#include "ReportStyle.h"

QString reportStyle()
{
    return QStringLiteral(R"css(
:root { color-scheme: light; font: 15px/1.45 system-ui, sans-serif; color: #1d2733; background: #f4f6f8; }
body { max-width: 1080px; margin: 0 auto; padding: 24px; }
h1 { font-size: 26px; margin: 0; } h2 { font-size: 19px; margin: 32px 0 8px; }
p.facts, .note { color: #5a6775; margin: 4px 0; }
section, details { background: #fff; border: 1px solid #d9dfe5; border-radius: 6px; padding: 12px 16px; margin: 8px 0; }
table { border-collapse: collapse; width: 100%; font-variant-numeric: tabular-nums; }
th, td { text-align: left; padding: 4px 10px 4px 0; border-bottom: 1px solid #e6eaee; }
td.n, th.n { text-align: right; }
input { font: inherit; padding: 6px 10px; width: 320px; border: 1px solid #b9c3cd; border-radius: 4px; }
summary { cursor: pointer; font-weight: 600; } a { color: #14599d; }
svg { display: block; width: 100%; height: auto; } svg text { font: 11px system-ui, sans-serif; fill: #3b4855; }
.good { fill: #3d9a50; } .fair { fill: #e0b020; } .bad { fill: #cf3b30; } .none { fill: #a9b4bf; }
polyline { fill: none; stroke-width: 3; } polyline.good { fill: none; stroke: #3d9a50; }
polyline.fair { fill: none; stroke: #e0b020; } polyline.bad { fill: none; stroke: #cf3b30; }
polyline.none { fill: none; stroke: #8593a1; }
.station { fill: #1d2733; } .joint { stroke: #1d2733; stroke-width: 1; }
.p0 { fill: #b03a2e; } .p1 { fill: #b58900; } .p2 { fill: #1f6fb2; } .p3 { fill: #6b4fa0; }
.axis { stroke: #c4ccd4; } .dot { display: inline-block; width: 11px; height: 11px; border-radius: 6px; }
)css");
}

QString reportScript()
{
    return QStringLiteral(R"js(
const search = document.getElementById('search');
const found = document.getElementById('found');
const rows = Array.from(document.querySelectorAll('#cables tbody tr'));
const texts = rows.map(row => row.textContent.toLowerCase());
search.addEventListener('input', () => {
  const words = search.value.toLowerCase().split(/\s+/).filter(word => word);
  let shown = 0;
  rows.forEach((row, i) => {
    const isShown = words.every(word => texts[i].includes(word));
    row.hidden = !isShown;
    const details = document.getElementById(row.dataset.cable);
    if (details) details.hidden = !isShown;
    shown += isShown ? 1 : 0;
  });
  found.textContent = shown + ' of ' + rows.length;
});
document.addEventListener('click', event => {
  const link = event.target.closest('a[href^="#c"]');
  const details = link ? document.getElementById(link.getAttribute('href').substring(1)) : null;
  if (details) details.open = true;
});
)js");
}
