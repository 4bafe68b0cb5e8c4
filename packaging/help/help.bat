#!/bin/sh
# Opens the help text that lies beside this file. A browser goes by a file's ending, so it gets a
# copy that ends in .html.
folder=$(dirname "$0")
cp -f "$folder/Ostrix.hlp" "$folder/Ostrix.html" && exec xdg-open "$folder/Ostrix.html"
