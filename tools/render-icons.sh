#!/usr/bin/env bash
# Renders resources/icons/src/*.svg to resources/icons/<name>.png at the size the SVG declares and to
# <name>@2x.png at twice that size, then rewrites resources/icons.qrc. Needs rsvg-convert (Debian
# package librsvg2-bin). The PNGs are committed, so only changes to the icons need this script.
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
src=$root/resources/icons/src
out=$root/resources/icons
command -v rsvg-convert >/dev/null || { echo "rsvg-convert missing: apt-get install librsvg2-bin" >&2; exit 1; }

entries=()
for svg in "$src"/*.svg; do
  name=$(basename "$svg" .svg)
  size=$(sed -n 's/.*<svg[^>]* width="\([0-9]*\)".*/\1/p' "$svg" | head -n1)
  [ -n "$size" ] || { echo "$svg: no width" >&2; exit 1; }
  rsvg-convert -w "$size" -h "$size" -o "$out/$name.png" "$svg"
  rsvg-convert -w $((size * 2)) -h $((size * 2)) -o "$out/$name@2x.png" "$svg"
  entries+=("$name.png" "$name@2x.png")
done

{
  echo '<!DOCTYPE RCC>'
  echo '<RCC version="1.0">'
  echo '  <qresource prefix="/">'
  for f in "${entries[@]}"; do
    echo "    <file alias=\"$f\">icons/$f</file>"
  done
  echo '  </qresource>'
  echo '</RCC>'
} > "$root/resources/icons.qrc"
echo "rendered ${#entries[@]} images"
