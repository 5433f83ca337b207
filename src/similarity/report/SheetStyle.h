#pragma once

#include <string_view>

namespace lumisort::similarity {

/// The look of a contact sheet: neutral greys that leave the colour to the photos, one accent, the reader's
/// own light or dark scheme, and groups that the browser lays out only when they come near the window.
inline constexpr std::string_view sheetStyle = R"(
:root { color-scheme: light dark; --paper: #f6f6f6; --tile: #e9e9e9; --ink: #1c1c1c; --soft: #5c5c5c;
  --line: rgb(0 0 0 / 10%); --accent: #3b6657; --link: #3b6657; }
@media (prefers-color-scheme: dark) { :root { --paper: #1d1d1d; --tile: #2a2a2a; --ink: #e6e6e6; --soft: #a0a0a0;
  --line: rgb(255 255 255 / 10%); --link: #9cc5b6; } }
* { box-sizing: border-box; }
body { margin: 0 auto; max-width: 1440px; padding: 24px 32px 32px; background: var(--paper); color: var(--ink);
  font: 13px/1.4 system-ui, sans-serif; font-variant-numeric: tabular-nums; }
header { padding-bottom: 16px; }
h1 { margin: 0; font-size: 22px; line-height: 1.3; }
header p, .empty { margin: 4px 0 0; color: var(--soft); }
section { border-top: 1px solid var(--line); padding: 16px 0; content-visibility: auto;
  contain-intrinsic-size: auto 300px; }
h2 { margin: 0 0 12px; font-size: 15px; font-weight: 600; }
h2 span { font-weight: 400; color: var(--soft); padding-left: 8px; }
.photos { display: grid; grid-template-columns: repeat(auto-fill, minmax(180px, 1fr)); gap: 16px; }
figure { margin: 0; min-width: 0; }
.tile { display: flex; align-items: center; justify-content: center; height: 180px; padding: 8px;
  border-radius: 10px; background: var(--tile); color: var(--soft); font-size: 11px; text-align: center;
  overflow-wrap: anywhere; overflow: hidden; }
.tile img { width: auto; height: auto; max-width: 100%; max-height: 100%; border-radius: 2px; }
figcaption { padding-top: 8px; font-size: 11px; color: var(--soft); }
figcaption div, figcaption a { display: block; overflow: hidden; text-overflow: ellipsis; white-space: nowrap; }
figcaption div:last-child { direction: rtl; text-align: left; } /* a folder too long loses its beginning */
figcaption .mark { float: right; padding-left: 8px; font-size: 13px; color: var(--ink); }
figcaption .anchor { padding: 0 8px; margin-left: 8px; border-radius: 6px; background: var(--accent); color: #fff;
  font-size: 11px; line-height: 18px; }
a { color: var(--ink); font-size: 13px; text-decoration: none; }
a:hover, a:focus-visible { color: var(--link); text-decoration: underline; }
a:focus-visible { outline: 2px solid var(--link); outline-offset: 2px; border-radius: 2px; }
.more { color: var(--soft); margin: 12px 0 0; }
details { border-top: 1px solid var(--line); padding: 16px 0; }
summary { font-size: 15px; font-weight: 600; cursor: pointer; }
details ul { margin: 8px 0 0; padding-left: 16px; overflow-wrap: anywhere; }
)";

} // namespace lumisort::similarity
