#!/bin/sh
# Draws the radio pictures and the program's icon from the SVG files beside this script.
# The results are committed, so that a build needs none of the tools.
# Debian packages: librsvg2-bin, icoutils
set -eu

cd "$(dirname "$0")"
pictures=../../../../../../resources/mrlrantenna

for tool in rsvg-convert icotool; do
    command -v "$tool" >/dev/null || {
        echo "make_pictures.sh: $tool is missing; install librsvg2-bin and icoutils" >&2
        exit 69
    }
done

scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT

# draw SVG SIZE PNG [OPTION...]: a square picture on a transparent background.
draw() {
    svg=$1 size=$2 png=$3
    shift 3
    rsvg-convert --width "$size" --height "$size" --output "$png" "$@" "$svg"
}

# Twice the size that the dialog shows at 96 dots per inch.
draw signal.svg 352 "$pictures/signal_enabled.png"
draw signal.svg 352 "$pictures/signal_disabled.png" --stylesheet signal_disabled.css

for size in 16 20 24; do
    draw mrlrantenna_small.svg "$size" "$scratch/$size.png"
done
for size in 32 40 48 64 256; do
    draw mrlrantenna.svg "$size" "$scratch/$size.png"
done

# 256 pixels stay PNG inside the icon; smaller ones are bitmaps, which every reader understands.
(
    cd "$scratch"
    icotool --create --bit-depth=32 --output=mrlrantenna.ico \
        16.png 20.png 24.png 32.png 40.png 48.png 64.png --raw=256.png
)
cp "$scratch/mrlrantenna.ico" mrlrantenna.ico
