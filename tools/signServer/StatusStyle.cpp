#include "tools/signServer/StatusStyle.h"

const char* const StatusStyle = R"(
:root{--ink:#333b3e;--soft:#6f8496;--line:#dfe7ee;--blue:#2f80ed}
*{box-sizing:border-box;margin:0}
html{font:16px/1.45 "Noto Sans",system-ui,"Segoe UI",Roboto,sans-serif;color:var(--ink);background:#e9eff6}
body{min-height:100vh;background:linear-gradient(#f6f9fc,#e9eff6)}
svg{width:1.5rem;height:1.5rem;fill:none;stroke:currentColor;stroke-width:1.75;stroke-linecap:round;stroke-linejoin:round}
header{display:flex;align-items:center;gap:.7rem;padding:.6rem 1.25rem;color:#fff;position:sticky;top:0;z-index:1;
background:linear-gradient(#1d3b5c,#14304d);box-shadow:0 1px 4px #14304d55}
header h1{font-size:1.19rem;font-weight:600;flex:1}
header time{color:#d5e6f8;font-variant-numeric:tabular-nums}
header a{color:#fff;display:flex}
main{max-width:108rem;margin:0 auto;padding:1.1rem 1.25rem 2rem}
h2{font-size:1rem;font-weight:600;color:#24496f;margin:1.3rem .2rem .5rem}
.counts{display:grid;grid-template-columns:repeat(4,1fr);gap:.8rem}
.counts>div{display:flex;align-items:center;gap:.9rem;background:#fff;border:1px solid #d3dfe9;border-radius:14px;padding:.75rem 1rem}
.counts b{display:block;font-size:1.9rem;line-height:2.1rem;font-weight:600;font-variant-numeric:tabular-nums}
.counts span{color:var(--soft)}
.none{opacity:.5}
.tile{flex:none;display:grid;place-items:center;width:2.9rem;height:2.9rem;border-radius:23%;color:#fff;
box-shadow:inset 0 1px #ffffff55,0 1px 2px #14304d44}
.late .tile{background:linear-gradient(#ff7d6b,#e2402b)}
.refused .tile{background:linear-gradient(#ff8fbd,#de4a8b)}
.incomplete .tile{background:linear-gradient(#ffb04a,#ee8412)}
.instep .tile{background:linear-gradient(#5fcf6c,#27a042)}
.content .tile{background:linear-gradient(#a58bff,#7150e0)}
.content{display:flex;gap:1rem;background:#fff;border:1px solid #d3dfe9;border-radius:14px;padding:.9rem 1rem;margin-top:.8rem}
.content h2{margin:0 0 .15rem;color:#5b3fc4}
.content ul{list-style:none;padding:0}
.content li{padding:.1rem 0;overflow-wrap:anywhere}
.list{background:#fff;border:1px solid #d3dfe9;border-radius:14px;overflow:hidden}
article{display:grid;grid-template-columns:2.9rem minmax(11rem,1.3fr) minmax(10rem,1fr) minmax(11rem,1fr);
gap:.2rem 1.1rem;align-items:center;padding:.75rem 1rem}
article+article{border-top:1px solid var(--line)}
article.late{background:#fff4f2}
article.refused{background:#fff5f9}
h3{font-size:1.12rem;font-weight:600;overflow-wrap:anywhere}
h3 a{color:inherit;text-decoration:none}
h3 a:hover,h3 a:focus-visible{color:var(--blue);text-decoration:underline}
.key,.when,.more{color:var(--soft);font-size:.875rem;overflow-wrap:anywhere}
.state b{font-weight:600}
.late .state b{color:#c9301c}
.refused .state b{color:#c02f70}
.incomplete .state b{color:#b35f06}
.instep .state b{color:#1d8034}
.files p{display:flex;justify-content:space-between;gap:.6rem;font-size:.9375rem;font-variant-numeric:tabular-nums}
progress{appearance:none;-webkit-appearance:none;display:block;width:100%;height:.5rem;margin-top:.3rem;border:0;
border-radius:4px;overflow:hidden;background:#dde6ee}
progress::-webkit-progress-bar{background:#dde6ee}
progress::-webkit-progress-value{background:#ee8412}
progress::-moz-progress-bar{background:#ee8412}
.full::-webkit-progress-value{background:#27a042}
.full::-moz-progress-bar{background:#27a042}
.notes{grid-column:2/-1;display:flex;flex-wrap:wrap;gap:.35rem;list-style:none;padding:.25rem 0 0}
.notes li{border-radius:7px;padding:.08rem .55rem;font-size:.875rem;background:#eef3f8;overflow-wrap:anywhere}
.notes em{font-style:normal;color:#b35f06}
.notes .no{background:#fde8f1;color:#a3265f}
.notes .ok em{color:#1d8034}
.notes .rest em{color:var(--soft)}
.empty{padding:2.2rem 1rem;text-align:center;color:var(--soft)}
footer{color:var(--soft);font-size:.875rem;padding:.9rem .2rem 0}
@media(max-width:900px){
main{padding:.8rem .8rem 1.6rem}
.counts{grid-template-columns:repeat(2,1fr);gap:.6rem}
.counts>div{padding:.6rem .75rem}
article{grid-template-columns:2.9rem 1fr;gap:.25rem .9rem;align-items:start}
.state,.files{grid-column:2}
}
@media(min-width:1700px){html{font-size:19px}}
@media(min-width:2500px){html{font-size:26px}}
)";
