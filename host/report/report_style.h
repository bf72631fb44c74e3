#pragma once

namespace WattleafHost {

/// The style sheet of the report's page: light and dark, for wide and narrow screens, and for
/// print.
inline constexpr const char* kReportStyle = R"css(
:root {
  color-scheme: light dark;
  --page: #f6f7f5; --panel: #ffffff; --line: #dfe3df; --text: #1b211e; --quiet: #56605a;
  --accent: #0f7a66; --rest: #a3aca7; --hatch: #c3cac5;
  --good: #0f7a66; --warn: #8a5a00; --bad: #b3261e;
}
@media (prefers-color-scheme: dark) {
  :root {
    --page: #121614; --panel: #1b201e; --line: #313935; --text: #e7ebe8; --quiet: #a2ada7;
    --accent: #4fbfa5; --rest: #6d7872; --hatch: #465049;
    --good: #4fbfa5; --warn: #e0b15c; --bad: #f2958d;
  }
}
* { box-sizing: border-box; }
html { -webkit-text-size-adjust: 100%; }
body {
  margin: 0 auto; max-width: 1120px; padding: 40px 24px 48px;
  background: var(--page); color: var(--text);
  font: 16px/1.5 system-ui, -apple-system, "Segoe UI", Roboto, "Noto Sans", "Liberation Sans", Arial, sans-serif;
  font-variant-numeric: tabular-nums; overflow-wrap: anywhere;
}
header { margin-bottom: 28px; }
h1 { margin: 0; font-size: 32px; line-height: 1.2; font-weight: 650; letter-spacing: -0.01em; }
h2 { margin: 0; font-size: 18px; line-height: 1.35; font-weight: 650; }
.subject { margin: 6px 0 0; color: var(--quiet); }
.subject bdi { color: var(--text); font-weight: 600; }
.moment { margin-left: 10px; }
.note { margin: 2px 0 0; color: var(--quiet); font-size: 14px; }
.problem { margin: 0 0 16px; }
.panel .problem { margin: 8px 0 0; }
.unit { color: var(--quiet); font-size: 0.8em; font-weight: 400; }
.unseen {
  position: absolute; width: 1px; height: 1px; margin: -1px; overflow: hidden;
  clip-path: inset(50%); white-space: nowrap;
}
.cards { display: grid; grid-template-columns: repeat(3, 1fr); gap: 16px; margin: 0; }
.card, .panel {
  background: var(--panel); border: 1px solid var(--line); border-radius: 10px;
  padding: 20px 24px; min-width: 0; overflow: clip;
}
.card dt { color: var(--quiet); font-size: 14px; }
.card dd { margin: 0; }
.card .figure { margin: 4px 0 6px; font-size: 30px; line-height: 1.25; font-weight: 650; letter-spacing: -0.01em; }
.card .unit { font-size: 18px; }
.state { font-size: 22px; }
.state::before { content: ""; display: inline-block; width: 11px; height: 11px; margin-right: 10px; background: currentColor; }
.good { color: var(--good); } .good::before { border-radius: 50%; }
.warn { color: var(--warn); } .warn::before { clip-path: polygon(50% 0, 100% 100%, 0 100%); }
.bad { color: var(--bad); }
.charts { display: grid; grid-template-columns: 1fr 1fr; gap: 16px; margin: 16px 0; }
.hours { grid-column: 1 / -1; }
.summary { font-size: 13px; }
.chart { display: block; margin: 12px 0 4px; overflow: visible; }
.chart text { fill: var(--quiet); font-size: 12px; text-anchor: middle; }
.chart .value { fill: var(--text); font-weight: 600; }
.chart .nodata { writing-mode: vertical-rl; dominant-baseline: central; fill: var(--text); }
.bar { fill: var(--accent); }
.zero { stroke: var(--quiet); stroke-width: 1; }
.hatch { stroke: var(--hatch); stroke-width: 3; }
details { margin-top: 10px; font-size: 14px; }
summary { color: var(--accent); cursor: pointer; width: fit-content; }
summary:focus-visible { outline: 2px solid var(--accent); outline-offset: 3px; border-radius: 2px; }
table { border-collapse: collapse; width: 100%; }
th, td { padding: 5px 0; text-align: left; font-weight: 400; }
thead th { color: var(--quiet); font-size: 13px; }
.figures { margin-top: 8px; }
.figures tr { border-bottom: 1px solid var(--line); }
.figures td:last-child, .figures th:last-child { text-align: right; }
.shares { table-layout: fixed; margin-top: 14px; }
.shares tbody tr, .shares thead tr { border-bottom: 1px solid var(--line); }
.shares th, .shares td { height: 40px; padding: 4px 0; }
.shares thead th { height: 30px; }
.shares .rank { width: 34px; color: var(--quiet); font-size: 14px; }
.shares .share { width: 84px; text-align: right; }
.shares .meter { width: 50%; padding: 4px 0 4px 16px; }
.meter svg { display: block; }
.app { display: flex; align-items: center; gap: 12px; overflow: hidden; }
.app bdi { min-width: 0; }
.icon { flex: none; width: 24px; height: 24px; object-fit: contain; }
span.icon { border: 1px dashed var(--hatch); border-radius: 5px; }
.rest span.icon { border: 0; }
.rest .bar { fill: var(--rest); }
.shares tfoot th, .shares tfoot td { font-weight: 650; }
.method { margin-top: 16px; }
.terms { margin: 14px 0 0; columns: 2; column-gap: 48px; }
.terms div { break-inside: avoid; padding-bottom: 16px; }
.terms dt { font-weight: 650; font-size: 15px; }
.terms dd { margin: 2px 0 0; color: var(--quiet); font-size: 15px; }
footer { margin-top: 24px; color: var(--quiet); font-size: 13px; }
@media (max-width: 760px) {
  body { padding: 24px 16px 32px; }
  h1 { font-size: 26px; }
  .moment { display: block; margin-left: 0; }
  .cards, .charts { grid-template-columns: minmax(0, 1fr); gap: 12px; }
  .charts { margin: 12px 0; }
  .terms { columns: 1; }
  .card, .panel { padding: 16px; }
  .shares, .shares thead, .shares tbody, .shares tfoot { display: block; }
  .shares tr { display: grid; grid-template-columns: 30px minmax(0, 1fr) auto; align-items: center; padding: 6px 0; }
  .shares th, .shares td, .shares thead th { width: auto; height: auto; padding: 0; }
  .shares .share { padding-left: 12px; }
  .shares .meter { width: auto; grid-column: 2 / -1; grid-row: 2; padding: 6px 0 2px 36px; }
  .shares thead .meter, .shares tfoot .meter { display: none; }
}
@media (max-width: 520px) {
  .chart text { font-size: 11px; }
  .chart .spare { display: none; }
}
@media print {
  :root {
    color-scheme: light;
    --page: #ffffff; --panel: #ffffff; --line: #c9cfca; --text: #000000; --quiet: #404743;
    --accent: #0f7a66; --rest: #a3aca7; --hatch: #b0b8b2; --good: #0f7a66; --warn: #8a5a00; --bad: #b3261e;
  }
  body { max-width: none; padding: 0; font-size: 12px; -webkit-print-color-adjust: exact; print-color-adjust: exact; }
  .card, .panel { break-inside: avoid; padding: 12px 16px; }
  .applications { break-inside: auto; }
  .shares tr { break-inside: avoid; }
  .shares th, .shares td { height: 28px; }
  .cards { grid-template-columns: repeat(3, 1fr); }
  details { display: none; }
}
)css";

}  // namespace WattleafHost
