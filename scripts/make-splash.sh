#!/usr/bin/env bash
# Draws the splash screen's picture, data/splash.jpg, with ImageMagick: a desk calendar
# like the logo's (red header, two rings, date tiles with today's in red) on a pale blue
# ground, and the program's name. Run it again after changing it and commit the picture;
# the build stores it inside the executable.
set -euo pipefail
cd "$(dirname "$0")/.."

tiles=()
for row in 0 1 2 3 4; do
    for col in 0 1 2 3 4 5 6; do
        x=$((48 + col * 20))
        y=$((107 + row * 20))
        fill="#c9ccd6"
        if [ "$row" -eq 2 ] && [ "$col" -eq 4 ]; then fill="#cc1f26"; fi
        tiles+=(-fill "$fill" -draw "roundrectangle $x,$y $((x + 14)),$((y + 14)) 2,2")
    done
done

convert -size 420x260 gradient:'#f4f7fc'-'#cfdcf0' \
    -fill '#00000022' -draw "roundrectangle 36,52 198,226 10,10" \
    -fill white -stroke '#2d3a66' -strokewidth 2 -draw "roundrectangle 30,46 192,220 10,10" \
    -stroke none -fill '#cc1f26' -draw "roundrectangle 31,47 191,92 9,9" \
    -draw "rectangle 31,80 191,92" \
    -fill '#2d3a66' -draw "roundrectangle 66,34 74,58 4,4" -draw "roundrectangle 148,34 156,58 4,4" \
    "${tiles[@]}" \
    -font DejaVu-Serif-Bold -pointsize 26 -fill '#2d3a66' -draw "text 218,98 'ORVA'" \
    -font DejaVu-Serif -pointsize 22 -draw "text 218,128 'Calendar'" \
    -fill '#cc1f26' -draw "rectangle 218,140 396,142" \
    -strip -quality 88 data/splash.jpg
