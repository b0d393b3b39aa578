# Draws what qosbench --report wrote: gnuplot -c plot.gp FOLDER
# times.svg: nanoseconds of an event; instructions.svg, if they were counted: the instructions.

folder = ARG1
# Otherwise an underscore would start a subscript.
stamp = system(sprintf("sed 's/_/\\\\_/g' '%s/machine.txt'", folder))

set terminal svg size 960,600 dynamic font "Helvetica,13" background "#ffffff"
set logscale xy
set xrange [800:1300000]
set xtics ("1,000" 1000, "10,000" 10000, "100,000" 100000, "1,000,000" 1000000)
set xlabel "objects of the device"
set grid xtics ytics lc rgb "#dddddd" lt 1
set border 3
set tics nomirror
set key outside right center Left reverse samplen 2 spacing 1.25

# The lines that have a name and a colour; all other events are grey.
shown = "floor class-map-match class-map-add class-map-remove action-change acl-rule-add " \
      . "queue-bandwidth pfc-port scheduler-bandwidth comment-add interface-bind"
colours = "#000000 #1f77b4 #7fb3d9 #08519c #d62728 #ff7f0e #2ca02c #8c564b #9467bd #e377c2 #bcbd22"
colour(i) = word(colours, i)
# The names in a file that are none of these.
others(file) = system(sprintf("sed -n 's/^# //p' '%s/%s' | grep -v '^libyang' | grep -vxF \"$(printf '%%s\\n' %s)\" || :", folder, file, shown))

# ===== Times

set output folder . "/times.svg"
set title "Time of an event\n{/*0.8 " . stamp . "}"
set ylabel "nanoseconds"
set ytics ("10 ns" 10, "100 ns" 100, "1 µs" 1000, "10 µs" 10000, "100 µs" 100000)
data = folder . "/times.dat"
grey = others("times.dat")
plot for [name in grey] data index name using 1:2 with lines lw 1 lc rgb "#c8c8c8" notitle, \
     NaN with lines lw 1 lc rgb "#c8c8c8" title "other events", \
     data index "libyang edit by path" using 1:2 with linespoints pt 9 ps 0.8 lw 2 dt 2 lc rgb "#555555" title "libyang, a leaf by path", \
     data index "libyang edit of a held leaf" using 1:2 with linespoints pt 11 ps 0.8 lw 2 dt 2 lc rgb "#999999" title "libyang, a held leaf", \
     for [i=1:words(shown)] data index word(shown, i) using 1:2 with linespoints pt 7 ps 0.6 lw (i == 1 ? 3 : 2) lc rgb colour(i) title word(shown, i)

# ===== Instructions

if (system(sprintf("wc -c < '%s/instructions.dat'", folder)) + 0 > 0) {
  set output folder . "/instructions.svg"
  set title "Instructions of an event\n{/*0.8 " . stamp . "}"
  set ylabel "instructions"
  set ytics ("100" 100, "1,000" 1000, "10,000" 10000, "100,000" 100000, "1,000,000" 1000000)
  data = folder . "/instructions.dat"
  grey = others("instructions.dat")
  plot for [name in grey] data index name using 1:2 with lines lw 1 lc rgb "#c8c8c8" notitle, \
       NaN with lines lw 1 lc rgb "#c8c8c8" title "other events", \
       500 with lines lw 1 dt 3 lc rgb "#000000" title "goal of one record", \
       for [i=1:words(shown)] data index word(shown, i) using 1:2 with linespoints pt 7 ps 0.6 lw (i == 1 ? 3 : 2) lc rgb colour(i) title word(shown, i)
}
