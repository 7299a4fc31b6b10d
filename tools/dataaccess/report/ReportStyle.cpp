#include "ReportStyle.h"

QString reportStyle()
{
    return QStringLiteral(R"css(
:root { color-scheme: light; font: 15px/1.45 system-ui, sans-serif; color: #1d2733; background: #f4f6f8; }
body { max-width: 1080px; margin: 0 auto; padding: 24px; }
h1 { font-size: 26px; margin: 0; } h2 { font-size: 19px; margin: 28px 0 8px; }
p.facts, .note { color: #5a6775; margin: 4px 0; }
section, details { background: #fff; border: 1px solid #d9dfe5; border-radius: 6px; padding: 12px 16px; margin: 8px 0; }
section { overflow-x: auto; } details { content-visibility: auto; contain-intrinsic-height: auto 48px; }
table { border-collapse: collapse; width: 100%; margin-top: 10px; font-variant-numeric: tabular-nums; }
th, td { text-align: left; padding: 4px 8px; border-bottom: 1px solid #e6eaee; }
td.n, th.n { text-align: right; }
input { font: inherit; padding: 6px 10px; width: 320px; border: 1px solid #b9c3cd; border-radius: 4px; }
summary { cursor: pointer; font-weight: 600; } a { color: #14599d; } [hidden] { display: none; }
.good { --color: #3d9a50; } .fair { --color: #e0b020; } .bad { --color: #cf3b30; } .none { --color: #8593a1; }
.p0 { --color: #b03a2e; } .p1 { --color: #b58900; } .p2 { --color: #1f6fb2; } .p3 { --color: #6b4fa0; }
.dot { display: inline-block; width: 11px; height: 11px; border-radius: 6px; background: var(--color); }
.dot + .dot, .note .dot:not(:first-child) { margin-left: 10px; }
svg { display: block; width: 100%; height: auto; overflow: visible; margin: 4px 0; }
text { font: 12px system-ui, sans-serif; fill: #1d2733; }
text.middle { text-anchor: middle; } text.end { text-anchor: end; }
#plan text { paint-order: stroke; stroke: #fff; stroke-width: 4px; stroke-linejoin: round; }
#plan a text { font-weight: 600; } #plan a.away { opacity: 0.12; }
polyline { fill: none; stroke: var(--color); stroke-width: 3; } a:hover polyline { stroke-width: 6; }
polyline.scale { stroke: #5a6775; stroke-width: 1.5; }
rect { fill: var(--color); fill-opacity: 0.55; stroke: #fff; stroke-width: 1.5; }
circle { fill: var(--color); fill-opacity: 0.75; } circle.station { fill: #1d2733; fill-opacity: 1; }
.joint { fill: var(--color); stroke: #1d2733; stroke-width: 1; }
.axis { stroke: #8593a1; } .grid { stroke: #e6eaee; }
)css");
}

QString reportScript()
{
    return QStringLiteral(R"js(
const search = document.getElementById('search');
const found = document.getElementById('found');
const lines = new Map(Array.from(document.querySelectorAll('#plan a'), line => [line.getAttribute('href'), line]));
const cables = Array.from(document.querySelectorAll('#cables tbody tr'), row => {
  const details = document.getElementById(row.dataset.cable);
  const text = (row.textContent + ' ' + details.textContent).toLowerCase();
  return { row, details, text, line: lines.get('#' + row.dataset.cable) };
});
search.addEventListener('input', () => {
  const words = search.value.toLowerCase().split(/\s+/).filter(word => word);
  let shown = 0;
  for (const cable of cables) {
    const isShown = words.every(word => cable.text.includes(word));
    cable.row.hidden = cable.details.hidden = !isShown;
    if (cable.line) cable.line.classList.toggle('away', !isShown);
    shown += isShown ? 1 : 0;
  }
  found.textContent = shown + ' of ' + cables.length;
});
function unfold(address) {
  const details = address.startsWith('#c') ? document.getElementById(address.substring(1)) : null;
  if (details) details.open = true;
}
document.addEventListener('click', event => {
  const link = event.target.closest('a');
  if (link) unfold(link.getAttribute('href'));
});
unfold(location.hash);
)js");
}
