# Draws how time and memory grow: gnuplot -e "folder='build/bench/growth'" bench/growth.gp
set terminal svg size 900,640 font "sans,11" background "white"
set output folder . "/growth.svg"
set multiplot layout 2,2 spacing 0.12,0.14
set grid lc rgb "#dddddd"
set key off
set logscale x
blue = "#1f5fa8"
red = "#b03a2e"

set title "setUnlimitedCT"
set xrange [0.8:80]
set xlabel "displays"
set ylabel "ns a call"
set yrange [0:*]
plot folder . "/displays.txt" using 1:3 with linespoints lc rgb blue pt 7

set title "Calls of the service"
set xrange [500:2e6]
set xlabel "calls"
set ylabel "seconds"
set logscale y
set yrange [*:*]
plot folder . "/calls.txt" using 1:2 with linespoints lc rgb blue pt 7

set title "dcsim replay"
set xrange [0.8:1000]
set xlabel "hours of light"
set ylabel "seconds"
plot folder . "/traces.txt" using 1:2 with linespoints lc rgb blue pt 7

set title "Peak memory"
set xrange [0.8:1200]
set xlabel "displays; thousands of calls; hours of light"
set ylabel "MiB"
unset logscale y
set yrange [0:*]
set key top left
plot folder . "/displays.txt" using 1:($4 / 1024) with linespoints lc rgb blue pt 7 title "displays", \
    folder . "/calls.txt" using ($1 / 1000):($3 / 1024) with linespoints lc rgb "#3a8f3a" pt 5 title "calls", \
    folder . "/traces.txt" using 1:($3 / 1024) with linespoints lc rgb red pt 9 title "replay"
